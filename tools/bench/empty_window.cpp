// A program with an empty window: what the system takes to start any.

#include <windows.h>

int WINAPI wWinMain(HINSTANCE, HINSTANCE, LPWSTR, int) {
    CreateWindowExW(0, L"STATIC", L"Empty", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 100, 100, 600, 400, nullptr, nullptr,
                    nullptr, nullptr);
    MSG message{};
    while (GetMessageW(&message, nullptr, 0, 0) > 0) {
        DispatchMessageW(&message);
    }
    return 0;
}
