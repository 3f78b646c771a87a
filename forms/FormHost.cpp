#include "forms/FormHost.h"

#include <utility>

#include "platform/windows/MessageLoop.h"

namespace mip {

void FormHost::Run() {
    MSG message;
    while (GetMessageW(&message, nullptr, 0, 0) > 0) {
        HandleMessage(message);
        ThrowKept();
    }
}

void FormHost::ThrowKept() {
    if (failure_) {
        std::rethrow_exception(std::exchange(failure_, nullptr));
    }
}

}  // namespace mip
