// The regions' accessible objects in a real window: read from a second
// process as a screen reader reads them, and called in process for the rules
// a reader rarely exercises.
#include "engine/win32/WindowsApi.h"

#include <gtest/gtest.h>

#include <ole2.h>
#include <oleacc.h>

#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "engine/win32/ScopedHandle.h"
#include "tests/wine/WineTestSupport.h"
#include "ui/MButton.h"
#include "ui/MCheckboxButton.h"
#include "ui/MPlainWindow.h"
#include "ui/MRadioButton.h"
#include "ui/MRadioGroup.h"
#include "ui/MSkinnedSection.h"
#include "ui/MTextArea.h"
#include "ui/MorphUI.h"
#include "ui/win32/MAccProxyObject.h"
#include "ui/win32/Win32WindowSystem.h"

using namespace SASM;

namespace {

VARIANT Child(LONG id, VARTYPE type = VT_I4) {
  VARIANT v;
  VariantInit(&v);
  v.vt = type;
  v.lVal = id;
  return v;
}

class AccessibilityTest : public ::testing::Test {
 protected:
  AccessibilityTest()
      : comReady(SUCCEEDED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))),
        ui(nullptr, GetModuleHandleW(nullptr), std::make_unique<Win32WindowSystem>(nullptr, GetModuleHandleW(nullptr))) {
    window = new MPlainWindow(&ui);
    ui.window = window;
    window->rect = {40, 30, 400, 240};
    window->ApplyRect(false, false);
    window->Show(true);

    button.reset(MakeButton(window, nullptr, MString(u"Begin setup")));
    button->controlId = 101;
    button->bounds = MRect::FromSize(20, 20, 140, 33);
    window->AttachRegion(button.get());

    box.reset(MakeCheckbox(window, nullptr, true));
    box->controlId = 102;
    box->label = MString(u"Send usage reports \u00bb weekly");
    box->bounds = MRect::FromSize(20, 70, 15, 15);
    window->AttachRegion(box.get());

    // The radio sits two levels down, so its place adds its parents' corners.
    outer.bounds = MRect::FromSize(200, 60, 180, 120);
    inner.bounds = MRect::FromSize(10, 20, 100, 60);
    window->AttachRegion(&outer);
    outer.AttachChild(&inner);
    radio.reset(MakeRadio(window, nullptr, true, 1, &group));
    radio->controlId = 103;
    radio->label = MString(u"Keep my settings");
    radio->bounds = MRect::FromSize(5, 6, 15, 15);
    inner.AttachChild(radio.get());

    area = std::make_unique<MTextArea>(window, 16, false, false);
    area->drawFlags |= MRegion::kNativeWindow;
    area->bounds = MRect::FromSize(20, 120, 150, 40);
    window->AttachRegion(area.get());

    window->SetFocusRegion(box.get(), true);
  }
  ~AccessibilityTest() override {
    for (MRegion* region : {static_cast<MRegion*>(button.get()), static_cast<MRegion*>(box.get()),
                            static_cast<MRegion*>(area.get()), static_cast<MRegion*>(&outer)})
      region->Detach();
    delete ui.window;
    ui.window = nullptr;
    Pump(20);
    if (comReady) CoUninitialize();
  }

  static IAccessible* Proxy(MRegion& region) { return region.accProxy; }

  // Dispatches this thread's messages for milliseconds, or until process ends.
  static void Pump(DWORD milliseconds, HANDLE process = nullptr) {
    const DWORD end = GetTickCount() + milliseconds;
    do {
      if (MsgWaitForMultipleObjects(process ? 1 : 0, &process, FALSE, 10, QS_ALLINPUT) == WAIT_OBJECT_0 && process)
        return;
      MSG message;
      while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
        if (message.message == WM_QUIT) continue;
        TranslateMessage(&message);
        DispatchMessageW(&message);
      }
    } while (GetTickCount() < end);
  }

  // The client's output for the regions' windows. Its requests come to this
  // thread as messages, so they are answered while it runs.
  static std::string ReadFromAnotherProcess(const std::vector<MRegion*>& regions, DWORD* exitCode) {
    SECURITY_ATTRIBUTES inherit{sizeof(inherit), nullptr, TRUE};
    HANDLE readEnd = nullptr, writeEnd = nullptr;
    if (!CreatePipe(&readEnd, &writeEnd, &inherit, 1 << 16)) return {};
    ScopedHandle reader(readEnd), writer(writeEnd);
    SetHandleInformation(readEnd, HANDLE_FLAG_INHERIT, 0);
    std::wstring command = L"\"" + WineTest::BinaryDirectory() + L"\\lumen_accessibility_client.exe\"";
    for (MRegion* region : regions) command += L" " + std::to_wstring(reinterpret_cast<uintptr_t>(region->nativeWindow));
    STARTUPINFOW startup{};
    startup.cb = sizeof(startup);
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdOutput = writeEnd;
    PROCESS_INFORMATION info{};
    if (!CreateProcessW(nullptr, command.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &startup, &info))
      return {};
    ScopedHandle process(info.hProcess), thread(info.hThread);
    writer.reset();
    Pump(30000, info.hProcess);
    if (WaitForSingleObject(info.hProcess, 0) != WAIT_OBJECT_0) TerminateProcess(info.hProcess, 99);
    GetExitCodeProcess(info.hProcess, exitCode);
    std::string output;
    char buffer[4096];
    DWORD got = 0;
    while (ReadFile(readEnd, buffer, sizeof(buffer), &got, nullptr) && got) output.append(buffer, got);
    std::erase(output, '\r');
    return output;
  }

  // The client's line for region; its native window's screen rectangle is where the region is.
  static std::string Expected(MRegion& region, const char* name, int role, int state) {
    RECT r{};
    GetWindowRect(static_cast<HWND>(region.nativeWindow), &r);
    std::ostringstream line;
    line << name << '\t' << role << '\t' << state << '\t' << r.left << ',' << r.top << ',' << (r.right - r.left)
         << ',' << (r.bottom - r.top) << '\n';
    return line.str();
  }

  bool comReady;
  MorphUI ui;
  MPlainWindow* window;
  MRadioGroup group;
  MSkinnedSection outer, inner;
  std::unique_ptr<MButton> button;
  std::unique_ptr<MCheckboxButton> box;
  std::unique_ptr<MRadioButton> radio;
  std::unique_ptr<MTextArea> area;
};

