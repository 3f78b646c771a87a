#include "screens/forms/FormHost.h"

#include <utility>

namespace mip {

void FormHost::Run() {
    MSG message;
    while (GetMessageW(&message, nullptr, 0, 0) > 0) {
        Dispatch(message);
    }
}

void FormHost::RunPending() {
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != 0) {
        Dispatch(message);
    }
}

void FormHost::Dispatch(MSG& message) {
    bool handled = false;
    for (const HWND dialog : std::vector<HWND>(dialogs_)) {
        handled = handled || IsDialogMessageW(dialog, &message) != 0;
    }
    if (!handled) {
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
    if (failure_) {
        std::rethrow_exception(std::exchange(failure_, nullptr));
    }
}

}  // namespace mip
