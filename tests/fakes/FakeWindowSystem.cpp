#include "tests/fakes/FakeWindowSystem.h"

#include <algorithm>

namespace SASM {

void* FakeWindowHost::CreateNativeChild(MRegion& region, const MRect& absolute) {
  uintptr_t id = nextId++;
  children[id] = Child{&region, absolute, true};
  order.push_back(id);
  return Handle(id);
}

void FakeWindowHost::DestroyNativeChild(void* child) {
  children.erase(Id(child));
  order.erase(std::remove(order.begin(), order.end(), Id(child)), order.end());
  if (focus == child) focus = nullptr;
}

void* FakeWindowHost::NativeNeighbour(void* child, NativeStep step) {
  if (order.empty()) return nullptr;
  if (step == NativeStep::kFirst) return Handle(order.front());
  if (step == NativeStep::kLast) return Handle(order.back());
  auto at = std::find(order.begin(), order.end(), Id(child));
  if (at == order.end()) return nullptr;
  if (step == NativeStep::kNext) return at + 1 == order.end() ? nullptr : Handle(*(at + 1));
  return at == order.begin() ? nullptr : Handle(*(at - 1));
}

MRegion* FakeWindowHost::RegionOfNative(void* child) {
  auto at = children.find(Id(child));
  return at == children.end() ? nullptr : at->second.region;
}

std::unique_ptr<IWindowHost> FakeWindowSystem::CreateWindowHost(MWindow&, bool minimiseBox) {
  auto host = std::make_unique<FakeWindowHost>();
  lastHost = host.get();
  lastMinimiseBox = minimiseBox;
  return host;
}

namespace {

class FakeTooltip : public ITooltip {
 public:
  explicit FakeTooltip(std::vector<std::string>& calls) : calls_(calls) {}
  void* Handle() const override { return reinterpret_cast<void*>(uintptr_t{0x2000}); }
  void SetText(const MString& text) override { calls_.push_back("text " + text.ToUtf8()); }
  void AddTool(const MRect& r) override { calls_.push_back("add " + Edges(r)); }
  void DeleteTool() override { calls_.push_back("delete"); }
  void MoveTool(const MRect& r) override { calls_.push_back("move " + Edges(r)); }

 private:
  static std::string Edges(const MRect& r) {
    return std::to_string(r.left) + "," + std::to_string(r.top) + "," + std::to_string(r.right) + "," +
           std::to_string(r.bottom);
  }
  std::vector<std::string>& calls_;
};

}  // namespace

std::unique_ptr<ITooltip> FakeWindowSystem::CreateTooltip(void*, void*) {
  tooltipCalls.push_back("create");
  return std::make_unique<FakeTooltip>(tooltipCalls);
}

void* FakeWindowSystem::LoadSkinImage(ImageForm form, int32_t id) {
  if (form != ImageForm::kPlain) return nullptr;
  auto at = images.find(id);
  return at == images.end() ? nullptr : at->second;
}

}  // namespace SASM
