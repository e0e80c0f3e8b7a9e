// The methods of families not built yet. Each answers E_NOTIMPL and touches
// none of its arguments; a family's own file replaces its group here.
#include "broker/win32/CoLumenBrokerServer.h"

namespace SASM {

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

// Dialogs
HRESULT CoLumenBrokerServer::BrokerOpenDialog(ULONG p_hwnd, ULONG dwFilterPairs, ULONG dwFilterLength,
                                              SAFEARRAY* p_FilterArray, ULONG dwFlags, VARIANT* p_chosenFilePathArray) {
  return E_NOTIMPL;
}
HRESULT CoLumenBrokerServer::BrokerPrintDialog(ULONG p_hwnd, ULONG* p_nFromPage, ULONG* p_nToPage, ULONG* p_dwFlags,
                                               ULONG* p_hdc) {
  return E_NOTIMPL;
}
HRESULT CoLumenBrokerServer::BrokerSaveDialog2(ULONG p_hwnd, LPWSTR p_lpwstrInitialFileName, ULONG dwFilterPairs,
                                               ULONG dwFilterLength, SAFEARRAY* p_FilterArray, ULONG dwFlags,
                                               ULONG* p_fileCookie, BSTR* p_chosenFilePath) {
  return E_NOTIMPL;
}

// Print and GDI relay
HRESULT CoLumenBrokerServer::BrokerDeleteDC(ULONG dwHDC, ULONG* p_dwRC) { return E_NOTIMPL; }
HRESULT CoLumenBrokerServer::BrokerSaveDC(ULONG dwHDC, ULONG* p_dwState) { return E_NOTIMPL; }
HRESULT CoLumenBrokerServer::BrokerRestoreDC(ULONG dwHDC, ULONG dwSavedDC) { return E_NOTIMPL; }
HRESULT CoLumenBrokerServer::BrokerStartDoc(ULONG dwHDC, ULONG* p_pixelWidth, ULONG* p_pixelHeight,
                                            ULONG* p_deviceWidth, ULONG* p_deviceHeight, ULONG* p_paperPixelWidth,
                                            ULONG* p_paperPixelHeight, ULONG* p_hRes, ULONG* p_vRes) {
  return E_NOTIMPL;
}
HRESULT CoLumenBrokerServer::BrokerStartPage(ULONG dwHDC) { return E_NOTIMPL; }
HRESULT CoLumenBrokerServer::BrokerAddRectangle(ULONG dwHDC, SAFEARRAY* p_RectArray, ULONG dwRGB) { return E_NOTIMPL; }
HRESULT CoLumenBrokerServer::BrokerIntersectClipRect(ULONG dwHDC, ULONG dwLeft, ULONG dwTop, ULONG dwRight,
                                                     ULONG dwBottom, ULONG* p_dwRC) {
  return E_NOTIMPL;
}
HRESULT CoLumenBrokerServer::BrokerSetPolyFillMode(ULONG dwHDC, ULONG dwMode, ULONG* p_dwRC) { return E_NOTIMPL; }
HRESULT CoLumenBrokerServer::BrokerBeginPath(ULONG dwHDC) { return E_NOTIMPL; }
HRESULT CoLumenBrokerServer::BrokerEndPath(ULONG dwHDC) { return E_NOTIMPL; }
HRESULT CoLumenBrokerServer::BrokerMoveTo(ULONG dwHDC, ULONG dwX, ULONG dwY) { return E_NOTIMPL; }
HRESULT CoLumenBrokerServer::BrokerLineTo(ULONG dwHDC, ULONG dwDeltaX, ULONG dwDeltaY) { return E_NOTIMPL; }
HRESULT CoLumenBrokerServer::BrokerPathToSolidFill(ULONG dwHDC, ULONG dwRGB) { return E_NOTIMPL; }
HRESULT CoLumenBrokerServer::BrokerEndPage(ULONG dwHDC) { return E_NOTIMPL; }
HRESULT CoLumenBrokerServer::BrokerEndDoc(ULONG dwHDC) { return E_NOTIMPL; }
HRESULT CoLumenBrokerServer::BrokerPathToBitmapFill(ULONG dwHDC, SAFEARRAY* p_tRectArray, SAFEARRAY* p_sRectArray,
                                                    SAFEARRAY* p_BitmapArray, SAFEARRAY* p_BitmapInfoArray,
                                                    ULONG dwSaveRestore) {
  return E_NOTIMPL;
}
HRESULT CoLumenBrokerServer::BrokerPathToTransparentBitmapFill(ULONG dwHDC, SAFEARRAY* p_tRectArray,
                                                               SAFEARRAY* p_sRectArray, SAFEARRAY* p_BitmapArray,
                                                               SAFEARRAY* p_BitmapInfoArray, ULONG dwRGB, ULONG dwROP) {
  return E_NOTIMPL;
}
HRESULT CoLumenBrokerServer::BrokerPolyBezierTo(ULONG dwHDC, SAFEARRAY* p_CubicArray, ULONG dwCount) {
  return E_NOTIMPL;
}
HRESULT CoLumenBrokerServer::BrokerPathToStrokedLine(ULONG dwHDC, ULONG dwThickness, ULONG dwRGB) { return E_NOTIMPL; }
HRESULT CoLumenBrokerServer::BrokerSelectClipPath(ULONG dwHDC, ULONG dwMode) { return E_NOTIMPL; }
HRESULT CoLumenBrokerServer::BrokerGetTextAlign(ULONG dwHDC, ULONG* p_dwRC) { return E_NOTIMPL; }
HRESULT CoLumenBrokerServer::BrokerSetTextAlign(ULONG dwHDC, ULONG dwAlign, ULONG* p_dwRC) { return E_NOTIMPL; }
HRESULT CoLumenBrokerServer::BrokerGetBkMode(ULONG dwHDC, ULONG* p_dwRC) { return E_NOTIMPL; }
HRESULT CoLumenBrokerServer::BrokerSetBkMode(ULONG dwHDC, ULONG dwMode, ULONG* p_dwRC) { return E_NOTIMPL; }
HRESULT CoLumenBrokerServer::BrokerGetTextColor(ULONG dwHDC, ULONG* p_dwRC) { return E_NOTIMPL; }
HRESULT CoLumenBrokerServer::BrokerSetTextColor(ULONG dwHDC, ULONG dwColor, ULONG* p_dwRC) { return E_NOTIMPL; }
HRESULT CoLumenBrokerServer::BrokerGetDeviceCaps(ULONG dwHDC, ULONG dwIndex, ULONG* p_dwRC) { return E_NOTIMPL; }
HRESULT CoLumenBrokerServer::BrokerDPtoLP(ULONG dwHDC, ULONG* p_dwX, ULONG* p_dwY, ULONG dwCount, ULONG* p_dwRC) {
  return E_NOTIMPL;
}
HRESULT CoLumenBrokerServer::BrokerCreateFontIndirect(SAFEARRAY* p_LogFontArray, ULONG* p_dwFont) { return E_NOTIMPL; }
HRESULT CoLumenBrokerServer::BrokerGetObjectType(ULONG dwHandle, ULONG* p_dwType) { return E_NOTIMPL; }
HRESULT CoLumenBrokerServer::BrokerGetCurrentObject(ULONG dwHDC, ULONG dwObjectType, ULONG* p_dwHGDIObj) {
  return E_NOTIMPL;
}
HRESULT CoLumenBrokerServer::BrokerSelectObject(ULONG dwHDC, ULONG dwHGDI, ULONG* p_dwHGDIOld) { return E_NOTIMPL; }
HRESULT CoLumenBrokerServer::BrokerDeleteObject(ULONG dwHandle, ULONG* p_dwRC) { return E_NOTIMPL; }
HRESULT CoLumenBrokerServer::BrokerExtTextOutA(ULONG dwHDC, ULONG dwX, ULONG dwY, ULONG dwOptions, ULONG dwIsRectNULL,
                                               SAFEARRAY* p_RectArray, SAFEARRAY* p_StrArray, ULONG dwCount,
                                               ULONG dwIsDxNULL, SAFEARRAY* p_DxArray, ULONG* p_dwRC) {
  return E_NOTIMPL;
}
HRESULT CoLumenBrokerServer::BrokerExtTextOutW(ULONG dwHDC, ULONG dwX, ULONG dwY, ULONG dwOptions, ULONG dwIsRectNULL,
                                               SAFEARRAY* p_RectArray, SAFEARRAY* p_StrArray, ULONG dwCount,
                                               ULONG dwIsDxNULL, SAFEARRAY* p_DxArray, ULONG* p_dwRC) {
  return E_NOTIMPL;
}
HRESULT CoLumenBrokerServer::BrokerGetTextMetrics(ULONG dwHDC, VARIANT* p_VarTextmetricArray) { return E_NOTIMPL; }
HRESULT CoLumenBrokerServer::BrokerGetTextExtentPoint32A(ULONG dwHDC, SAFEARRAY* p_StrArray, ULONG dwCount,
                                                         ULONG* p_dwCx, ULONG* p_dwCy) {
  return E_NOTIMPL;
}
HRESULT CoLumenBrokerServer::BrokerGetTextExtentPoint32W(ULONG dwHDC, SAFEARRAY* p_StrArray, ULONG dwCount,
                                                         ULONG* p_dwCx, ULONG* p_dwCy) {
  return E_NOTIMPL;
}
HRESULT CoLumenBrokerServer::BrokerSetTextCharacterExtra(ULONG dwHDC, ULONG dwCharExtra, ULONG* p_dwRC) {
  return E_NOTIMPL;
}
HRESULT CoLumenBrokerServer::BrokerSelectClipRgnNULL(ULONG dwHDC, ULONG* p_dwRC) { return E_NOTIMPL; }
HRESULT CoLumenBrokerServer::BrokerGetWorldTransform(ULONG dwHDC, VARIANT* p_VarXformArray) { return E_NOTIMPL; }
HRESULT CoLumenBrokerServer::BrokerSetWorldTransform(ULONG dwHDC, SAFEARRAY* p_XformArray, ULONG* p_dwRC) {
  return E_NOTIMPL;
}
HRESULT CoLumenBrokerServer::BrokerSetGraphicsMode(ULONG dwHDC, ULONG dwMode, ULONG* p_dwRC) { return E_NOTIMPL; }
HRESULT CoLumenBrokerServer::BrokerIMLangFontLinkMapFont(ULONG dwDC, ULONG dwCodePages, ULONG dwhSrcFont,
                                                         ULONG* p_dwhDestFont) {
  return E_NOTIMPL;
}
HRESULT CoLumenBrokerServer::BrokerIMLangFontLinkGetFontCodePages(ULONG dwDC, ULONG dwhFont, ULONG* p_dwCodePages) {
  return E_NOTIMPL;
}
HRESULT CoLumenBrokerServer::BrokerIMLangFontLinkReleaseFont(ULONG dwhFont) { return E_NOTIMPL; }

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

}  // namespace SASM
