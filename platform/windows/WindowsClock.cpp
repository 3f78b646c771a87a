#include "platform/windows/WindowsClock.h"

#include <windows.h>

#include "platform/windows/MessageLoop.h"

namespace mip {

DateTime WindowsClock::Now() {
    using namespace std::chrono;
    SYSTEMTIME now{};
    GetLocalTime(&now);
    const local_days date{year{now.wYear} / month{now.wMonth} / day{now.wDay}};
    return date + hours{now.wHour} + minutes{now.wMinute} + seconds{now.wSecond};
}

void WindowsClock::Sleep(std::chrono::milliseconds duration) {
    ::Sleep(static_cast<DWORD>(duration.count()));
}

void WindowsClock::YieldToMessages() {
    ServeWaitingMessages();
}

}  // namespace mip
