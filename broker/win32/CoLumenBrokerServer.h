#pragma once
// The object a sandboxed client holds: one per connection, all in the one
// server process, all called on its one apartment thread. It answers
// IUnknown, IDispatch (over the second generation's description) and
// ILumenBroker6, and owns the client's cookie table and the helpers the
// method families need.
#include "engine/win32/WindowsApi.h"

#include "LumenBroker_h.h"

#include <mlang.h>

#include <memory>

#include "broker/AuditedFileOpener.h"
#include "broker/BrokerAudioMethods.h"
#include "broker/BrokerPrefMethods.h"
#include "broker/BrokerCookieTable.h"
#include "broker/BrokerDialogMethods.h"
#include "broker/BrokerFileMethods.h"
#include "broker/BrokerPathPolicy.h"
#include "broker/DeferredFileOpener.h"
#include "broker/DialogOwnerPolicy.h"
#include "broker/EnterpriseIdentityList.h"
#include "broker/win32/Win32BrokerFilePlatform.h"
#include "broker/win32/Win32DialogPlatform.h"
#include "broker/win32/Win32EnterpriseProtectionPlatform.h"
#include "broker/win32/Win32InternetMarkPlatform.h"
#include "broker/win32/Win32PathPlatform.h"
#include "broker/win32/Win32AudioPlatform.h"
#include "broker/win32/Win32PrefPlatform.h"
#include "connections/ILcdAccessor.h"
#include "delivery/win32/Win32AddOnFamily.h"
#include "engine/win32/Advapi32DllHelper.h"
#include "engine/win32/ComPtr.h"
#include "engine/win32/Edpwin32DllHelper.h"

namespace SASM {

class HostCallbacks;

class CoLumenBrokerServer : public ILumenBroker6 {
 public:
  // The class object; see CoLumenBrokerServerFactory.h.
  class Factory;

  explicit CoLumenBrokerServer(HostCallbacks* host);
  CoLumenBrokerServer(const CoLumenBrokerServer&) = delete;
  CoLumenBrokerServer& operator=(const CoLumenBrokerServer&) = delete;

  // IUnknown
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** object) override;
  ULONG STDMETHODCALLTYPE AddRef() override;
  // The last one may end the server: see the class's Release.
  ULONG STDMETHODCALLTYPE Release() override;

