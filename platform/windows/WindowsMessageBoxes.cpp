#include "platform/windows/WindowsMessageBoxes.h"

#include <windows.h>

namespace mip {

int WindowsMessageBoxes::Show(const std::wstring& text, int style, const std::wstring& title) {
    const wchar_t* caption = title.empty() ? L"Manual Install Program" : title.c_str();
    return MessageBoxW(GetActiveWindow(), text.c_str(), caption, static_cast<UINT>(style) | MB_SETFOREGROUND);
}

}  // namespace mip
