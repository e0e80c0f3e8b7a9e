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

void* FakeWindowSystem::LoadSkinImage(ImageForm form, int32_t id) {
  if (form != ImageForm::kPlain) return nullptr;
  auto at = images.find(id);
  return at == images.end() ? nullptr : at->second;
}

}  // namespace SASM