TEST_F(AccessibilityTest, AnotherProcessReadsNameRoleStateAndScreenPlaceOfEachControl) {
  DWORD exitCode = 0;
  const std::string output = ReadFromAnotherProcess({button.get(), box.get(), radio.get(), area.get()}, &exitCode);
  EXPECT_EQ(exitCode, 0u);
  EXPECT_EQ(output, Expected(*button, "Begin setup", 43, 1048576) +
                        Expected(*box, "Send usage reports \xc2\xbb weekly", 44, 1048596) +
                        Expected(*radio, "Keep my settings", 45, 1048592) + Expected(*area, "", 41, 64));
}

TEST_F(AccessibilityTest, TheRowsOfTheTableInProcess) {
  IAccessible* acc = Proxy(*area);
  VARIANT self = Child(CHILDID_SELF), out;
  VariantInit(&out);
  UINT count = 0;
  ITypeInfo* info = nullptr;
  LONG topic = 0;
  DISPID id = 0;
  BSTR text = nullptr;
  EXPECT_EQ(acc->GetTypeInfoCount(&count), E_NOTIMPL);
  EXPECT_EQ(acc->GetTypeInfo(0, 0, &info), E_NOTIMPL);
  EXPECT_EQ(acc->GetIDsOfNames(IID_NULL, &text, 1, 0, &id), E_NOTIMPL);
  EXPECT_EQ(acc->Invoke(0, IID_NULL, 0, 0, nullptr, nullptr, nullptr, nullptr), E_NOTIMPL);
  EXPECT_EQ(acc->get_accHelp(self, &text), E_NOTIMPL);
  EXPECT_EQ(acc->get_accHelpTopic(&text, self, &topic), E_NOTIMPL);
  EXPECT_EQ(acc->get_accFocus(&out), E_NOTIMPL);
  EXPECT_EQ(acc->accSelect(SELFLAG_TAKEFOCUS, self), E_NOTIMPL);
  EXPECT_EQ(acc->accNavigate(NAVDIR_NEXT, self, &out), E_NOTIMPL);
  EXPECT_EQ(acc->accDoDefaultAction(self), E_NOTIMPL);
  EXPECT_EQ(acc->put_accName(self, nullptr), E_NOTIMPL);
  EXPECT_EQ(acc->put_accValue(self, nullptr), E_NOTIMPL);

  // An empty label leaves the caller's pointer as it was; the shortcut is an empty text.
  BSTR const kUntouched = reinterpret_cast<BSTR>(static_cast<uintptr_t>(0x1234));
  text = kUntouched;
  EXPECT_EQ(acc->get_accName(self, &text), S_OK);
  EXPECT_EQ(text, kUntouched);
  EXPECT_EQ(acc->get_accKeyboardShortcut(self, &text), S_OK);
  ASSERT_NE(text, nullptr);
  EXPECT_EQ(SysStringLen(text), 0u);
  SysFreeString(text);
  for (auto method : {&IAccessible::get_accValue, &IAccessible::get_accDescription, &IAccessible::get_accDefaultAction}) {
    text = kUntouched;
    EXPECT_EQ((acc->*method)(self, &text), S_OK);
    EXPECT_EQ(text, nullptr);
  }
  out = Child(5);
  EXPECT_EQ(acc->get_accSelection(&out), S_OK);
  EXPECT_EQ(out.vt, VT_EMPTY);
  LONG children = -1;
  EXPECT_EQ(acc->get_accChildCount(&children), S_OK);
  EXPECT_EQ(children, 0);
  IDispatch* parent = reinterpret_cast<IDispatch*>(static_cast<uintptr_t>(0x99));
  EXPECT_EQ(acc->get_accParent(&parent), S_OK);
  EXPECT_EQ(parent, reinterpret_cast<IDispatch*>(static_cast<uintptr_t>(0x99)));
  EXPECT_EQ(acc->accHitTest(25, 125, &out), S_FALSE);
  // The state is added to what the answer already holds.
  out = Child(1);
  EXPECT_EQ(acc->get_accState(self, &out), S_OK);
  EXPECT_EQ(out.lVal, 65);
}

