// The broker client: calls one method of a running broker server by name, as a
// sandboxed player would, and prints its results one name=value a line. The
// method and its parameters come from the registered type library; the call
// goes through the vtable, so every generation's methods are reachable, not
// only those the server's IDispatch describes.
#include "engine/win32/WindowsApi.h"

#include "LumenBroker_h.h"

#include <fcntl.h>
#include <io.h>

#include <cstdio>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "engine/win32/BrokerActivation.h"
#include "engine/win32/BrokerProxyRegistration.h"
#include "engine/win32/ComPtr.h"
#include "engine/win32/ScopedHandle.h"
#include "engine/win32/WideText.h"
#include "host/BrokerCallArguments.h"
#include "host/BrokerClientOptions.h"
#include "host/win32/BrokerMethodTable.h"

using namespace SASM;

namespace {

using Type = BrokerCallArguments::Type;

enum ExitCode { kOk = 0, kMethodFailed = 1, kBadInput = 2, kUnreachable = 3 };

int Fail(int code, const std::string& line) {
  std::fprintf(stderr, "LumenBrokerClient: %s\n", line.c_str());
  return code;
}

std::string HexResult(HRESULT result) {
  char text[16];
  std::snprintf(text, sizeof(text), "0x%08lX", static_cast<unsigned long>(result));
  return text;
}

std::string Utf8(const std::wstring& text) { return BrokerCallArguments::Text(FromWide(text.c_str(), text.size())); }

std::wstring FullPath(const std::wstring& path) {
  wchar_t buffer[MAX_PATH];
  DWORD n = GetFullPathNameW(path.c_str(), MAX_PATH, buffer, nullptr);
  return n == 0 || n >= MAX_PATH ? path : std::wstring(buffer, n);
}

bool ReadFileBytes(const std::wstring& path, std::vector<uint8_t>& bytes) {
  ScopedHandle file(CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr));
  if (!file) return false;
  uint8_t chunk[4096];
  DWORD got = 0;
  while (ReadFile(file.get(), chunk, sizeof(chunk), &got, nullptr) && got > 0)
    bytes.insert(bytes.end(), chunk, chunk + got);
  return true;
}

std::string BytesText(SAFEARRAY* array) {
  if (!array) return "null";
  void* data = nullptr;
  if (SafeArrayGetDim(array) != 1 || FAILED(SafeArrayAccessData(array, &data))) return "?";
  std::string text = BrokerCallArguments::Hex(static_cast<const uint8_t*>(data), array->rgsabound[0].cElements);
  SafeArrayUnaccessData(array);
  return text;
}

std::string BstrText(BSTR text) { return BrokerCallArguments::Text(FromWide(text, SysStringLen(text))); }

// A VARIANT out: bytes as hex, an array of strings or of VARIANTs as name[i]=... lines, a
// scalar as its text; an empty one gives an empty value.
void PrintVariant(const std::string& name, const VARIANT& value) {
  if (V_VT(&value) == (VT_ARRAY | VT_UI1)) {
    std::printf("%s=%s\n", name.c_str(), BytesText(V_ARRAY(&value)).c_str());
  } else if (V_VT(&value) == (VT_ARRAY | VT_BSTR) && SafeArrayGetDim(V_ARRAY(&value)) == 1) {
    SAFEARRAY* array = V_ARRAY(&value);
    BSTR* items = nullptr;
    if (FAILED(SafeArrayAccessData(array, reinterpret_cast<void**>(&items)))) return;
    for (ULONG i = 0; i < array->rgsabound[0].cElements; ++i)
      std::printf("%s[%lu]=%s\n", name.c_str(), i, BstrText(items[i]).c_str());
    SafeArrayUnaccessData(array);
  } else if (V_VT(&value) == (VT_ARRAY | VT_VARIANT) && SafeArrayGetDim(V_ARRAY(&value)) == 1) {
    // The open dialog's answer: each entry a VARIANT, printed as its text.
    SAFEARRAY* array = V_ARRAY(&value);
    VARIANT* items = nullptr;
    if (FAILED(SafeArrayAccessData(array, reinterpret_cast<void**>(&items)))) return;
    for (ULONG i = 0; i < array->rgsabound[0].cElements; ++i) {
      VARIANT text;
      VariantInit(&text);
      if (SUCCEEDED(VariantChangeType(&text, &items[i], 0, VT_BSTR)))
        std::printf("%s[%lu]=%s\n", name.c_str(), i, BstrText(V_BSTR(&text)).c_str());
      else
        std::printf("%s[%lu]=?vt%u\n", name.c_str(), i, V_VT(&items[i]));
      VariantClear(&text);
    }
    SafeArrayUnaccessData(array);
  } else if (V_VT(&value) == VT_EMPTY) {
    std::printf("%s=\n", name.c_str());
  } else {
    VARIANT text;
    VariantInit(&text);
    if (SUCCEEDED(VariantChangeType(&text, const_cast<VARIANT*>(&value), 0, VT_BSTR)))
      std::printf("%s=%s\n", name.c_str(), BstrText(V_BSTR(&text)).c_str());
    else
      std::printf("%s=?vt%u\n", name.c_str(), V_VT(&value));
    VariantClear(&text);
  }
}

