#include "forms/Dialog.h"

#include "forms/Drawing.h"
#include "platform/windows/LastError.h"
#include "platform/windows/WindowsComputer.h"

namespace mip {

namespace {

constexpr UINT MessageShown = WM_APP;

/// A dialog template without controls, menu, class or title.
struct EmptyTemplate {
    DLGTEMPLATE Head{.style = WS_POPUP | WS_CAPTION | WS_SYSMENU | WS_MINIMIZEBOX | WS_CLIPCHILDREN,
                     .dwExtendedStyle = WS_EX_CONTROLPARENT,
                     .cdit = 0,
                     .x = 0,
                     .y = 0,
                     .cx = 100,
                     .cy = 100};
    WORD MenuClassTitle[3]{};
};

/// Dots per inch of the screen that the window is on. Before Windows 10 there is one value for all screens.
int ScreenDpi(HWND window) {
    using GetDpi = UINT(WINAPI*)(HWND);
    const auto address = reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"user32.dll"), "GetDpiForWindow"));
    if (address != nullptr) {
        return static_cast<int>(reinterpret_cast<GetDpi>(address)(window));
    }
    return GetDeviceCaps(WindowDc(nullptr).Get(), LOGPIXELSX);
}

/// The forms follow a change of resolution themselves; the system would scale their controls once more.
void KeepSystemFromScaling(HWND dialog) {
    using SetBehaviour = BOOL(WINAPI*)(HWND, int, int);
    constexpr int disableAll = 1;
    const auto address =
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"user32.dll"), "SetDialogDpiChangeBehavior"));
    if (address != nullptr) {
        reinterpret_cast<SetBehaviour>(address)(dialog, disableAll, disableAll);
    }
}

}  // namespace

Dialog::~Dialog() {
    if (window_ != nullptr) {
        DestroyWindow(window_);
    }
}

void Dialog::Show() {
    const EmptyTemplate empty;
    CreateDialogIndirectParamW(GetModuleHandleW(nullptr), &empty.Head, nullptr, Procedure,
                               reinterpret_cast<LPARAM>(this));
    if (window_ == nullptr) {
        ThrowLastError("create dialog", L"");
    }
    ShowWindow(window_, SW_SHOWNORMAL);
    SetForegroundWindow(window_);
    PostMessageW(window_, MessageShown, 0, 0);
}

void Dialog::RunModal(HWND owner) {
    EmptyTemplate empty;
    empty.Head.style &= ~static_cast<DWORD>(WS_MINIMIZEBOX);
    modal_ = true;
    if (DialogBoxIndirectParamW(GetModuleHandleW(nullptr), &empty.Head, owner, Procedure,
                                reinterpret_cast<LPARAM>(this)) == -1) {
        ThrowLastError("create dialog", L"");
    }
    host_.ThrowKept();
}

void Dialog::Close() {
    if (modal_) {
        EndDialog(window_, 1);
    } else {
        DestroyWindow(window_);
    }
}

INT_PTR CALLBACK Dialog::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_INITDIALOG) {
        SetWindowLongPtrW(window, DWLP_USER, lParam);
        reinterpret_cast<Dialog*>(lParam)->window_ = window;
    }
    auto* dialog = reinterpret_cast<Dialog*>(GetWindowLongPtrW(window, DWLP_USER));
    if (dialog == nullptr) {
        return FALSE;
    }
    try {
        return dialog->Handle(message, wParam, lParam);
    } catch (...) {
        dialog->host_.Keep(std::current_exception());
        if (dialog->modal_) {
            EndDialog(window, 0);
        }
        return FALSE;
    }
}

/// A dialog is laid out for the screen that it will be seen on.
void Dialog::BeginOnLastScreen() {
    KeepSystemFromScaling(window_);
    SetPropW(window_, ScreenMark, window_);
    if (const auto& place = host_.LastPlace()) {
        SetWindowPos(window_, nullptr, place->x, place->y, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
    }
}

INT_PTR Dialog::Handle(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_INITDIALOG:
            BeginOnLastScreen();
            dpi_ = ScreenDpi(window_);
            OnLoad();
            if (modal_) {
                PostMessageW(window_, MessageShown, 0, 0);
            }
            return FALSE;
        case MessageShown:
            OnShown();
            return TRUE;
        case WM_COMMAND:
            if (LOWORD(wParam) == IDCANCEL && GetDlgItem(window_, IDCANCEL) == nullptr) {
                OnClose();
            } else {
                OnCommand(LOWORD(wParam), HIWORD(wParam));
            }
            return TRUE;
        case WM_CLOSE:
            OnClose();
            return TRUE;
        case WM_NCDESTROY:
            RemovePropW(window_, ScreenMark);
            window_ = nullptr;
            return FALSE;
        default: {
            const auto result = OnMessage(message, wParam, lParam);
            if (!result) {
                return FALSE;
            }
            SetWindowLongPtrW(window_, DWLP_MSGRESULT, *result);
            const bool asksForBrush = message >= WM_CTLCOLORMSGBOX && message <= WM_CTLCOLORSTATIC;
            return asksForBrush ? *result : TRUE;
        }
    }
}

}  // namespace mip