TEST_F(AccessibilityTest, ChildIdsAndInterfaces) {
  IAccessible* acc = Proxy(*box);
  IDispatch* child = reinterpret_cast<IDispatch*>(1);
  EXPECT_EQ(acc->get_accChild(Child(1), &child), S_FALSE);
  EXPECT_EQ(child, nullptr);
  EXPECT_EQ(acc->get_accChild(Child(CHILDID_SELF), &child), S_OK);
  EXPECT_EQ(child, static_cast<IDispatch*>(acc));
  EXPECT_EQ(box->accProxy->refCount.load(), 2);  // the caller's reference
  child->Release();

  BSTR name = nullptr;
  EXPECT_EQ(acc->get_accName(Child(1), &name), E_INVALIDARG);
  EXPECT_EQ(acc->get_accName(Child(CHILDID_SELF, VT_I2), &name), E_INVALIDARG);
  EXPECT_EQ(acc->get_accName(Child(CHILDID_SELF), nullptr), E_INVALIDARG);
  LONG x, y, w, h;
  EXPECT_EQ(acc->accLocation(&x, &y, &w, nullptr, Child(CHILDID_SELF)), E_INVALIDARG);
  EXPECT_EQ(acc->accLocation(&x, &y, &w, &h, Child(2)), E_INVALIDARG);
  // Role and state answer for the region whatever is asked.
  VARIANT role, state;
  VariantInit(&role);
  VariantInit(&state);
  EXPECT_EQ(acc->get_accRole(Child(7), &role), S_OK);
  EXPECT_EQ(role.lVal, 44);
  EXPECT_EQ(acc->get_accState(Child(7, VT_BSTR), &state), S_OK);
  EXPECT_EQ(state.lVal, 1048596);

  for (REFIID iid : {__uuidof(IAccessible), __uuidof(IDispatch), __uuidof(IUnknown)}) {
    void* object = nullptr;
    EXPECT_EQ(acc->QueryInterface(iid, &object), S_OK);
    EXPECT_EQ(object, static_cast<void*>(acc));
    acc->Release();
  }
  void* object = reinterpret_cast<void*>(1);
  EXPECT_EQ(acc->QueryInterface(__uuidof(IEnumVARIANT), &object), E_NOINTERFACE);
  EXPECT_EQ(object, nullptr);
  EXPECT_EQ(box->accProxy->refCount.load(), 1);
}

