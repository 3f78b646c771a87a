#include "forms/Clipboard.h"

#include <cstring>

namespace mip {

void PutOnClipboard(HWND owner, const std::wstring& text) {
    if (OpenClipboard(owner) == 0) {
        return;
    }
    const std::size_t bytes = (text.size() + 1) * sizeof(wchar_t);
    const HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, bytes);
    if (memory != nullptr) {
        std::memcpy(GlobalLock(memory), text.c_str(), bytes);
        GlobalUnlock(memory);
        EmptyClipboard();
        if (SetClipboardData(CF_UNICODETEXT, memory) == nullptr) {
            GlobalFree(memory);
        }
    }
    CloseClipboard();
}

}  // namespace mip
