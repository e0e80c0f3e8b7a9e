#pragma once
// A picture of a window's client area as a person sees it, saved as PNG.
#include "engine/win32/WindowsApi.h"

#include <string>

namespace SASM {

// Reads the client area back from the window's own drawing context; with no
// display a hidden or off-screen part reads black.
bool SaveClientAreaPng(HWND window, const std::wstring& path);

}  // namespace SASM
