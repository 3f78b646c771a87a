#include "forms/TaskbarButton.h"

namespace mip {

namespace {

ComPointer<ITaskbarList3> OpenTaskbar() {
    void* list = nullptr;
    if (FAILED(CoCreateInstance(CLSID_TaskbarList, nullptr, CLSCTX_INPROC_SERVER, __uuidof(ITaskbarList3), &list))) {
        return nullptr;
    }
    ComPointer<ITaskbarList3> taskbar(static_cast<ITaskbarList3*>(list));
    return SUCCEEDED(taskbar->HrInit()) ? std::move(taskbar) : nullptr;
}

}  // namespace

void TaskbarButton::Show(HWND screen, float part, TBPFLAG state) {
    if (!isTried_) {
        isTried_ = true;
        list_ = OpenTaskbar();
    }
    if (list_) {
        constexpr ULONGLONG whole = 1000;
        list_->SetProgressValue(screen, static_cast<ULONGLONG>(part * static_cast<float>(whole)), whole);
        list_->SetProgressState(screen, state);
    }
}

void TaskbarButton::CallUser(HWND screen) {
    DWORD process = 0;
    GetWindowThreadProcessId(GetForegroundWindow(), &process);
    if (process != GetCurrentProcessId()) {
        FLASHWINFO flash{sizeof flash, screen, FLASHW_ALL | FLASHW_TIMERNOFG, 0, 0};
        FlashWindowEx(&flash);
    }
}

}  // namespace mip
