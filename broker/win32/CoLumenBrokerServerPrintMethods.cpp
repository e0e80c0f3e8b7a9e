// The print and GDI relay on the live object. Each method converts the
// interface's types and calls the portable family, where every rule lives,
// over the real GDI and the object's font-link service. The family keeps no
// state, so it is made for each call.
#include "broker/win32/CoLumenBrokerServer.h"

#include <oleauto.h>

#include <cstring>

#include "broker/BrokerHresult.h"
#include "broker/BrokerPrintMethods.h"
#include "broker/win32/Win32PrintRelayPlatform.h"

namespace SASM {
namespace {

using Thin = BrokerPrintMethods::Thin;

struct Relay {
  explicit Relay(IMLangFontLink* fontLink) : gdi(fontLink), methods(gdi) {}
  Win32PrintRelayPlatform gdi;
  BrokerPrintMethods methods;
};

// A ULONG out-argument through a 32-bit value of the family's: copied in and
// back. The interface always supplies one; a null one from inside the process
// is skipped rather than written through.
class Out {
 public:
  explicit Out(ULONG* out) : out_(out), value_(out ? static_cast<uint32_t>(*out) : 0) {}
  Out(const Out&) = delete;
  Out& operator=(const Out&) = delete;
  ~Out() {
    if (out_) *out_ = value_;
  }
  uint32_t* get() { return &value_; }

