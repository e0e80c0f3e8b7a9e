#pragma once
// The print and GDI relay as plain logic: a sandboxed player draws on the
// printer's device context through these methods, and the server performs
// each GDI call on the real device. The family keeps no state and no drawing
// logic of its own; what it owns are the byte layouts of its arrays, their
// lengths, the two shapes in which a thin method hands GDI's result back, and
// the few composite methods that do several calls in one round trip.
//
// Handles arrive as their low 32 bits and are sign-extended; they are passed
// on with no table and no ownership check. Out-pointers are the interface's:
// the type library's marshalling always supplies them.
#include <array>
#include <cstdint>
#include <span>

#include "broker/PrintRelayPlatform.h"

namespace SASM {

class BrokerPrintMethods {
 public:
  using ByteArray = PrintRelayPlatform::ByteArray;

  // How a thin method answers: kOut always returns 0 and hands GDI's result
  // (its low 32 bits) back in the out-argument; kHresult returns 0x80004005
  // on a zero result, kHresultPositive on a result below 1.
  enum class Shape : uint8_t { kOut, kHresult, kHresultPositive };

  // The thin methods, in the order of the table.
  enum class Thin : uint8_t {
    kDeleteDC,
    kSaveDC,
    kRestoreDC,
    kStartPage,
    kEndPage,
    kEndDoc,
    kIntersectClipRect,
    kSetPolyFillMode,
    kBeginPath,
    kEndPath,
    kMoveTo,
    kLineTo,
    kSelectClipPath,
    kSelectClipRgnNULL,
    kGetTextAlign,
    kSetTextAlign,
    kGetBkMode,
    kSetBkMode,
    kGetTextColor,
    kSetTextColor,
    kGetDeviceCaps,
    kSetTextCharacterExtra,
    kSetGraphicsMode,
    kGetObjectType,
    kGetCurrentObject,
    kSelectObject,
    kDeleteObject,
  };

  struct ThinRow {
    Thin method;
    Shape shape;
    // The GDI call on the interface's arguments, the DC or handle first.
    int64_t (*call)(PrintRelayPlatform& gdi, const uint32_t* arguments);
  };

  // BrokerStartDoc's eight out-arguments.
  struct DocumentMetrics {
    uint32_t pixelWidth = 0, pixelHeight = 0;
    uint32_t deviceWidth = 0, deviceHeight = 0;
    uint32_t paperPixelWidth = 0, paperPixelHeight = 0;
    uint32_t hRes = 0, vRes = 0;
  };

  static constexpr const char16_t* kDocumentName = u"Lumen";
  static constexpr uint32_t kDocInfoSize = 40;
  // GetDeviceCaps: HORZRES, VERTRES, LOGPIXELSX, LOGPIXELSY, PHYSICALWIDTH, PHYSICALHEIGHT.
  static constexpr int32_t kHorzRes = 8, kVertRes = 10, kLogPixelsX = 88, kLogPixelsY = 90;
  static constexpr int32_t kPhysicalWidth = 110, kPhysicalHeight = 111;
  static constexpr uint32_t kGeometricPen = 0x10000;
  static constexpr int32_t kRgnAnd = 1;
  static constexpr uint32_t kSrcCopy = 0xCC0020;
  // The most points BrokerDPtoLP's buffer holds.
  static constexpr uint32_t kMaxTransformPoints = 0x2000;

  explicit BrokerPrintMethods(PrintRelayPlatform& gdi) : gdi_(gdi) {}
  BrokerPrintMethods(const BrokerPrintMethods&) = delete;
  BrokerPrintMethods& operator=(const BrokerPrintMethods&) = delete;

  static std::span<const ThinRow> ThinTable();
  static GdiHandle Handle(uint32_t value) { return static_cast<GdiHandle>(static_cast<int64_t>(static_cast<int32_t>(value))); }

  // The interface's arguments in its order, the DC or handle first, zeros after.
  using ThinArguments = std::array<uint32_t, 5>;
  // `out` is used by the kOut shape only.
  int32_t CallThin(Thin method, const ThinArguments& arguments, uint32_t* out);

