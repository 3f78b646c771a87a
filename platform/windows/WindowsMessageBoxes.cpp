#include "platform/windows/WindowsMessageBoxes.h"

#include <windows.h>

namespace mip {

namespace {

BOOL CALLBACK FindUsableScreen(HWND window, LPARAM found) {
    const bool hasTitle = (GetWindowLongW(window, GWL_STYLE) & WS_CAPTION) == WS_CAPTION;
    if (!hasTitle || IsWindowVisible(window) == 0 || IsWindowEnabled(window) == 0) {
        return TRUE;
    }
    *reinterpret_cast<HWND*>(found) = window;
    return FALSE;
}

/// In the background no window is the active one; the screen is then the topmost that is no question's owner.
HWND OpenScreen() {
    HWND screen = GetActiveWindow();
    if (screen == nullptr) {
        EnumThreadWindows(GetCurrentThreadId(), FindUsableScreen, reinterpret_cast<LPARAM>(&screen));
    }
    return screen;
}

}  // namespace

int WindowsMessageBoxes::Show(const std::wstring& text, int style, const std::wstring& title) {
    const wchar_t* caption = title.empty() ? L"Manual Install Program" : title.c_str();
    return MessageBoxW(OpenScreen(), text.c_str(), caption, static_cast<UINT>(style) | MB_SETFOREGROUND);
}

}  // namespace mip
