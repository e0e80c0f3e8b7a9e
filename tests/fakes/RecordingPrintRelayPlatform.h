#pragma once
// A recording stub of the print relay's GDI calls: each call goes into a log
// as "Name(arguments)", in order, and answers a scripted result. It keeps the
// objects it made and the one selected into its DC, so a test sees that
// brushes and pens are deleted and the old object selected back, and it holds
// byte arrays as a client sends them, counting their locks. Each call reads
// from its pointers what GDI would read, so a short buffer shows under the
// sanitizers.
//
// In the log the stub's DC reads "dc", objects it made "obj1", "obj2"..., the
// object selected at the start "orig", and other handles in hexadecimal.
#include <cstdint>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "broker/BrokerPrintMethods.h"
#include "broker/PrintRelayPlatform.h"

namespace SASM {

class RecordingPrintRelayPlatform : public PrintRelayPlatform {
 public:
  // What a client sends as its DC: the server sign-extends it.
  static constexpr uint32_t kDc = 0x80000F00;
  static constexpr GdiHandle kOriginal = 0x0A00;

  // The result every later call of `name` gives; 1 when none is scripted,
  // but for GetDeviceCaps (the index x 10) and the two point conversions.
  void Answer(std::string_view name, int64_t result) { answers_[std::string(name)] = result; }
  void SetFontLink(bool present) { fontLink_ = present; }
  void FailArrayAccess(int32_t result) { arrayAccessResult_ = result; }

  const std::vector<std::string>& Log() const { return log_; }
  void ClearLog() { log_.clear(); }
  GdiHandle Dc() const { return BrokerPrintMethods::Handle(kDc); }
  GdiHandle Selected() const { return selected_; }
  // Objects made and not deleted.
  size_t LiveObjects() const { return live_.size(); }
  // The arrays still accessed.
  size_t LockedArrays() const;
  // Whether any call but a byte array's drew or changed the DC.
  bool Drew() const { return !log_.empty(); }

  ByteArray MakeArray(std::string_view bytes, uint32_t dimensions = 1, uint32_t elementSize = 1,
                      int32_t lowerBound = 0);