// One argument of the call: what it holds (and owns), and what the vtable is handed.
struct Slot {
  Slot() {
    VariantInit(&value);
    VariantInit(&passed);
  }
  Slot(const Slot&) = delete;
  Slot& operator=(const Slot&) = delete;
  ~Slot() { VariantClear(&value); }

  VARIANT value;
  VARIANTARG passed;  // shares value's contents or points into it; never cleared
  std::wstring wide;  // an LPWSTR's characters
};

// Fills a slot from a bound value; false with error set when an @FILE can't be read.
bool Prepare(const BrokerCallArguments::Parameter& parameter, VARTYPE vt, const BrokerCallArguments::Value& bound,
             Slot& slot, std::string& error) {
  if (parameter.type == Type::Unknown) {
    error = BrokerCallArguments::Ascii(parameter.name) + ": this client can't pass a parameter of its type";
    return false;
  }
  if (parameter.type == Type::Variant) {
    V_VT(&slot.passed) = VT_BYREF | VT_VARIANT;
    V_VARIANTREF(&slot.passed) = &slot.value;
    return true;
  }
  if (parameter.type == Type::LpWstr) {
    slot.wide = ToWide(bound.text);
    V_VT(&slot.passed) = vt;
    V_UI2REF(&slot.passed) = reinterpret_cast<USHORT*>(slot.wide.data());
    return true;
  }
  V_VT(&slot.value) = vt;
  switch (parameter.type) {
    case Type::Bstr:
      if (parameter.in)
        V_BSTR(&slot.value) = SysAllocStringLen(ToWide(bound.text).c_str(), static_cast<UINT>(bound.text.size()));
      break;
    case Type::Int32: V_I4(&slot.value) = static_cast<LONG>(bound.number); break;
    case Type::UInt32: V_UI4(&slot.value) = static_cast<ULONG>(bound.number); break;
    case Type::Int64: V_I8(&slot.value) = bound.number; break;
    case Type::Bytes: {
      if (!parameter.in || bound.nullBytes) break;
      std::vector<uint8_t> fileBytes;
      if (!bound.bytesFile.empty() && !ReadFileBytes(ToWide(bound.bytesFile), fileBytes)) {
        error = "cannot read " + BrokerCallArguments::Text(bound.bytesFile) + " (error " +
                std::to_string(GetLastError()) + ")";
        return false;
      }
      const std::vector<uint8_t>& bytes = bound.bytesFile.empty() ? bound.bytes : fileBytes;
      SAFEARRAY* array = SafeArrayCreateVector(VT_UI1, 0, static_cast<ULONG>(bytes.size()));
      void* data = nullptr;
      if (array && !bytes.empty() && SUCCEEDED(SafeArrayAccessData(array, &data))) {
        std::memcpy(data, bytes.data(), bytes.size());
        SafeArrayUnaccessData(array);
      }
      V_ARRAY(&slot.value) = array;
      break;
    }
    default: break;
  }
  if (parameter.out) {
    // The union's first byte is where every member of it starts.
    V_VT(&slot.passed) = VT_BYREF | vt;
    V_BYREF(&slot.passed) = &V_UNION(&slot.value, llVal);
  } else {
    slot.passed = slot.value;
  }
  return true;
}

void PrintOut(const BrokerCallArguments::Parameter& parameter, const Slot& slot) {
  const std::string name = BrokerCallArguments::Ascii(parameter.name);
  const VARIANT& value = slot.value;
  switch (parameter.type) {
    case Type::Int32: std::printf("%s=%ld\n", name.c_str(), static_cast<long>(V_I4(&value))); break;
    case Type::UInt32: std::printf("%s=%lu\n", name.c_str(), static_cast<unsigned long>(V_UI4(&value))); break;
    case Type::Int64: std::printf("%s=%lld\n", name.c_str(), static_cast<long long>(V_I8(&value))); break;
    case Type::Bstr: std::printf("%s=%s\n", name.c_str(), BstrText(V_BSTR(&value)).c_str()); break;
    case Type::Bytes: std::printf("%s=%s\n", name.c_str(), BytesText(V_ARRAY(&value)).c_str()); break;
    case Type::Variant: PrintVariant(name, value); break;
    default: std::printf("%s=?\n", name.c_str()); break;
  }
}