TEST_F(AccessibilityTest, ADestroyedRegionLeavesItsClientsADisconnectedObject) {
  // The last region of the window, freed while attached, as a window's owner may do at its end.
  std::unique_ptr<MCheckboxButton> last(MakeCheckbox(window, nullptr, false));
  last->label = MString(u"Start when done");
  last->bounds = MRect::FromSize(20, 180, 15, 15);
  window->AttachRegion(last.get());
  IAccessible* held = Proxy(*last);
  EXPECT_EQ(held->AddRef(), 2u);
  // A client that went through the window holds it too.
  HWND child = static_cast<HWND>(last->nativeWindow);
  IAccessible* asked = nullptr;
  ASSERT_EQ(AccessibleObjectFromWindow(child, static_cast<DWORD>(OBJID_CLIENT), __uuidof(IAccessible),
                                       reinterpret_cast<void**>(&asked)),
            S_OK);
  last->Previous()->next = nullptr;
  last.reset();
  // The child outlives it, but holds neither the object nor the region any more.
  EXPECT_TRUE(IsWindow(child));
  EXPECT_EQ(GetPropW(child, L"ACC_PROP"), nullptr);
  EXPECT_EQ(GetWindowLongPtrW(child, GWLP_USERDATA), 0);

  for (IAccessible* acc : {held, asked}) {
    VARIANT self = Child(CHILDID_SELF), out;
    VariantInit(&out);
    BSTR text = nullptr;
    LONG n = 0;
    IDispatch* dispatch = nullptr;
    EXPECT_EQ(acc->get_accName(self, &text), CO_E_OBJNOTCONNECTED);
    EXPECT_EQ(acc->get_accRole(self, &out), CO_E_OBJNOTCONNECTED);
    EXPECT_EQ(acc->get_accState(self, &out), CO_E_OBJNOTCONNECTED);
    EXPECT_EQ(acc->accLocation(&n, &n, &n, &n, self), CO_E_OBJNOTCONNECTED);
    EXPECT_EQ(acc->get_accChildCount(&n), CO_E_OBJNOTCONNECTED);
    EXPECT_EQ(acc->get_accChild(self, &dispatch), CO_E_OBJNOTCONNECTED);
    EXPECT_EQ(acc->get_accSelection(&out), CO_E_OBJNOTCONNECTED);
    // The rows that never read the region answer as before.
    EXPECT_EQ(acc->get_accParent(&dispatch), S_OK);
    EXPECT_EQ(acc->accHitTest(1, 1, &out), S_FALSE);
    EXPECT_EQ(acc->accDoDefaultAction(self), E_NOTIMPL);
  }
  asked->Release();
  // Only the held reference is left; the last Release frees the object.
  EXPECT_EQ(held->AddRef(), 2u);
  EXPECT_EQ(held->Release(), 1u);
  EXPECT_EQ(held->Release(), 0u);
}

TEST_F(AccessibilityTest, DetachingDisconnectsTheObjectAndTakesItsProperty) {
  HWND child = static_cast<HWND>(radio->nativeWindow);
  IAccessible* held = Proxy(*radio);
  EXPECT_EQ(GetPropW(child, L"ACC_PROP"), held);
  EXPECT_EQ(outer.accProxy, nullptr);  // no native window, no object
  held->AddRef();
  radio->Detach();
  EXPECT_EQ(radio->accProxy, nullptr);
  EXPECT_FALSE(IsWindow(child));
  BSTR name = nullptr;
  EXPECT_EQ(held->get_accName(Child(CHILDID_SELF), &name), CO_E_OBJNOTCONNECTED);
  EXPECT_EQ(held->Release(), 0u);

  // Attached again, it gets a new window and a new object.
  inner.AttachChild(radio.get());
  ASSERT_NE(radio->accProxy, nullptr);
  EXPECT_EQ(GetPropW(static_cast<HWND>(radio->nativeWindow), L"ACC_PROP"), radio->accProxy);
  EXPECT_EQ(radio->accProxy->region, radio.get());
  EXPECT_EQ(radio->accProxy->refCount.load(), 1);
}

}  // namespace
