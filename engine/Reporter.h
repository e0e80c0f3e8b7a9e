#pragma once
// One helper per text form of a report, so no call site formats by hand.
// Errors are upper-case hexadecimal without prefix unless a helper says decimal.
#include <cstdint>

#include "engine/MString.h"

namespace SASM {

class HostCallbacks;

namespace Reporter {

// No text.
void Report(HostCallbacks& host, int32_t severity, int32_t code);
// The path.
void ReportPath(HostCallbacks& host, int32_t severity, int32_t code, const MString& path);
// The path, a blank, the error in hexadecimal.
void ReportPathError(HostCallbacks& host, int32_t severity, int32_t code, const MString& path, uint32_t error);
// The path, a blank, the error in decimal.
void ReportPathErrorDecimal(HostCallbacks& host, int32_t severity, int32_t code, const MString& path,
                            int32_t error);
// A blank, then the error in hexadecimal: the feedback-service file delete.
void ReportBlankError(HostCallbacks& host, int32_t severity, int32_t code, uint32_t error);
// The error alone, in decimal.
void ReportErrorDecimal(HostCallbacks& host, int32_t severity, int32_t code, int32_t error);
// The key, "/", the value name, a blank, the error.
void ReportKeyValueError(HostCallbacks& host, int32_t severity, int32_t code, const MString& key,
                         const MString& valueName, uint32_t error);
// As above with no blank before the error: the form used for failed number writes.
void ReportKeyValueErrorNumberForm(HostCallbacks& host, int32_t severity, int32_t code, const MString& key,
                                   const MString& valueName, uint32_t error);
// The key, "/", a blank, the error.
void ReportKeyError(HostCallbacks& host, int32_t severity, int32_t code, const MString& key, uint32_t error);
// Free text, for the rare report whose text is its own.
void ReportText(HostCallbacks& host, int32_t severity, int32_t code, const MString& text);

// The texts themselves, for callers that need one without reporting it.
MString PathErrorText(const MString& path, uint32_t error);
MString KeyValueErrorText(const MString& key, const MString& valueName, uint32_t error, bool numberForm);
MString KeyErrorText(const MString& key, uint32_t error);
MString BlankErrorText(uint32_t error);

}  // namespace Reporter
}  // namespace SASM