int Call(const BrokerMethod& method, const std::vector<std::u16string>& args) {
  const std::string methodName = BrokerCallArguments::Ascii(method.name);
  std::vector<BrokerCallArguments::Value> bound;
  std::string error;
  if (!BrokerCallArguments::Bind(method.parameters, args, bound, error))
    return Fail(kBadInput, methodName + " " + error);

  const size_t count = method.parameters.size();
  std::unique_ptr<Slot[]> slots(new Slot[count]);
  std::vector<VARIANTARG*> passed(count);
  std::vector<VARTYPE> types(count);
  for (size_t i = 0; i < count; ++i) {
    if (!Prepare(method.parameters[i], method.types[i], bound[i], slots[i], error)) return Fail(kBadInput, error);
    passed[i] = &slots[i].passed;
    types[i] = V_VT(&slots[i].passed);
  }

  ComPtr<ILumenBroker6> broker;
  HRESULT result = BrokerActivation::Activate(broker);
  if (FAILED(result)) return Fail(kUnreachable, "the broker could not be activated (" + HexResult(result) + ")");
  VARIANT returned;
  VariantInit(&returned);
  result = DispCallFunc(broker.get(), method.vtableOffset, CC_STDCALL, VT_ERROR, static_cast<UINT>(count), types.data(),
                        passed.data(), &returned);
  if (FAILED(result)) return Fail(kUnreachable, methodName + " could not be called (" + HexResult(result) + ")");
  const HRESULT methodResult = V_ERROR(&returned);
  std::printf("hresult=%s\n", HexResult(methodResult).c_str());
  for (size_t i = 0; i < count; ++i)
    if (method.parameters[i].out) PrintOut(method.parameters[i], slots[i]);
  return SUCCEEDED(methodResult) ? kOk : kMethodFailed;
}

// Open, read until the position reaches the length (or stops moving three times), close under the name.
int Download(const BrokerClientOptions& options) {
  ComPtr<ILumenBroker6> broker;
  HRESULT result = BrokerActivation::Activate(broker);
  if (FAILED(result)) return Fail(kUnreachable, "the broker could not be activated (" + HexResult(result) + ")");
  BSTR url = SysAllocString(ToWide(options.downloadUrl).c_str());
  ULONG cookie = 0;
  result = broker->BrokerLMOpenDownload(url, &cookie);
  SysFreeString(url);
  std::printf("open hresult=%s lmCookie=%lu\n", HexResult(result).c_str(), cookie);
  if (FAILED(result)) return kMethodFailed;
  ULONG position = 0;
  ULONG length = 0;
  for (int stalls = 0; stalls < 3;) {
    const ULONG before = position;
    result = broker->BrokerLMUpdateDownload(cookie, &position, &length);
    std::printf("progress=%lu/%lu hresult=%s\n", position, length, HexResult(result).c_str());
    std::fflush(stdout);
    if (FAILED(result) || position >= length) break;
    if (position == before) ++stalls;
  }
  const bool abandon = options.downloadName == u"-";
  BSTR name = abandon ? nullptr : SysAllocString(ToWide(options.downloadName).c_str());
  ULONG code = 0;
  result = broker->BrokerLMCloseDownload(cookie, name, &code);
  SysFreeString(name);
  std::printf("close hresult=%s resultCode=%lu\n", HexResult(result).c_str(), code);
  return SUCCEEDED(result) && code == 0 ? kOk : kMethodFailed;
}

int Run(const BrokerClientOptions& options) {
  std::unique_ptr<BrokerProxyRegistration> proxy;
  if (!options.serverPath.empty()) {
    const std::wstring serverPath = FullPath(ToWide(options.serverPath));
    if (GetFileAttributesW(serverPath.c_str()) == INVALID_FILE_ATTRIBUTES)
      return Fail(kBadInput, "no host at " + Utf8(serverPath));
    BrokerActivation::Register(serverPath);
  }
  if (!options.proxyPath.empty()) {
    proxy = std::make_unique<BrokerProxyRegistration>(FullPath(ToWide(options.proxyPath)));
    if (!proxy->registered())
      return Fail(kUnreachable, "the proxy " + BrokerCallArguments::Text(options.proxyPath) + " did not register");
  }
  if (options.mode == BrokerClientOptions::Mode::RegistrationOnly) return kOk;
  if (options.mode == BrokerClientOptions::Mode::Download) return Download(options);

  BrokerMethodTable table;
  HRESULT loaded = table.Load();
  if (FAILED(loaded))
    return Fail(kUnreachable, "the broker's type library is not registered (" + HexResult(loaded) + "); see -register");
  if (options.mode == BrokerClientOptions::Mode::List) {
    for (const BrokerMethod& method : table.Methods())
      std::printf("%s\n", BrokerCallArguments::Describe(method.name, method.parameters).c_str());
    return kOk;
  }
  const BrokerMethod* method = table.Find(options.method);
  if (!method) return Fail(kBadInput, "no method " + BrokerCallArguments::Ascii(options.method) + "; see -list");
  return Call(*method, options.args);
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
  std::vector<std::u16string> commandLine;
  for (int i = 1; i < argc; ++i) commandLine.push_back(FromWide(argv[i]));
  BrokerClientOptions options;
  if (!options.Parse(commandLine)) return Fail(kBadInput, options.error);
  if (options.mode == BrokerClientOptions::Mode::Help) {
    std::fputs(BrokerClientOptions::Usage(), stdout);
    return kOk;
  }
  // Plain line feeds, so that scripts read the values without a carriage return.
  _setmode(_fileno(stdout), _O_BINARY);
  if (FAILED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))) return Fail(kUnreachable, "COM could not start");
  int result = Run(options);
  if (options.unregister) BrokerActivation::Unregister();
  CoUninitialize();
  return result;
}
