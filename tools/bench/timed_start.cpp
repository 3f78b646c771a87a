// Starts another program and prints the seconds until something happens; that program is then gone:
//     timed_start window COMMAND-LINE     until its first window is shown
//     timed_start end COMMAND-LINE        until it has ended, which it does by itself

#include <windows.h>

#include <cstdio>
#include <string>
#include <string_view>

#include "tools/bench/Measure.h"

namespace mip {
namespace {

struct Search {
    DWORD Process = 0;
    bool Found = false;
};

BOOL CALLBACK LookAt(HWND window, LPARAM parameter) {
    auto& search = *reinterpret_cast<Search*>(parameter);
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    search.Found = process == search.Process && IsWindowVisible(window);
    return !search.Found;
}

bool ShowsWindow(DWORD process) {
    Search search{process};
    EnumWindows(LookAt, reinterpret_cast<LPARAM>(&search));
    return search.Found;
}

bool HasEnded(const PROCESS_INFORMATION& process) {
    return WaitForSingleObject(process.hProcess, 1) == WAIT_OBJECT_0;
}

int Run(std::string_view event, std::wstring commandLine) {
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process{};
    bool reached = false;
    const double seconds = SecondsOf([&] {
        if (!CreateProcessW(nullptr, commandLine.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                            &process)) {
            return;
        }
        bool ended = false;
        while (!reached && !ended) {
            ended = HasEnded(process);
            reached = event == "window" ? ShowsWindow(process.dwProcessId) : ended;
        }
    });
    TerminateProcess(process.hProcess, 0);
    std::printf("%s %.4f\n", std::string(event).c_str(), seconds);
    return reached ? 0 : 1;
}

}  // namespace
}  // namespace mip

int main(int count, char** arguments) {
    if (count != 3) {
        std::puts("timed_start window|end COMMAND-LINE");
        return 2;
    }
    return mip::Run(arguments[1], mip::Widen(arguments[2]));
}
