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

// Add-on products
HRESULT CoLumenBrokerServer::BrokerLMOpenDownload(BSTR p_url, ULONG* p_lmCookie) { return E_NOTIMPL; }
HRESULT CoLumenBrokerServer::BrokerLMUpdateDownload(ULONG p_lmCookie, ULONG* p_pos, ULONG* p_len) { return E_NOTIMPL; }
HRESULT CoLumenBrokerServer::BrokerLMCloseDownload(ULONG p_lmCookie, BSTR p_applicationName, ULONG* p_resultCode) {
  return E_NOTIMPL;
}
HRESULT CoLumenBrokerServer::BrokerLMLaunch(BSTR p_applicationName, BSTR p_applicationParams) { return E_NOTIMPL; }
HRESULT CoLumenBrokerServer::BrokerLMGetVersion(BSTR p_applicationName, ULONG* p_fileVersionMS,
                                                ULONG* p_fileVersionLS) {
  return E_NOTIMPL;
}
HRESULT CoLumenBrokerServer::BrokerLMIsRunning(BSTR p_applicationName) { return E_NOTIMPL; }


// Shortcuts and icons
HRESULT CoLumenBrokerServer::BrokerCreateIconPath(BSTR p_fileName, BSTR* p_iconPath) { return E_NOTIMPL; }
HRESULT CoLumenBrokerServer::BrokerCreateInternetShortcut(BSTR fileName, BSTR url, BSTR iconPath,
                                                          SAFEARRAY* p_signed_auth_data, SAFEARRAY* p_strings,
                                                          ULONG flags) {
  return E_NOTIMPL;
}
HRESULT CoLumenBrokerServer::BrokerCreateIconPathV2(BSTR p_fileName, BSTR* p_iconPath, LONG p_overwrite) {
  return E_NOTIMPL;
}
HRESULT CoLumenBrokerServer::BrokerCreateDesktopShortcut(BSTR fileName, BSTR url, BSTR iconPath, ULONG flags) {
  return E_NOTIMPL;
}

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
