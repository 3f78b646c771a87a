#include "platform/windows/MessageLoop.h"

namespace mip {

namespace {

bool IsDialog(HWND window) {
    const ATOM dialogClass = 0x8002;  // what WC_DIALOG stands for
    return window && GetClassLongPtrW(window, GCW_ATOM) == dialogClass;
}

}  // namespace

void HandleMessage(MSG& message) {
    const HWND screen = message.hwnd ? GetAncestor(message.hwnd, GA_ROOT) : nullptr;
    if (IsDialog(screen) && IsDialogMessageW(screen, &message)) {
        return;
    }
    TranslateMessage(&message);
    DispatchMessageW(&message);
}

void ServeWaitingMessages() {
    MSG message{};
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
        if (message.message == WM_QUIT) {
            PostQuitMessage(static_cast<int>(message.wParam));
            return;
        }
        HandleMessage(message);
    }
}

}  // namespace mip