  int32_t StartDocument(uint32_t dwHDC, DocumentMetrics& metrics);
  int32_t AddRectangle(uint32_t dwHDC, ByteArray p_RectArray, uint32_t dwRGB);
  int32_t PathToSolidFill(uint32_t dwHDC, uint32_t dwRGB);
  int32_t PathToStrokedLine(uint32_t dwHDC, uint32_t dwThickness, uint32_t dwRGB);
  int32_t PathToBitmapFill(uint32_t dwHDC, ByteArray p_tRectArray, ByteArray p_sRectArray, ByteArray p_BitmapArray,
                           ByteArray p_BitmapInfoArray, uint32_t dwSaveRestore);
  int32_t PathToTransparentBitmapFill(uint32_t dwHDC, ByteArray p_tRectArray, ByteArray p_sRectArray,
                                      ByteArray p_BitmapArray, ByteArray p_BitmapInfoArray, uint32_t dwRGB,
                                      uint32_t dwROP);
  int32_t PolyBezierTo(uint32_t dwHDC, ByteArray p_CubicArray, uint32_t dwCount);
  int32_t DPtoLP(uint32_t dwHDC, uint32_t* p_dwX, uint32_t* p_dwY, uint32_t dwCount, uint32_t* p_dwRC);
  int32_t CreateFontFromBytes(ByteArray p_LogFontArray, uint32_t* p_dwFont);
  int32_t ExtTextOutA(uint32_t dwHDC, uint32_t dwX, uint32_t dwY, uint32_t dwOptions, uint32_t dwIsRectNULL,
                      ByteArray p_RectArray, ByteArray p_StrArray, uint32_t dwCount, uint32_t dwIsDxNULL,
                      ByteArray p_DxArray, uint32_t* p_dwRC);
  int32_t ExtTextOutW(uint32_t dwHDC, uint32_t dwX, uint32_t dwY, uint32_t dwOptions, uint32_t dwIsRectNULL,
                      ByteArray p_RectArray, ByteArray p_StrArray, uint32_t dwCount, uint32_t dwIsDxNULL,
                      ByteArray p_DxArray, uint32_t* p_dwRC);
  int32_t GetTextExtentPoint32A(uint32_t dwHDC, ByteArray p_StrArray, uint32_t dwCount, uint32_t* p_dwCx,
                                uint32_t* p_dwCy);
  int32_t GetTextExtentPoint32W(uint32_t dwHDC, ByteArray p_StrArray, uint32_t dwCount, uint32_t* p_dwCx,
                                uint32_t* p_dwCy);
  // The reply's bytes, which the caller wraps for the client.
  int32_t TextMetrics(uint32_t dwHDC, std::array<uint8_t, PrintRelayPlatform::kTextMetricBytes>& reply);
  int32_t GetWorldTransform(uint32_t dwHDC, std::array<uint8_t, PrintRelayPlatform::kXformBytes>& reply);
  int32_t SetWorldTransform(uint32_t dwHDC, ByteArray p_XformArray, uint32_t* p_dwRC);
  int32_t FontLinkGetFontCodePages(uint32_t dwDC, uint32_t dwhFont, uint32_t* p_dwCodePages);
  int32_t FontLinkMapFont(uint32_t dwDC, uint32_t dwCodePages, uint32_t dwhSrcFont, uint32_t* p_dwhDestFont);
  int32_t FontLinkReleaseFont(uint32_t dwhFont);

 private:
  // The two ExtTextOut methods differ only in the width of a character.
  int32_t RelayText(uint32_t charSize, uint32_t dwHDC, uint32_t dwX, uint32_t dwY, uint32_t dwOptions,
                     uint32_t dwIsRectNULL, ByteArray p_RectArray, ByteArray p_StrArray, uint32_t dwCount,
                     uint32_t dwIsDxNULL, ByteArray p_DxArray, uint32_t* p_dwRC);
  int32_t MeasureText(uint32_t charSize, uint32_t dwHDC, ByteArray p_StrArray, uint32_t dwCount,
                               uint32_t* p_dwCx, uint32_t* p_dwCy);
  // StretchDIBits for both fills, when GDI would stay inside what the client sent.
  void Stretch(GdiHandle dc, const uint8_t* target, const uint8_t* source, const uint8_t* bits, uint32_t bitsLength,
               const uint8_t* header, uint32_t headerLength, uint32_t rop);

  PrintRelayPlatform& gdi_;
};

}  // namespace SASM
