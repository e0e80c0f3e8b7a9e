#include "engine/Reporter.h"

#include "engine/HostCallbacks.h"

namespace SASM::Reporter {
namespace {

MString Hex(uint32_t error) { return MString::FromUnsigned(error, 16); }
const MString& Blank() {
  static const MString blank(u" ");
  return blank;
}
const MString& Slash() {
  static const MString slash(u"/");
  return slash;
}

}  // namespace

MString PathErrorText(const MString& path, uint32_t error) {
  MString text = MString::Empty();
  return text.Append(path).Append(Blank()).Append(Hex(error));
}

MString KeyValueErrorText(const MString& key, const MString& valueName, uint32_t error, bool numberForm) {
  MString text = MString::Empty();
  text.Append(key).Append(Slash()).Append(valueName);
  if (!numberForm) text.Append(Blank());
  return text.Append(Hex(error));
}

MString KeyErrorText(const MString& key, uint32_t error) {
  MString text = MString::Empty();
  return text.Append(key).Append(Slash()).Append(Blank()).Append(Hex(error));
}

MString BlankErrorText(uint32_t error) {
  MString text = MString::Empty();
  return text.Append(Blank()).Append(Hex(error));
}

void Report(HostCallbacks& host, int32_t severity, int32_t code) {
  host.ReportMessage(0, severity, code, MString::Empty());
}

void ReportText(HostCallbacks& host, int32_t severity, int32_t code, const MString& text) {
  host.ReportMessage(0, severity, code, text);
}

void ReportPath(HostCallbacks& host, int32_t severity, int32_t code, const MString& path) {
  host.ReportMessage(0, severity, code, path);
}

void ReportPathError(HostCallbacks& host, int32_t severity, int32_t code, const MString& path, uint32_t error) {
  host.ReportMessage(0, severity, code, PathErrorText(path, error));
}

void ReportPathErrorDecimal(HostCallbacks& host, int32_t severity, int32_t code, const MString& path,
                            int32_t error) {
  MString text = MString::Empty();
  text.Append(path).Append(Blank()).Append(MString::FromNumber(error));
  host.ReportMessage(0, severity, code, text);
}

void ReportBlankError(HostCallbacks& host, int32_t severity, int32_t code, uint32_t error) {
  host.ReportMessage(0, severity, code, BlankErrorText(error));
}

void ReportErrorDecimal(HostCallbacks& host, int32_t severity, int32_t code, int32_t error) {
  host.ReportMessage(0, severity, code, MString::FromNumber(error));
}

void ReportKeyValueError(HostCallbacks& host, int32_t severity, int32_t code, const MString& key,
                         const MString& valueName, uint32_t error) {
  host.ReportMessage(0, severity, code, KeyValueErrorText(key, valueName, error, false));
}

void ReportKeyValueErrorNumberForm(HostCallbacks& host, int32_t severity, int32_t code, const MString& key,
                                   const MString& valueName, uint32_t error) {
  host.ReportMessage(0, severity, code, KeyValueErrorText(key, valueName, error, true));
}

void ReportKeyError(HostCallbacks& host, int32_t severity, int32_t code, const MString& key, uint32_t error) {
  host.ReportMessage(0, severity, code, KeyErrorText(key, error));
}

}  // namespace SASM::Reporter
