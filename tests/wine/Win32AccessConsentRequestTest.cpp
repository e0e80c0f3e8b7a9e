// The consent request where the policy manager is missing, as under Wine:
// every request is refused, and those the request can't even name are
// refused before the runtime is asked.
#include "broker/win32/Win32AccessConsentRequest.h"

#include <gtest/gtest.h>

using namespace SASM;

namespace {

// A window of this thread for the prompt to be owned by.
class OwnerWindow {
 public:
  OwnerWindow()
      : window_(CreateWindowExW(0, L"STATIC", L"owner", 0, 0, 0, 10, 10, nullptr, nullptr, nullptr, nullptr)) {}
  ~OwnerWindow() {
    if (window_) DestroyWindow(window_);
  }
  HWND get() const { return window_; }

 private:
  HWND window_;
};

}  // namespace

TEST(Win32AccessConsentRequest, AnUnreachablePolicyManagerRefuses) {
  OwnerWindow owner;
  ASSERT_NE(owner.get(), nullptr);
  EXPECT_FALSE(
      Win32AccessConsentRequest::Ask(owner.get(), L"corp.example", L"", L"q3.xlsx", L"https://upload.example"));
}

TEST(Win32AccessConsentRequest, MissingIdentitiesAndNoWindowAreRefusedWithoutAsking) {
  OwnerWindow owner;
  EXPECT_FALSE(Win32AccessConsentRequest::Ask(owner.get(), nullptr, L"", L"q3.xlsx", L""));
  EXPECT_FALSE(Win32AccessConsentRequest::Ask(owner.get(), L"corp.example", nullptr, L"q3.xlsx", L""));
  EXPECT_FALSE(Win32AccessConsentRequest::Ask(nullptr, L"corp.example", L"", L"q3.xlsx", L""));
  EXPECT_FALSE(Win32AccessConsentRequest::Ask(reinterpret_cast<HWND>(-1), L"corp.example", L"", L"q3.xlsx", L""));
}
