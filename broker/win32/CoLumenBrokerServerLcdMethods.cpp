// The connection directory, on behalf of clients that cannot open its kernel
// objects from their sandbox. Each method converts its arguments, forwards to
// the accessor and maps the answer; the rules live in LcdBrokerRules.
#include "broker/win32/CoLumenBrokerServer.h"

#include <oleauto.h>

#include <cstring>
#include <memory>
#include <new>

#include "connections/CoreLcdAccessor.h"
#include "connections/LcdBrokerRules.h"
#include "connections/win32/Win32LcdAccessor.h"

namespace SASM {
namespace {

using Rules = LcdBrokerRules;
using Step = LcdBrokerRules::MessageDataStep;

// The directory's names are UTF-8. Any step that fails leaves the empty name,
// which the directory never lists; no error is reported.
class Utf8Name {
 public:
  explicit Utf8Name(const wchar_t* wide) {
    const int size = WideCharToMultiByte(CP_UTF8, 0, wide, -1, nullptr, 0, nullptr, nullptr);
    if (size <= 0) return;
    std::unique_ptr<char[]> bytes(new (std::nothrow) char[static_cast<size_t>(size)]);
    if (!bytes || WideCharToMultiByte(CP_UTF8, 0, wide, -1, bytes.get(), size, nullptr, nullptr) <= 0) return;
    bytes_ = std::move(bytes);
  }
  const char* get() const { return bytes_ ? bytes_.get() : ""; }