  // IDispatch
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override;
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID locale, ITypeInfo** info) override;
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID riid, LPOLESTR* names, UINT count, LCID locale, DISPID* ids) override;
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID riid, LCID locale, WORD flags, DISPPARAMS* arguments,
                                   VARIANT* result, EXCEPINFO* exception, UINT* argumentError) override;

  // ILumenBroker6, by family; each family's methods live in CoLumenBrokerServer<Family>Methods.cpp.

  // File operations
  HRESULT STDMETHODCALLTYPE BrokerCreateFile(BSTR pFileName, LONG p_readOnly, LONG p_truncateOnOpen,
                                             ULONG* p_fileCookie) override;
  HRESULT STDMETHODCALLTYPE BrokerCloseHandle(ULONG p_fileCookie) override;
  HRESULT STDMETHODCALLTYPE BrokerSetFilePointer(ULONG p_fileCookie, LONG p_distanceToMove, ULONG p_moveMethod,
                                                 ULONG* p_newPosition) override;
  HRESULT STDMETHODCALLTYPE BrokerReadFile(ULONG p_fileCookie, ULONG p_numToRead, ULONG* p_numRead,
                                           SAFEARRAY** p_data) override;
  HRESULT STDMETHODCALLTYPE BrokerWriteFile(ULONG p_fileCookie, SAFEARRAY* p_data, ULONG* p_numWritten) override;
  HRESULT STDMETHODCALLTYPE BrokerDeleteFile(BSTR p_fileName) override;
  HRESULT STDMETHODCALLTYPE BrokerRemoveDirectory(BSTR p_dirName) override;
  HRESULT STDMETHODCALLTYPE BrokerMoveFileEx(BSTR p_oldFileName, BSTR p_newFileName, LONG dwFlags) override;
  HRESULT STDMETHODCALLTYPE BrokerCreateDirectory(BSTR p_dirName) override;
  HRESULT STDMETHODCALLTYPE BrokerGetFileAttributesEx(BSTR p_fileName, ULONG* p_dwFileAttributes,
                                                      ULONG* p_ftCreationTimeLo, ULONG* p_ftCreationTimeHi,
                                                      ULONG* p_ftLastAccessTimeLo, ULONG* p_ftLastAccessTimeHi,
                                                      ULONG* p_ftLastWriteTimeLo, ULONG* p_ftLastWriteTimeHi,
                                                      ULONG* p_nFileSizeLo, ULONG* p_nFileSizeHi) override;
  HRESULT STDMETHODCALLTYPE BrokerFindFirstFile(BSTR p_searchPath, BSTR* p_fileLeafName, ULONG* p_fileAttrs,
                                                ULONG* p_findCookie) override;
  HRESULT STDMETHODCALLTYPE BrokerFindNextFile(ULONG p_findCookie, BSTR* p_fileLeafName, ULONG* p_fileAttrs) override;
  HRESULT STDMETHODCALLTYPE BrokerFindClose(ULONG p_findCookie) override;
  HRESULT STDMETHODCALLTYPE BrokerDeleteBrowsingHistory(BSTR pRootPathName) override;

  // Connection directory
  HRESULT STDMETHODCALLTYPE BrokerLcdLock(LONG* p_refCount) override;
  HRESULT STDMETHODCALLTYPE BrokerLcdUnlock(LONG* p_refCount) override;
  HRESULT STDMETHODCALLTYPE BrokerLcdLockTime(LONG* p_lockTime) override;
  HRESULT STDMETHODCALLTYPE BrokerLcdFindConnectionFormat(BSTR p_string, ULONG p_realm, LONG* p_format) override;
  HRESULT STDMETHODCALLTYPE BrokerLcdRemoveConnection(BSTR p_string, ULONG p_realm) override;
  HRESULT STDMETHODCALLTYPE BrokerLcdTryAddConnection(BSTR p_string, ULONG p_realmToSeek, ULONG p_realmToAdd,
                                                      LONG p_msgFormatVersion) override;
  HRESULT STDMETHODCALLTYPE BrokerLcdGetMessageTarget(BSTR* p_string) override;
  HRESULT STDMETHODCALLTYPE BrokerLcdDispatchMessage(SAFEARRAY* p_msgData, ULONG p_senderTwlVersion,
                                                     ULONG p_expectedMsgFormat, ULONG p_realm) override;
  HRESULT STDMETHODCALLTYPE BrokerLcdClearMessage() override;
  HRESULT STDMETHODCALLTYPE BrokerLcdPruneDeadMessage() override;
  HRESULT STDMETHODCALLTYPE BrokerLcdGetMessageData(SAFEARRAY** p_msgData) override;
  HRESULT STDMETHODCALLTYPE BrokerLcdMessageTimeout(LONG* p_timeout) override;

  // Preferences and small services
  HRESULT STDMETHODCALLTYPE BrokerPrefGetAndDeleteLumenPlayerVersion(BSTR* p_string) override;
  HRESULT STDMETHODCALLTYPE BrokerPrefMarkAutoUpdaterForRun(BSTR p_xmlFromServer) override;
  HRESULT STDMETHODCALLTYPE BrokerPrefGetExceptionDialogSize(ULONG* p_width, ULONG* p_height) override;
  HRESULT STDMETHODCALLTYPE BrokerPrefSetExceptionDialogSize(ULONG p_width, ULONG p_height) override;
  HRESULT STDMETHODCALLTYPE BrokerDelayScreensaver() override;
  HRESULT STDMETHODCALLTYPE BrokerPrefGetLumenPlayerVersion(BSTR* p_string) override;
  HRESULT STDMETHODCALLTYPE BrokerPrefDeleteLumenPlayerVersion() override;
  HRESULT STDMETHODCALLTYPE BrokerGetDirectInputCount(ULONG* p_count) override;
  HRESULT STDMETHODCALLTYPE BrokerIsDriveAvailable(LPWSTR p_lpwRootPathName) override;

  // Add-on products
  HRESULT STDMETHODCALLTYPE BrokerLMOpenDownload(BSTR p_url, ULONG* p_lmCookie) override;
  HRESULT STDMETHODCALLTYPE BrokerLMUpdateDownload(ULONG p_lmCookie, ULONG* p_pos, ULONG* p_len) override;
  HRESULT STDMETHODCALLTYPE BrokerLMCloseDownload(ULONG p_lmCookie, BSTR p_applicationName,
                                                  ULONG* p_resultCode) override;
  HRESULT STDMETHODCALLTYPE BrokerLMLaunch(BSTR p_applicationName, BSTR p_applicationParams) override;
  HRESULT STDMETHODCALLTYPE BrokerLMGetVersion(BSTR p_applicationName, ULONG* p_fileVersionMS,
                                               ULONG* p_fileVersionLS) override;
  HRESULT STDMETHODCALLTYPE BrokerLMIsRunning(BSTR p_applicationName) override;

  // Dialogs
  HRESULT STDMETHODCALLTYPE BrokerSaveDialog(ULONG p_hwnd, LPWSTR p_lpwstrInitialFileName, ULONG* p_fileCookie,
                                             BSTR* p_chosenFilePath) override;
  HRESULT STDMETHODCALLTYPE BrokerOpenDialog(ULONG p_hwnd, ULONG dwFilterPairs, ULONG dwFilterLength,
                                             SAFEARRAY* p_FilterArray, ULONG dwFlags,
                                             VARIANT* p_chosenFilePathArray) override;
  HRESULT STDMETHODCALLTYPE BrokerPrintDialog(ULONG p_hwnd, ULONG* p_nFromPage, ULONG* p_nToPage, ULONG* p_dwFlags,
                                              ULONG* p_hdc) override;
  HRESULT STDMETHODCALLTYPE BrokerSaveDialog2(ULONG p_hwnd, LPWSTR p_lpwstrInitialFileName, ULONG dwFilterPairs,
                                              ULONG dwFilterLength, SAFEARRAY* p_FilterArray, ULONG dwFlags,
                                              ULONG* p_fileCookie, BSTR* p_chosenFilePath) override;

  // Print and GDI relay
  HRESULT STDMETHODCALLTYPE BrokerDeleteDC(ULONG dwHDC, ULONG* p_dwRC) override;
  HRESULT STDMETHODCALLTYPE BrokerSaveDC(ULONG dwHDC, ULONG* p_dwState) override;
  HRESULT STDMETHODCALLTYPE BrokerRestoreDC(ULONG dwHDC, ULONG dwSavedDC) override;
  HRESULT STDMETHODCALLTYPE BrokerStartDoc(ULONG dwHDC, ULONG* p_pixelWidth, ULONG* p_pixelHeight, ULONG* p_deviceWidth,
                                           ULONG* p_deviceHeight, ULONG* p_paperPixelWidth, ULONG* p_paperPixelHeight,
                                           ULONG* p_hRes, ULONG* p_vRes) override;
  HRESULT STDMETHODCALLTYPE BrokerStartPage(ULONG dwHDC) override;
  HRESULT STDMETHODCALLTYPE BrokerAddRectangle(ULONG dwHDC, SAFEARRAY* p_RectArray, ULONG dwRGB) override;
  HRESULT STDMETHODCALLTYPE BrokerIntersectClipRect(ULONG dwHDC, ULONG dwLeft, ULONG dwTop, ULONG dwRight,
                                                    ULONG dwBottom, ULONG* p_dwRC) override;
  HRESULT STDMETHODCALLTYPE BrokerSetPolyFillMode(ULONG dwHDC, ULONG dwMode, ULONG* p_dwRC) override;
  HRESULT STDMETHODCALLTYPE BrokerBeginPath(ULONG dwHDC) override;
  HRESULT STDMETHODCALLTYPE BrokerEndPath(ULONG dwHDC) override;
  HRESULT STDMETHODCALLTYPE BrokerMoveTo(ULONG dwHDC, ULONG dwX, ULONG dwY) override;
  HRESULT STDMETHODCALLTYPE BrokerLineTo(ULONG dwHDC, ULONG dwDeltaX, ULONG dwDeltaY) override;
  HRESULT STDMETHODCALLTYPE BrokerPathToSolidFill(ULONG dwHDC, ULONG dwRGB) override;
  HRESULT STDMETHODCALLTYPE BrokerEndPage(ULONG dwHDC) override;
  HRESULT STDMETHODCALLTYPE BrokerEndDoc(ULONG dwHDC) override;
  HRESULT STDMETHODCALLTYPE BrokerPathToBitmapFill(ULONG dwHDC, SAFEARRAY* p_tRectArray, SAFEARRAY* p_sRectArray,
                                                   SAFEARRAY* p_BitmapArray, SAFEARRAY* p_BitmapInfoArray,
                                                   ULONG dwSaveRestore) override;
  HRESULT STDMETHODCALLTYPE BrokerPathToTransparentBitmapFill(ULONG dwHDC, SAFEARRAY* p_tRectArray,
                                                              SAFEARRAY* p_sRectArray, SAFEARRAY* p_BitmapArray,
                                                              SAFEARRAY* p_BitmapInfoArray, ULONG dwRGB,
                                                              ULONG dwROP) override;
  HRESULT STDMETHODCALLTYPE BrokerPolyBezierTo(ULONG dwHDC, SAFEARRAY* p_CubicArray, ULONG dwCount) override;
  HRESULT STDMETHODCALLTYPE BrokerPathToStrokedLine(ULONG dwHDC, ULONG dwThickness, ULONG dwRGB) override;
  HRESULT STDMETHODCALLTYPE BrokerSelectClipPath(ULONG dwHDC, ULONG dwMode) override;
  HRESULT STDMETHODCALLTYPE BrokerGetTextAlign(ULONG dwHDC, ULONG* p_dwRC) override;
  HRESULT STDMETHODCALLTYPE BrokerSetTextAlign(ULONG dwHDC, ULONG dwAlign, ULONG* p_dwRC) override;
  HRESULT STDMETHODCALLTYPE BrokerGetBkMode(ULONG dwHDC, ULONG* p_dwRC) override;
  HRESULT STDMETHODCALLTYPE BrokerSetBkMode(ULONG dwHDC, ULONG dwMode, ULONG* p_dwRC) override;
  HRESULT STDMETHODCALLTYPE BrokerGetTextColor(ULONG dwHDC, ULONG* p_dwRC) override;
  HRESULT STDMETHODCALLTYPE BrokerSetTextColor(ULONG dwHDC, ULONG dwColor, ULONG* p_dwRC) override;
  HRESULT STDMETHODCALLTYPE BrokerGetDeviceCaps(ULONG dwHDC, ULONG dwIndex, ULONG* p_dwRC) override;
  HRESULT STDMETHODCALLTYPE BrokerDPtoLP(ULONG dwHDC, ULONG* p_dwX, ULONG* p_dwY, ULONG dwCount,
                                         ULONG* p_dwRC) override;
  HRESULT STDMETHODCALLTYPE BrokerCreateFontIndirect(SAFEARRAY* p_LogFontArray, ULONG* p_dwFont) override;
  HRESULT STDMETHODCALLTYPE BrokerGetObjectType(ULONG dwHandle, ULONG* p_dwType) override;
  HRESULT STDMETHODCALLTYPE BrokerGetCurrentObject(ULONG dwHDC, ULONG dwObjectType, ULONG* p_dwHGDIObj) override;
  HRESULT STDMETHODCALLTYPE BrokerSelectObject(ULONG dwHDC, ULONG dwHGDI, ULONG* p_dwHGDIOld) override;
  HRESULT STDMETHODCALLTYPE BrokerDeleteObject(ULONG dwHandle, ULONG* p_dwRC) override;
  HRESULT STDMETHODCALLTYPE BrokerExtTextOutA(ULONG dwHDC, ULONG dwX, ULONG dwY, ULONG dwOptions, ULONG dwIsRectNULL,
                                              SAFEARRAY* p_RectArray, SAFEARRAY* p_StrArray, ULONG dwCount,
                                              ULONG dwIsDxNULL, SAFEARRAY* p_DxArray, ULONG* p_dwRC) override;
  HRESULT STDMETHODCALLTYPE BrokerExtTextOutW(ULONG dwHDC, ULONG dwX, ULONG dwY, ULONG dwOptions, ULONG dwIsRectNULL,
                                              SAFEARRAY* p_RectArray, SAFEARRAY* p_StrArray, ULONG dwCount,
                                              ULONG dwIsDxNULL, SAFEARRAY* p_DxArray, ULONG* p_dwRC) override;
  HRESULT STDMETHODCALLTYPE BrokerGetTextMetrics(ULONG dwHDC, VARIANT* p_VarTextmetricArray) override;
  HRESULT STDMETHODCALLTYPE BrokerGetTextExtentPoint32A(ULONG dwHDC, SAFEARRAY* p_StrArray, ULONG dwCount,
                                                        ULONG* p_dwCx, ULONG* p_dwCy) override;
  HRESULT STDMETHODCALLTYPE BrokerGetTextExtentPoint32W(ULONG dwHDC, SAFEARRAY* p_StrArray, ULONG dwCount,
                                                        ULONG* p_dwCx, ULONG* p_dwCy) override;
  HRESULT STDMETHODCALLTYPE BrokerSetTextCharacterExtra(ULONG dwHDC, ULONG dwCharExtra, ULONG* p_dwRC) override;
  HRESULT STDMETHODCALLTYPE BrokerSelectClipRgnNULL(ULONG dwHDC, ULONG* p_dwRC) override;
  HRESULT STDMETHODCALLTYPE BrokerGetWorldTransform(ULONG dwHDC, VARIANT* p_VarXformArray) override;
  HRESULT STDMETHODCALLTYPE BrokerSetWorldTransform(ULONG dwHDC, SAFEARRAY* p_XformArray, ULONG* p_dwRC) override;
  HRESULT STDMETHODCALLTYPE BrokerSetGraphicsMode(ULONG dwHDC, ULONG dwMode, ULONG* p_dwRC) override;
  HRESULT STDMETHODCALLTYPE BrokerIMLangFontLinkMapFont(ULONG dwDC, ULONG dwCodePages, ULONG dwhSrcFont,
                                                        ULONG* p_dwhDestFont) override;
  HRESULT STDMETHODCALLTYPE BrokerIMLangFontLinkGetFontCodePages(ULONG dwDC, ULONG dwhFont,
                                                                 ULONG* p_dwCodePages) override;
  HRESULT STDMETHODCALLTYPE BrokerIMLangFontLinkReleaseFont(ULONG dwhFont) override;

  // Path policy
  HRESULT STDMETHODCALLTYPE BrokerIsWritablePath(BSTR p_path, LONG p_alsoCheckExtension) override;

  // Shortcuts and icons
  HRESULT STDMETHODCALLTYPE BrokerCreateIconPath(BSTR p_fileName, BSTR* p_iconPath) override;
  HRESULT STDMETHODCALLTYPE BrokerCreateInternetShortcut(BSTR fileName, BSTR url, BSTR iconPath,
                                                         SAFEARRAY* p_signed_auth_data, SAFEARRAY* p_strings,
                                                         ULONG flags) override;
  HRESULT STDMETHODCALLTYPE BrokerCreateIconPathV2(BSTR p_fileName, BSTR* p_iconPath, LONG p_overwrite) override;
  HRESULT STDMETHODCALLTYPE BrokerCreateDesktopShortcut(BSTR fileName, BSTR url, BSTR iconPath, ULONG flags) override;

  // File protection
  HRESULT STDMETHODCALLTYPE BrokerMarkFileUnsafe(BSTR p_filePath, BSTR p_sourceURL, BSTR p_refURL) override;
  HRESULT STDMETHODCALLTYPE BrokerOpenFileWithAuditingInfo(BSTR pFileName, BSTR pRemoteUrl, ULONG p_hwnd,
                                                           ULONG* p_fileCookie) override;

  // Audio device notification
  HRESULT STDMETHODCALLTYPE BrokerMMNotificationClientCreate(LONG_PTR sourceProcessHandle,
                                                             LONG_PTR* lpClientCookie) override;
  HRESULT STDMETHODCALLTYPE BrokerMMNotificationClientSetDefaultDeviceChangeEvent(
      LONG_PTR clientCookie, LONG_PTR defaultDeviceChangeEvent) override;
  HRESULT STDMETHODCALLTYPE
  BrokerMMNotificationClientSetDeviceStateChangeEvent(LONG_PTR clientCookie, LONG_PTR deviceStateChangeEvent) override;
  HRESULT STDMETHODCALLTYPE BrokerMMNotificationClientDestroy(LONG_PTR clientCookie) override;

  HostCallbacks* Host() const { return host_; }
  BrokerCookieTable& Cookies() { return cookies_; }
  BrokerPathPolicy& Policy() { return policy_; }
  ITypeInfo* TypeInfo() const { return typeInfo_.get(); }
  IMLangFontLink* FontLink() const { return fontLink_.get(); }

 protected:
  // Only Release destroys: frees the cookie records without closing their handles.
  virtual ~CoLumenBrokerServer();

 private:
  // The directory's accessor, made by the first BrokerLcd* call; null only when memory is short.
  ILcdAccessor* LcdAccessor();

  // In the order they are built; destruction runs the other way.
  LONG refCount_ = 1;
  ComPtr<ITypeInfo> typeInfo_;
  Advapi32DllHelper advapi32_;
  std::unique_ptr<ILcdAccessor> lcdAccessor_;
  Win32PathPlatform pathPlatform_;
  BrokerPathPolicy policy_;
  BrokerCookieTable cookies_;
  HostCallbacks* host_;
  ComPtr<IMultiLanguage> multiLanguage_;
  ComPtr<IMLangFontLink> fontLink_;
  // The file family's platforms come before the server's identities, which are read through them.
  Win32BrokerFilePlatform files_;
  Win32EnterpriseProtectionPlatform protection_;
  Win32InternetMarkPlatform marks_;
  EnterpriseIdentityList serverIdentities_;
  Edpwin32DllHelper edpwin32_;
  DeferredFileOpener opener_;
  BrokerFileMethods fileMethods_;
  DialogOwnerPolicy dialogOwners_;
  AuditedFileOpener auditedOpener_;
  Win32DialogPlatform dialogPlatform_;
  BrokerDialogMethods dialogMethods_;
  Win32AddOnFamily addOns_;
  Win32PrefPlatform prefPlatform_;
  UpdateMarking updateMarking_;
  BrokerPrefMethods prefMethods_;
  Win32AudioPlatform audioPlatform_;
  // notificationClients: given back at destruction after the font link, see the destructor.
  BrokerAudioMethods notificationClients_;
};

}  // namespace SASM
