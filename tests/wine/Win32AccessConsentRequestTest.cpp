// The consent request where the policy manager is missing, as under Wine:
// every request is refused, and those the request can't even name are
// refused before the runtime is asked.
#include "broker/win32/Win32AccessConsentRequest.h"

#include <gtest/gtest.h>

using namespace SASM;

TEST(Win32AccessConsentRequest, EveryRequestIsRefusedWithoutAPolicyManager) {
  HWND owner = CreateWindowExW(0, L"STATIC", L"owner", 0, 0, 0, 10, 10, nullptr, nullptr, nullptr, nullptr);
  ASSERT_NE(owner, nullptr);
  EXPECT_FALSE(Win32AccessConsentRequest::Ask(owner, L"corp.example", L"", L"q3.xlsx", L"https://upload.example"));
  EXPECT_FALSE(Win32AccessConsentRequest::Ask(owner, nullptr, L"", L"q3.xlsx", L""));
  EXPECT_FALSE(Win32AccessConsentRequest::Ask(owner, L"corp.example", nullptr, L"q3.xlsx", L""));
  EXPECT_FALSE(Win32AccessConsentRequest::Ask(nullptr, L"corp.example", L"", L"q3.xlsx", L""));
  DestroyWindow(owner);
}
