#include "broker/win32/ScopedHString.h"

#include <cwchar>

#include "engine/win32/LateBoundFunction.h"

namespace SASM {

namespace {

using CreateStringFunction = HRESULT(WINAPI*)(const wchar_t*, UINT32, HSTRING*);
using DeleteStringFunction = HRESULT(WINAPI*)(HSTRING);
using RawBufferFunction = const wchar_t*(WINAPI*)(HSTRING, UINT32*);
using GetFactoryFunction = HRESULT(WINAPI*)(HSTRING, REFIID, void**);

// Found once for the process; a missing one is looked for again on next use.
LateBoundFunction& CreateString() {
  static LateBoundFunction entry(L"combase.dll", "WindowsCreateString");
  return entry;
}
LateBoundFunction& DeleteString() {
  static LateBoundFunction entry(L"combase.dll", "WindowsDeleteString");
  return entry;
}
LateBoundFunction& RawBuffer() {
  static LateBoundFunction entry(L"combase.dll", "WindowsGetStringRawBuffer");
  return entry;
}
LateBoundFunction& GetFactory() {
  static LateBoundFunction entry(L"combase.dll", "RoGetActivationFactory");
  return entry;
}

}  // namespace

ScopedHString::ScopedHString(const wchar_t* text) {
  auto create = CreateString().As<CreateStringFunction>();
  if (!create || !text || FAILED(create(text, static_cast<UINT32>(wcslen(text)), &value_))) value_ = nullptr;
}

ScopedHString::~ScopedHString() {
  auto remove = DeleteString().As<DeleteStringFunction>();
  if (value_ && remove) remove(value_);
}

std::u16string ScopedHString::Text() const {
  auto raw = RawBuffer().As<RawBufferFunction>();
  if (!raw || !value_) return {};
  UINT32 length = 0;
  const wchar_t* text = raw(value_, &length);
  return text ? std::u16string(reinterpret_cast<const char16_t*>(text), length) : std::u16string();
}

HRESULT ScopedHString::GetActivationFactory(const wchar_t* className, REFIID iid, void** factory) {
  auto getFactory = GetFactory().As<GetFactoryFunction>();
  if (!getFactory) return E_NOTIMPL;
  ScopedHString name(className);
  if (!name.get()) return E_FAIL;
  return getFactory(name.get(), iid, factory);
}

}  // namespace SASM
