#include "broker/win32/Win32AudioPlatform.h"

#include "engine/win32/WindowsApi.h"

#include <mmdeviceapi.h>

#include <cstring>

#include <new>

#include "broker/MMNotificationClient.h"
#include "engine/win32/ComPtr.h"

namespace SASM {
namespace {

constexpr CLSID kDeviceEnumeratorClass = {0xBCDE0395, 0xE52F, 0x467C, {0x8E, 0x3D, 0xC4, 0x57, 0x92, 0x91, 0x69, 0x2E}};
constexpr IID kDeviceEnumeratorInterface = {
    0xA95664D2, 0x9614, 0x4F35, {0xA7, 0x46, 0xDE, 0x8D, 0xB6, 0x36, 0x17, 0xE6}};
constexpr IID kEndpointInterface = {0x1BE09788, 0x6894, 0x4089, {0x85, 0x86, 0x9A, 0x2A, 0x6C, 0x26, 0x5A, 0xC5}};

ClassId IdOf(const GUID& guid) {
  ClassId id;
  static_assert(sizeof(GUID) == sizeof(id.bytes));
  memcpy(id.bytes.data(), &guid, sizeof(GUID));
  return id;
}

const char16_t* Text(LPCWSTR text) { return reinterpret_cast<const char16_t*>(text); }

// The face the system calls. It forwards every notification to the client and
// counts its own references, so that the system's hold never keeps a client
// alive past its shut-down, which unregisters this face first.
class NotificationSink : public IMMNotificationClient {
 public:
  explicit NotificationSink(MMNotificationClient& client) : client_(client) {}

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** object) override {
    if (!object) return E_POINTER;
    const ClassId id = IdOf(riid);
    if (id.bytes != MMNotificationClient::kUnknownInterface.bytes &&
        id.bytes != MMNotificationClient::kNotificationInterface.bytes) {
      *object = nullptr;
      return E_NOINTERFACE;
    }
    *object = static_cast<IMMNotificationClient*>(this);
    AddRef();
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return static_cast<ULONG>(InterlockedIncrement(&refCount_)); }
  ULONG STDMETHODCALLTYPE Release() override {
    const LONG count = InterlockedDecrement(&refCount_);
    if (count == 0) delete this;
    return static_cast<ULONG>(count);
  }
  HRESULT STDMETHODCALLTYPE OnDeviceStateChanged(LPCWSTR deviceId, DWORD newState) override {
    return client_.OnDeviceStateChanged(Text(deviceId), newState);
  }
  HRESULT STDMETHODCALLTYPE OnDeviceAdded(LPCWSTR deviceId) override { return client_.OnDeviceAdded(Text(deviceId)); }
  HRESULT STDMETHODCALLTYPE OnDeviceRemoved(LPCWSTR deviceId) override {
    return client_.OnDeviceRemoved(Text(deviceId));
  }
  HRESULT STDMETHODCALLTYPE OnDefaultDeviceChanged(EDataFlow flow, ERole role, LPCWSTR deviceId) override {
    return client_.OnDefaultDeviceChanged(static_cast<uint32_t>(flow), static_cast<uint32_t>(role), Text(deviceId));
  }
  HRESULT STDMETHODCALLTYPE OnPropertyValueChanged(LPCWSTR deviceId, const PROPERTYKEY key) override {
    return client_.OnPropertyValueChanged(Text(deviceId), IdOf(key.fmtid), key.pid);
  }

 private:
  virtual ~NotificationSink() = default;

  MMNotificationClient& client_;
  LONG refCount_ = 1;
};

class Win32DeviceEnumerator : public IAudioDeviceEnumerator {
 public:
  explicit Win32DeviceEnumerator(ComPtr<IMMDeviceEnumerator> enumerator) : enumerator_(std::move(enumerator)) {}
  ~Win32DeviceEnumerator() override {
    if (sink_) sink_->Release();
  }

  bool RegisterClient(MMNotificationClient& client) override {
    if (sink_) return false;
    NotificationSink* sink = new (std::nothrow) NotificationSink(client);
    if (!sink) return false;
    if (FAILED(enumerator_->RegisterEndpointNotificationCallback(sink))) {
      sink->Release();
      return false;
    }
    sink_ = sink;
    return true;
  }

  void UnregisterClient(MMNotificationClient&) override {
    if (!sink_) return;
    enumerator_->UnregisterEndpointNotificationCallback(sink_);
    sink_->Release();
    sink_ = nullptr;
  }

  bool GetDataFlow(const char16_t* deviceId, uint32_t& flow) override {
    ComPtr<IMMDevice> device;
    if (FAILED(enumerator_->GetDevice(reinterpret_cast<LPCWSTR>(deviceId), device.receive())) || !device) return false;
    ComPtr<IMMEndpoint> endpoint;
    if (FAILED(device->QueryInterface(kEndpointInterface, endpoint.receiveVoid())) || !endpoint) return false;
    EDataFlow dataFlow = eRender;
    if (FAILED(endpoint->GetDataFlow(&dataFlow))) return false;
    flow = static_cast<uint32_t>(dataFlow);
    return true;
  }

 private:
  ComPtr<IMMDeviceEnumerator> enumerator_;
  NotificationSink* sink_ = nullptr;
};

}  // namespace

std::unique_ptr<IAudioDeviceEnumerator> Win32AudioPlatform::CreateEnumerator() {
  ComPtr<IMMDeviceEnumerator> enumerator;
  if (FAILED(CoCreateInstance(kDeviceEnumeratorClass, nullptr, CLSCTX_INPROC_SERVER, kDeviceEnumeratorInterface,
                              enumerator.receiveVoid())) ||
      !enumerator)
    return nullptr;
  return std::unique_ptr<IAudioDeviceEnumerator>(new (std::nothrow) Win32DeviceEnumerator(std::move(enumerator)));
}

bool Win32AudioPlatform::DuplicateFromProcess(Handle sourceProcess, Handle handle, Handle& duplicate) {
  HANDLE copy = nullptr;
  if (!DuplicateHandle(reinterpret_cast<HANDLE>(sourceProcess), reinterpret_cast<HANDLE>(handle),
                       GetCurrentProcess(), &copy, 0, FALSE, DUPLICATE_SAME_ACCESS))
    return false;
  duplicate = reinterpret_cast<Handle>(copy);
  return true;
}

void Win32AudioPlatform::CloseHandle(Handle handle) { ::CloseHandle(reinterpret_cast<HANDLE>(handle)); }

void Win32AudioPlatform::SignalEvent(Handle event) { ::SetEvent(reinterpret_cast<HANDLE>(event)); }

}  // namespace SASM
