#include "broker/MMNotificationClient.h"

#include "broker/BrokerHresult.h"

namespace SASM {

MMNotificationClient::MMNotificationClient(AudioPlatform& platform, Handle process)
    : sourceProcess(process), platform_(platform) {
  Register();
}

void MMNotificationClient::Register() {
  if (registered) return;
  enumerator = platform_.CreateEnumerator();
  registered = enumerator && enumerator->RegisterClient(*this);
}

MMNotificationClient::~MMNotificationClient() {
  if (enumerator) enumerator->UnregisterClient(*this);
  for (std::atomic<Handle>* field : {&defaultDeviceChangeEvent, &deviceStateChangeEvent}) {
    if (Handle event = field->exchange(0)) platform_.CloseHandle(event);
  }
  registered = false;
  enumerator.reset();
}

int32_t MMNotificationClient::QueryInterface(const ClassId& interfaceId, void** object) {
  if (!object) return BrokerHresult::kPointer;
  if (interfaceId.bytes != kUnknownInterface.bytes && interfaceId.bytes != kNotificationInterface.bytes) {
    *object = nullptr;
    return BrokerHresult::kNoInterface;
  }
  *object = this;
  AddRef();
  return BrokerHresult::kOk;
}

uint32_t MMNotificationClient::AddRef() { return ++refCount; }

uint32_t MMNotificationClient::Release() {
  const uint32_t count = --refCount;
  if (count == 0) delete this;
  return count;
}

int32_t MMNotificationClient::OnDeviceStateChanged(const char16_t* deviceId, uint32_t) {
  uint32_t flow = 0;
  if (enumerator && enumerator->GetDataFlow(deviceId, flow) && flow == kFlowRender)
    platform_.SignalEvent(deviceStateChangeEvent.load());
  return BrokerHresult::kOk;
}

int32_t MMNotificationClient::OnDeviceAdded(const char16_t*) { return BrokerHresult::kOk; }

int32_t MMNotificationClient::OnDeviceRemoved(const char16_t*) { return BrokerHresult::kOk; }

int32_t MMNotificationClient::OnDefaultDeviceChanged(uint32_t flow, uint32_t role, const char16_t*) {
  if (flow != kFlowRender && role != kRoleMultimedia) return BrokerHresult::kOk;
  platform_.SignalEvent(defaultDeviceChangeEvent.load());
  return BrokerHresult::kOk;
}

int32_t MMNotificationClient::OnPropertyValueChanged(const char16_t*, const ClassId&, uint32_t) {
  return BrokerHresult::kOk;
}

bool MMNotificationClient::SetEvent(std::atomic<Handle>& field, Handle event) {
  if (!event) return false;
  Handle duplicate = 0;
  if (!platform_.DuplicateFromProcess(sourceProcess, event, duplicate)) return false;
  if (Handle previous = field.exchange(duplicate)) platform_.CloseHandle(previous);
  return true;
}

}  // namespace SASM
