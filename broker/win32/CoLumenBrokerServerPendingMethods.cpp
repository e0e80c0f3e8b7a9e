// The methods of families not built yet. Each answers E_NOTIMPL and touches
// none of its arguments; a family's own file replaces its group here.
#include "broker/win32/CoLumenBrokerServer.h"

namespace SASM {

// Preferences and small services
HRESULT CoLumenBrokerServer::BrokerPrefGetAndDeleteLumenPlayerVersion(BSTR* p_string) { return E_NOTIMPL; }
HRESULT CoLumenBrokerServer::BrokerPrefMarkAutoUpdaterForRun(BSTR p_xmlFromServer) { return E_NOTIMPL; }
HRESULT CoLumenBrokerServer::BrokerPrefGetExceptionDialogSize(ULONG* p_width, ULONG* p_height) { return E_NOTIMPL; }
HRESULT CoLumenBrokerServer::BrokerPrefSetExceptionDialogSize(ULONG p_width, ULONG p_height) { return E_NOTIMPL; }
HRESULT CoLumenBrokerServer::BrokerDelayScreensaver() { return E_NOTIMPL; }
HRESULT CoLumenBrokerServer::BrokerPrefGetLumenPlayerVersion(BSTR* p_string) { return E_NOTIMPL; }
HRESULT CoLumenBrokerServer::BrokerPrefDeleteLumenPlayerVersion() { return E_NOTIMPL; }
HRESULT CoLumenBrokerServer::BrokerGetDirectInputCount(ULONG* p_count) { return E_NOTIMPL; }
HRESULT CoLumenBrokerServer::BrokerIsDriveAvailable(LPWSTR p_lpwRootPathName) { return E_NOTIMPL; }

// Audio device notification
HRESULT CoLumenBrokerServer::BrokerMMNotificationClientCreate(LONG_PTR sourceProcessHandle, LONG_PTR* lpClientCookie) {
  return E_NOTIMPL;
}
HRESULT CoLumenBrokerServer::BrokerMMNotificationClientSetDefaultDeviceChangeEvent(LONG_PTR clientCookie,
                                                                                   LONG_PTR defaultDeviceChangeEvent) {
  return E_NOTIMPL;
}
HRESULT CoLumenBrokerServer::BrokerMMNotificationClientSetDeviceStateChangeEvent(LONG_PTR clientCookie,
                                                                                 LONG_PTR deviceStateChangeEvent) {
  return E_NOTIMPL;
}
HRESULT CoLumenBrokerServer::BrokerMMNotificationClientDestroy(LONG_PTR clientCookie) { return E_NOTIMPL; }

}  // namespace SASM