 private:
  ULONG* out_;
  uint32_t value_;
};

HRESULT CallThin(IMLangFontLink* fontLink, Thin method, const BrokerPrintMethods::ThinArguments& arguments,
                 ULONG* out) {
  Relay relay(fontLink);
  Out value(out);
  return relay.methods.CallThin(method, arguments, value.get());
}

// A reply structure as a VARIANT holding a SAFEARRAY of its bytes.
template <size_t N>
HRESULT GiveBytes(const std::array<uint8_t, N>& bytes, VARIANT* out) {
  SAFEARRAY* array = SafeArrayCreateVector(VT_UI1, 0, N);
  if (!array) return BrokerHresult::kFail;
  void* data = nullptr;
  if (FAILED(SafeArrayAccessData(array, &data))) {
    SafeArrayDestroy(array);
    return BrokerHresult::kFail;
  }
  std::memcpy(data, bytes.data(), N);
  SafeArrayUnaccessData(array);
  VARIANT reply;
  VariantInit(&reply);
  reply.vt = VT_ARRAY | VT_UI1;
  reply.parray = array;
  HRESULT result = out ? VariantCopy(out, &reply) : S_OK;
  VariantClear(&reply);
  return FAILED(result) ? BrokerHresult::kFail : BrokerHresult::kOk;
}

}  // namespace

HRESULT CoLumenBrokerServer::BrokerDeleteDC(ULONG dwHDC, ULONG* p_dwRC) {
  return CallThin(FontLink(), Thin::kDeleteDC, {dwHDC}, p_dwRC);
}
HRESULT CoLumenBrokerServer::BrokerSaveDC(ULONG dwHDC, ULONG* p_dwState) {
  return CallThin(FontLink(), Thin::kSaveDC, {dwHDC}, p_dwState);
}
HRESULT CoLumenBrokerServer::BrokerRestoreDC(ULONG dwHDC, ULONG dwSavedDC) {
  return CallThin(FontLink(), Thin::kRestoreDC, {dwHDC, dwSavedDC}, nullptr);
}

HRESULT CoLumenBrokerServer::BrokerStartDoc(ULONG dwHDC, ULONG* p_pixelWidth, ULONG* p_pixelHeight,
                                            ULONG* p_deviceWidth, ULONG* p_deviceHeight, ULONG* p_paperPixelWidth,
                                            ULONG* p_paperPixelHeight, ULONG* p_hRes, ULONG* p_vRes) {
  Relay relay(FontLink());
  BrokerPrintMethods::DocumentMetrics m;
  HRESULT result = relay.methods.StartDocument(dwHDC, m);
  if (result != BrokerHresult::kOk) return result;
  const std::pair<ULONG*, uint32_t> outs[] = {
      {p_pixelWidth, m.pixelWidth},       {p_pixelHeight, m.pixelHeight}, {p_deviceWidth, m.deviceWidth},
      {p_deviceHeight, m.deviceHeight},   {p_paperPixelWidth, m.paperPixelWidth},
      {p_paperPixelHeight, m.paperPixelHeight}, {p_hRes, m.hRes}, {p_vRes, m.vRes}};
  for (const auto& [out, value] : outs)
    if (out) *out = value;
  return result;
}

HRESULT CoLumenBrokerServer::BrokerStartPage(ULONG dwHDC) {
  return CallThin(FontLink(), Thin::kStartPage, {dwHDC}, nullptr);
}

HRESULT CoLumenBrokerServer::BrokerAddRectangle(ULONG dwHDC, SAFEARRAY* p_RectArray, ULONG dwRGB) {
  Relay relay(FontLink());
  return relay.methods.AddRectangle(dwHDC, p_RectArray, dwRGB);
}

HRESULT CoLumenBrokerServer::BrokerIntersectClipRect(ULONG dwHDC, ULONG dwLeft, ULONG dwTop, ULONG dwRight,
                                                     ULONG dwBottom, ULONG* p_dwRC) {
  return CallThin(FontLink(), Thin::kIntersectClipRect, {dwHDC, dwLeft, dwTop, dwRight, dwBottom}, p_dwRC);
}
HRESULT CoLumenBrokerServer::BrokerSetPolyFillMode(ULONG dwHDC, ULONG dwMode, ULONG* p_dwRC) {
  return CallThin(FontLink(), Thin::kSetPolyFillMode, {dwHDC, dwMode}, p_dwRC);
}
HRESULT CoLumenBrokerServer::BrokerBeginPath(ULONG dwHDC) {
  return CallThin(FontLink(), Thin::kBeginPath, {dwHDC}, nullptr);
}
HRESULT CoLumenBrokerServer::BrokerEndPath(ULONG dwHDC) {
  return CallThin(FontLink(), Thin::kEndPath, {dwHDC}, nullptr);
}
HRESULT CoLumenBrokerServer::BrokerMoveTo(ULONG dwHDC, ULONG dwX, ULONG dwY) {
  return CallThin(FontLink(), Thin::kMoveTo, {dwHDC, dwX, dwY}, nullptr);
}
HRESULT CoLumenBrokerServer::BrokerLineTo(ULONG dwHDC, ULONG dwDeltaX, ULONG dwDeltaY) {
  return CallThin(FontLink(), Thin::kLineTo, {dwHDC, dwDeltaX, dwDeltaY}, nullptr);
}

HRESULT CoLumenBrokerServer::BrokerPathToSolidFill(ULONG dwHDC, ULONG dwRGB) {
  Relay relay(FontLink());
  return relay.methods.PathToSolidFill(dwHDC, dwRGB);
}

HRESULT CoLumenBrokerServer::BrokerEndPage(ULONG dwHDC) {
  return CallThin(FontLink(), Thin::kEndPage, {dwHDC}, nullptr);
}
HRESULT CoLumenBrokerServer::BrokerEndDoc(ULONG dwHDC) { return CallThin(FontLink(), Thin::kEndDoc, {dwHDC}, nullptr); }

HRESULT CoLumenBrokerServer::BrokerPathToBitmapFill(ULONG dwHDC, SAFEARRAY* p_tRectArray, SAFEARRAY* p_sRectArray,
                                                    SAFEARRAY* p_BitmapArray, SAFEARRAY* p_BitmapInfoArray,
                                                    ULONG dwSaveRestore) {
  Relay relay(FontLink());
  return relay.methods.PathToBitmapFill(dwHDC, p_tRectArray, p_sRectArray, p_BitmapArray, p_BitmapInfoArray,
                                        dwSaveRestore);
}

HRESULT CoLumenBrokerServer::BrokerPathToTransparentBitmapFill(ULONG dwHDC, SAFEARRAY* p_tRectArray,
                                                               SAFEARRAY* p_sRectArray, SAFEARRAY* p_BitmapArray,
                                                               SAFEARRAY* p_BitmapInfoArray, ULONG dwRGB, ULONG dwROP) {
  Relay relay(FontLink());
  return relay.methods.PathToTransparentBitmapFill(dwHDC, p_tRectArray, p_sRectArray, p_BitmapArray,
                                                   p_BitmapInfoArray, dwRGB, dwROP);
}

HRESULT CoLumenBrokerServer::BrokerPolyBezierTo(ULONG dwHDC, SAFEARRAY* p_CubicArray, ULONG dwCount) {
  Relay relay(FontLink());
  return relay.methods.PolyBezierTo(dwHDC, p_CubicArray, dwCount);
}

HRESULT CoLumenBrokerServer::BrokerPathToStrokedLine(ULONG dwHDC, ULONG dwThickness, ULONG dwRGB) {
  Relay relay(FontLink());
  return relay.methods.PathToStrokedLine(dwHDC, dwThickness, dwRGB);
}

HRESULT CoLumenBrokerServer::BrokerSelectClipPath(ULONG dwHDC, ULONG dwMode) {
  return CallThin(FontLink(), Thin::kSelectClipPath, {dwHDC, dwMode}, nullptr);
}
HRESULT CoLumenBrokerServer::BrokerGetTextAlign(ULONG dwHDC, ULONG* p_dwRC) {
  return CallThin(FontLink(), Thin::kGetTextAlign, {dwHDC}, p_dwRC);
}
HRESULT CoLumenBrokerServer::BrokerSetTextAlign(ULONG dwHDC, ULONG dwAlign, ULONG* p_dwRC) {
  return CallThin(FontLink(), Thin::kSetTextAlign, {dwHDC, dwAlign}, p_dwRC);
}
HRESULT CoLumenBrokerServer::BrokerGetBkMode(ULONG dwHDC, ULONG* p_dwRC) {
  return CallThin(FontLink(), Thin::kGetBkMode, {dwHDC}, p_dwRC);
}
HRESULT CoLumenBrokerServer::BrokerSetBkMode(ULONG dwHDC, ULONG dwMode, ULONG* p_dwRC) {
  return CallThin(FontLink(), Thin::kSetBkMode, {dwHDC, dwMode}, p_dwRC);
}
HRESULT CoLumenBrokerServer::BrokerGetTextColor(ULONG dwHDC, ULONG* p_dwRC) {
  return CallThin(FontLink(), Thin::kGetTextColor, {dwHDC}, p_dwRC);
}
HRESULT CoLumenBrokerServer::BrokerSetTextColor(ULONG dwHDC, ULONG dwColor, ULONG* p_dwRC) {
  return CallThin(FontLink(), Thin::kSetTextColor, {dwHDC, dwColor}, p_dwRC);
}
HRESULT CoLumenBrokerServer::BrokerGetDeviceCaps(ULONG dwHDC, ULONG dwIndex, ULONG* p_dwRC) {
  return CallThin(FontLink(), Thin::kGetDeviceCaps, {dwHDC, dwIndex}, p_dwRC);
}

HRESULT CoLumenBrokerServer::BrokerDPtoLP(ULONG dwHDC, ULONG* p_dwX, ULONG* p_dwY, ULONG dwCount, ULONG* p_dwRC) {
  Relay relay(FontLink());
  Out x(p_dwX), y(p_dwY), rc(p_dwRC);
  return relay.methods.DPtoLP(dwHDC, x.get(), y.get(), dwCount, rc.get());
}

HRESULT CoLumenBrokerServer::BrokerCreateFontIndirect(SAFEARRAY* p_LogFontArray, ULONG* p_dwFont) {
  Relay relay(FontLink());
  Out font(p_dwFont);
  return relay.methods.CreateFontFromBytes(p_LogFontArray, font.get());
}

HRESULT CoLumenBrokerServer::BrokerGetObjectType(ULONG dwHandle, ULONG* p_dwType) {
  return CallThin(FontLink(), Thin::kGetObjectType, {dwHandle}, p_dwType);
}
HRESULT CoLumenBrokerServer::BrokerGetCurrentObject(ULONG dwHDC, ULONG dwObjectType, ULONG* p_dwHGDIObj) {
  return CallThin(FontLink(), Thin::kGetCurrentObject, {dwHDC, dwObjectType}, p_dwHGDIObj);
}
HRESULT CoLumenBrokerServer::BrokerSelectObject(ULONG dwHDC, ULONG dwHGDI, ULONG* p_dwHGDIOld) {
  return CallThin(FontLink(), Thin::kSelectObject, {dwHDC, dwHGDI}, p_dwHGDIOld);
}
HRESULT CoLumenBrokerServer::BrokerDeleteObject(ULONG dwHandle, ULONG* p_dwRC) {
  return CallThin(FontLink(), Thin::kDeleteObject, {dwHandle}, p_dwRC);
}

HRESULT CoLumenBrokerServer::BrokerExtTextOutA(ULONG dwHDC, ULONG dwX, ULONG dwY, ULONG dwOptions, ULONG dwIsRectNULL,
                                               SAFEARRAY* p_RectArray, SAFEARRAY* p_StrArray, ULONG dwCount,
                                               ULONG dwIsDxNULL, SAFEARRAY* p_DxArray, ULONG* p_dwRC) {
  Relay relay(FontLink());
  Out rc(p_dwRC);
  return relay.methods.ExtTextOutA(dwHDC, dwX, dwY, dwOptions, dwIsRectNULL, p_RectArray, p_StrArray, dwCount,
                                   dwIsDxNULL, p_DxArray, rc.get());
}

HRESULT CoLumenBrokerServer::BrokerExtTextOutW(ULONG dwHDC, ULONG dwX, ULONG dwY, ULONG dwOptions, ULONG dwIsRectNULL,
                                               SAFEARRAY* p_RectArray, SAFEARRAY* p_StrArray, ULONG dwCount,
                                               ULONG dwIsDxNULL, SAFEARRAY* p_DxArray, ULONG* p_dwRC) {
  Relay relay(FontLink());
  Out rc(p_dwRC);
  return relay.methods.ExtTextOutW(dwHDC, dwX, dwY, dwOptions, dwIsRectNULL, p_RectArray, p_StrArray, dwCount,
                                   dwIsDxNULL, p_DxArray, rc.get());
}

HRESULT CoLumenBrokerServer::BrokerGetTextMetrics(ULONG dwHDC, VARIANT* p_VarTextmetricArray) {
  Relay relay(FontLink());
  std::array<uint8_t, PrintRelayPlatform::kTextMetricBytes> reply;
  HRESULT result = relay.methods.TextMetrics(dwHDC, reply);
  return result == BrokerHresult::kOk ? GiveBytes(reply, p_VarTextmetricArray) : result;
}

HRESULT CoLumenBrokerServer::BrokerGetTextExtentPoint32A(ULONG dwHDC, SAFEARRAY* p_StrArray, ULONG dwCount,
                                                         ULONG* p_dwCx, ULONG* p_dwCy) {
  Relay relay(FontLink());
  Out cx(p_dwCx), cy(p_dwCy);
  return relay.methods.GetTextExtentPoint32A(dwHDC, p_StrArray, dwCount, cx.get(), cy.get());
}

HRESULT CoLumenBrokerServer::BrokerGetTextExtentPoint32W(ULONG dwHDC, SAFEARRAY* p_StrArray, ULONG dwCount,
                                                         ULONG* p_dwCx, ULONG* p_dwCy) {
  Relay relay(FontLink());
  Out cx(p_dwCx), cy(p_dwCy);
  return relay.methods.GetTextExtentPoint32W(dwHDC, p_StrArray, dwCount, cx.get(), cy.get());
}

HRESULT CoLumenBrokerServer::BrokerSetTextCharacterExtra(ULONG dwHDC, ULONG dwCharExtra, ULONG* p_dwRC) {
  return CallThin(FontLink(), Thin::kSetTextCharacterExtra, {dwHDC, dwCharExtra}, p_dwRC);
}
HRESULT CoLumenBrokerServer::BrokerSelectClipRgnNULL(ULONG dwHDC, ULONG* p_dwRC) {
  return CallThin(FontLink(), Thin::kSelectClipRgnNULL, {dwHDC}, p_dwRC);
}

HRESULT CoLumenBrokerServer::BrokerGetWorldTransform(ULONG dwHDC, VARIANT* p_VarXformArray) {
  Relay relay(FontLink());
  std::array<uint8_t, PrintRelayPlatform::kXformBytes> reply;
  HRESULT result = relay.methods.GetWorldTransform(dwHDC, reply);
  return result == BrokerHresult::kOk ? GiveBytes(reply, p_VarXformArray) : result;
}

HRESULT CoLumenBrokerServer::BrokerSetWorldTransform(ULONG dwHDC, SAFEARRAY* p_XformArray, ULONG* p_dwRC) {
  Relay relay(FontLink());
  Out rc(p_dwRC);
  return relay.methods.SetWorldTransform(dwHDC, p_XformArray, rc.get());
}

HRESULT CoLumenBrokerServer::BrokerSetGraphicsMode(ULONG dwHDC, ULONG dwMode, ULONG* p_dwRC) {
  return CallThin(FontLink(), Thin::kSetGraphicsMode, {dwHDC, dwMode}, p_dwRC);
}

HRESULT CoLumenBrokerServer::BrokerIMLangFontLinkMapFont(ULONG dwDC, ULONG dwCodePages, ULONG dwhSrcFont,
                                                         ULONG* p_dwhDestFont) {
  Relay relay(FontLink());
  Out linked(p_dwhDestFont);
  return relay.methods.FontLinkMapFont(dwDC, dwCodePages, dwhSrcFont, linked.get());
}

HRESULT CoLumenBrokerServer::BrokerIMLangFontLinkGetFontCodePages(ULONG dwDC, ULONG dwhFont, ULONG* p_dwCodePages) {
  Relay relay(FontLink());
  Out pages(p_dwCodePages);
  return relay.methods.FontLinkGetFontCodePages(dwDC, dwhFont, pages.get());
}

HRESULT CoLumenBrokerServer::BrokerIMLangFontLinkReleaseFont(ULONG dwhFont) {
  Relay relay(FontLink());
  return relay.methods.FontLinkReleaseFont(dwhFont);
}

}  // namespace SASM