 private:
  std::unique_ptr<char[]> bytes_;
};

// A new BSTR of a UTF-8 name, empty when the name cannot be converted. Null
// only when the string itself cannot be allocated.
BSTR WideName(const char* utf8) {
  std::unique_ptr<wchar_t[]> wide;
  const int size = MultiByteToWideChar(CP_UTF8, 0, utf8, -1, nullptr, 0);
  if (size > 0) {
    wide.reset(new (std::nothrow) wchar_t[static_cast<size_t>(size)]);
    if (wide && MultiByteToWideChar(CP_UTF8, 0, utf8, -1, wide.get(), size) <= 0) wide.reset();
  }
  return SysAllocString(wide ? wide.get() : L"");
}

Rules::ArrayShape ShapeOf(SAFEARRAY* array) {
  Rules::ArrayShape shape;
  if (!array) return shape;
  shape.present = true;
  shape.dimensions = SafeArrayGetDim(array);
  shape.elementSize = SafeArrayGetElemsize(array);
  LONG lowerBound = 0;
  if (SUCCEEDED(SafeArrayGetLBound(array, 1, &lowerBound))) shape.lowerBound = lowerBound;
  // A descriptor without dimensions has no bounds to read.
  if (shape.dimensions >= 1) shape.elementCount = array->rgsabound[0].cElements;
  return shape;
}

}  // namespace

ILcdAccessor* CoLumenBrokerServer::LcdAccessor() {
  // Kept even when it could not open the directory: a failed open is never retried.
  if (!lcdAccessor_) lcdAccessor_.reset(new (std::nothrow) Win32LcdAccessor());
  return lcdAccessor_.get();
}

HRESULT CoLumenBrokerServer::BrokerLcdLock(LONG* p_refCount) {
  ILcdAccessor* lcd = LcdAccessor();
  if (!lcd || !p_refCount) return Rules::kFailure;
  *p_refCount = lcd->Lock();
  return Rules::kOk;
}

HRESULT CoLumenBrokerServer::BrokerLcdUnlock(LONG* p_refCount) {
  ILcdAccessor* lcd = LcdAccessor();
  if (!lcd || !p_refCount) return Rules::kFailure;
  *p_refCount = lcd->Unlock();
  return Rules::kOk;
}

HRESULT CoLumenBrokerServer::BrokerLcdLockTime(LONG* p_lockTime) {
  ILcdAccessor* lcd = LcdAccessor();
  if (!lcd || !p_lockTime) return Rules::kFailure;
  *p_lockTime = static_cast<LONG>(lcd->LockTime());
  return Rules::kOk;
}

HRESULT CoLumenBrokerServer::BrokerLcdFindConnectionFormat(BSTR p_string, ULONG p_realm, LONG* p_format) {
  ILcdAccessor* lcd = LcdAccessor();
  if (!lcd || !p_string || !p_format) return Rules::kFailure;
  const int32_t format = lcd->FindConnectionFormat(Utf8Name(p_string).get(), p_realm);
  *p_format = format;
  return Rules::FormatResult(format);
}

HRESULT CoLumenBrokerServer::BrokerLcdRemoveConnection(BSTR p_string, ULONG p_realm) {
  ILcdAccessor* lcd = LcdAccessor();
  if (!lcd || !p_string) return Rules::kFailure;
  return Rules::AnswerResult(lcd->RemoveConnection(Utf8Name(p_string).get(), p_realm));
}

HRESULT CoLumenBrokerServer::BrokerLcdTryAddConnection(BSTR p_string, ULONG p_realmToSeek, ULONG p_realmToAdd,
                                                       LONG p_msgFormatVersion) {
  ILcdAccessor* lcd = LcdAccessor();
  if (!lcd || !p_string) return Rules::kFailure;
  return Rules::AnswerResult(
      lcd->TryAddConnection(Utf8Name(p_string).get(), p_realmToSeek, p_realmToAdd, p_msgFormatVersion));
}

HRESULT CoLumenBrokerServer::BrokerLcdGetMessageTarget(BSTR* p_string) {
  ILcdAccessor* lcd = LcdAccessor();
  if (!lcd || !p_string) return Rules::kFailure;
  char target[CoreLcdAccessor::kTargetBufferSize];
  // No target leaves the output as it came.
  if (!lcd->GetMessageTarget(target, sizeof target)) return Rules::kNegative;
  BSTR name = WideName(target);
  if (!name) return Rules::kFailure;
  *p_string = name;
  return Rules::kOk;
}

HRESULT CoLumenBrokerServer::BrokerLcdDispatchMessage(SAFEARRAY* p_msgData, ULONG p_senderTwlVersion,
                                                      ULONG p_expectedMsgFormat, ULONG p_realm) {
  ILcdAccessor* lcd = LcdAccessor();
  const Rules::ArrayShape shape = ShapeOf(p_msgData);
  if (!lcd || !Rules::AcceptsMessageArray(shape)) return Rules::kFailure;
  void* data = nullptr;
  const HRESULT access = SafeArrayAccessData(p_msgData, &data);
  if (FAILED(access)) return access;
  // The accessor compares versions and formats as signed numbers.
  const int32_t dispatched =
      lcd->DispatchMessage(data, static_cast<int32_t>(shape.elementCount), static_cast<int32_t>(p_senderTwlVersion),
                           static_cast<int32_t>(p_expectedMsgFormat), p_realm);
  SafeArrayUnaccessData(p_msgData);
  return Rules::DispatchResult(dispatched);
}

HRESULT CoLumenBrokerServer::BrokerLcdClearMessage() {
  ILcdAccessor* lcd = LcdAccessor();
  if (!lcd) return Rules::kFailure;
  return Rules::AnswerResult(lcd->ClearMessage());
}

HRESULT CoLumenBrokerServer::BrokerLcdPruneDeadMessage() {
  ILcdAccessor* lcd = LcdAccessor();
  if (!lcd) return Rules::kFailure;
  return Rules::AnswerResult(lcd->PruneDeadMessage());
}

HRESULT CoLumenBrokerServer::BrokerLcdGetMessageData(SAFEARRAY** p_msgData) {
  ILcdAccessor* lcd = LcdAccessor();
  if (!lcd || !p_msgData) return Rules::kFailure;
  const uint8_t* data = nullptr;
  int32_t size = 0;
  // The accessor's hold ends here; a client that wants the bytes of the target
  // it just read holds BrokerLcdLock around both calls.
  if (!lcd->GetMessageData(&data, &size)) return Rules::MessageDataResult(Step::kNoMessage);
  if (!data) return Rules::MessageDataResult(Step::kNoData);
  SAFEARRAY* array = SafeArrayCreateVector(VT_UI1, 0, static_cast<ULONG>(size));
  if (!array) return Rules::MessageDataResult(Step::kArrayNotCreated);
  // The caller owns the vector from here on, filled or not.
  *p_msgData = array;
  void* bytes = nullptr;
  if (FAILED(SafeArrayAccessData(array, &bytes))) return Rules::MessageDataResult(Step::kArrayNotAccessed);
  std::memcpy(bytes, data, static_cast<size_t>(size));
  SafeArrayUnaccessData(array);
  return Rules::MessageDataResult(Step::kCopied);
}

HRESULT CoLumenBrokerServer::BrokerLcdMessageTimeout(LONG* p_timeout) {
  ILcdAccessor* lcd = LcdAccessor();
  if (!lcd || !p_timeout) return Rules::kFailure;
  *p_timeout = lcd->MessageTimeout();
  return Rules::kOk;
}

}  // namespace SASM