  int32_t DeleteDC(GdiHandle dc) override { return Record("DeleteDC", {Name(dc)}); }
  int32_t SaveDC(GdiHandle dc) override { return Record("SaveDC", {Name(dc)}, 3); }
  int32_t RestoreDC(GdiHandle dc, int32_t savedDC) override {
    return Record("RestoreDC", {Name(dc), std::to_string(savedDC)});
  }
  int32_t StartDocW(GdiHandle dc, const GdiDocumentInfo& info) override;
  int32_t StartPage(GdiHandle dc) override { return Record("StartPage", {Name(dc)}); }
  int32_t EndPage(GdiHandle dc) override { return Record("EndPage", {Name(dc)}); }
  int32_t EndDoc(GdiHandle dc) override { return Record("EndDoc", {Name(dc)}); }
  int32_t GetDeviceCaps(GdiHandle dc, int32_t index) override {
    return Record("GetDeviceCaps", {Name(dc), std::to_string(index)}, index * 10);
  }
  int32_t LPtoDP(GdiHandle dc, GdiPoint* points, int32_t count) override;
  int32_t DPtoLP(GdiHandle dc, GdiPoint* points, int32_t count) override;
  int32_t IntersectClipRect(GdiHandle dc, int32_t left, int32_t top, int32_t right, int32_t bottom) override {
    return Record("IntersectClipRect", {Name(dc), std::to_string(left), std::to_string(top), std::to_string(right),
                                        std::to_string(bottom)});
  }
  int32_t SelectClipPath(GdiHandle dc, int32_t mode) override {
    return Record("SelectClipPath", {Name(dc), std::to_string(mode)});
  }
  int32_t SelectClipRgn(GdiHandle dc, GdiHandle region) override {
    return Record("SelectClipRgn", {Name(dc), Name(region)});
  }
  int32_t SetPolyFillMode(GdiHandle dc, int32_t mode) override {
    return Record("SetPolyFillMode", {Name(dc), std::to_string(mode)});
  }
  int32_t BeginPath(GdiHandle dc) override { return Record("BeginPath", {Name(dc)}); }
  int32_t EndPath(GdiHandle dc) override { return Record("EndPath", {Name(dc)}); }
  int32_t MoveToEx(GdiHandle dc, int32_t x, int32_t y) override {
    return Record("MoveToEx", {Name(dc), std::to_string(x), std::to_string(y), "null"});
  }
  int32_t LineTo(GdiHandle dc, int32_t x, int32_t y) override {
    return Record("LineTo", {Name(dc), std::to_string(x), std::to_string(y)});
  }
  int32_t PolyBezierTo(GdiHandle dc, const GdiPoint* points, uint32_t count) override;
  int32_t FillPath(GdiHandle dc) override { return Record("FillPath", {Name(dc)}); }
  int32_t StrokePath(GdiHandle dc) override { return Record("StrokePath", {Name(dc)}); }
  int32_t FillRect(GdiHandle dc, const GdiRect& rect, GdiHandle brush) override {
    return Record("FillRect", {Name(dc), Rect(rect), Name(brush)});
  }
  int32_t StretchDIBits(GdiHandle dc, const GdiStretch& stretch) override;
  GdiHandle CreateSolidBrush(uint32_t color) override { return Make("CreateSolidBrush", {Hex(color)}); }
  GdiHandle ExtCreatePen(uint32_t style, uint32_t width, const GdiLogBrush& brush) override {
    return Make("ExtCreatePen", {Hex(style), std::to_string(width),
                                 "{" + std::to_string(brush.style) + "," + Hex(brush.color) + "," +
                                     std::to_string(brush.hatch) + "}"});
  }
  GdiHandle CreateFontIndirectW(const uint8_t* logFont) override;
  GdiHandle SelectObject(GdiHandle dc, GdiHandle object) override;
  GdiHandle GetCurrentObject(GdiHandle dc, uint32_t type) override {
    return static_cast<GdiHandle>(Record("GetCurrentObject", {Name(dc), std::to_string(type)}));
  }
  int32_t DeleteObject(GdiHandle object) override;
  uint32_t GetObjectType(GdiHandle object) override {
    return static_cast<uint32_t>(Record("GetObjectType", {Name(object)}));
  }
  uint32_t GetTextAlign(GdiHandle dc) override { return static_cast<uint32_t>(Record("GetTextAlign", {Name(dc)})); }
  uint32_t SetTextAlign(GdiHandle dc, uint32_t align) override {
    return static_cast<uint32_t>(Record("SetTextAlign", {Name(dc), std::to_string(align)}));
  }
  int32_t GetBkMode(GdiHandle dc) override { return Record("GetBkMode", {Name(dc)}); }
  int32_t SetBkMode(GdiHandle dc, int32_t mode) override {
    return Record("SetBkMode", {Name(dc), std::to_string(mode)});
  }
  uint32_t GetTextColor(GdiHandle dc) override { return static_cast<uint32_t>(Record("GetTextColor", {Name(dc)})); }
  uint32_t SetTextColor(GdiHandle dc, uint32_t color) override {
    return static_cast<uint32_t>(Record("SetTextColor", {Name(dc), Hex(color)}));
  }
  int32_t SetTextCharacterExtra(GdiHandle dc, int32_t extra) override {
    return Record("SetTextCharacterExtra", {Name(dc), std::to_string(extra)});
  }
  int32_t SetGraphicsMode(GdiHandle dc, int32_t mode) override {
    return Record("SetGraphicsMode", {Name(dc), std::to_string(mode)});
  }
  int32_t ExtTextOutA(GdiHandle dc, int32_t x, int32_t y, uint32_t options, const GdiRect* rect, const char* text,
                      uint32_t count, const int32_t* spacing) override;
  int32_t ExtTextOutW(GdiHandle dc, int32_t x, int32_t y, uint32_t options, const GdiRect* rect,
                      const char16_t* text, uint32_t count, const int32_t* spacing) override;
  int32_t GetTextExtentPoint32A(GdiHandle dc, const char* text, int32_t count, GdiSize& size) override;
  int32_t GetTextExtentPoint32W(GdiHandle dc, const char16_t* text, int32_t count, GdiSize& size) override;
  int32_t GetTextMetricsW(GdiHandle dc, uint8_t* textMetric) override;
  int32_t GetWorldTransform(GdiHandle dc, uint8_t* xform) override;
  int32_t SetWorldTransform(GdiHandle dc, const uint8_t* xform) override;
  bool HasFontLink() override { return fontLink_; }
  int32_t GetFontCodePages(GdiHandle dc, GdiHandle font, uint32_t& codePages) override;
  int32_t MapFont(GdiHandle dc, uint32_t codePages, GdiHandle sourceFont, GdiHandle& linkedFont) override;
  int32_t ReleaseFont(GdiHandle font) override { return Record("ReleaseFont", {Name(font)}, 0); }

  bool DescribeByteArray(ByteArray array, ByteArrayShape& shape) override;
  int32_t AccessByteArray(ByteArray array, uint8_t*& data) override;
  void UnaccessByteArray(ByteArray array) override;

  static std::string Hex(uint64_t value);

 private:
  struct FakeArray {
    ByteArrayShape shape;
    std::vector<uint8_t> bytes;
    int locks = 0;
  };

  int64_t Record(const std::string& name, std::vector<std::string> arguments, int64_t otherwise = 1);
  GdiHandle Make(const std::string& name, std::vector<std::string> arguments);
  std::string Name(GdiHandle handle) const;
  static std::string Rect(const GdiRect& rect);
  static std::string Spacing(const int32_t* spacing, uint32_t values);

  std::vector<std::string> log_;
  std::map<std::string, int64_t> answers_;
  std::map<GdiHandle, int> made_;
  std::set<GdiHandle> live_;
  GdiHandle nextObject_ = 0x1001;
  GdiHandle selected_ = kOriginal;
  bool fontLink_ = true;
  int32_t arrayAccessResult_ = 0;
  std::vector<std::unique_ptr<FakeArray>> arrays_;
};

}  // namespace SASM
