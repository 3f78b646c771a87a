#include "samples/setups/SampleWindow.h"

#include <windows.h>

#include <array>
#include <cstdlib>

namespace mip {

namespace {

constexpr COLORREF Navy = RGB(0x14, 0x29, 0x3D);
constexpr int BandHeight = 64;
constexpr int Margin = 24;

void DrawLine(HDC context, const std::wstring& text, RECT area, int height, int weight, UINT format) {
    HFONT font = CreateFontW(-height, 0, 0, 0, weight, FALSE, FALSE, FALSE, DEFAULT_CHARSET, OUT_DEFAULT_PRECIS,
                             CLIP_DEFAULT_PRECIS, CLEARTYPE_QUALITY, DEFAULT_PITCH | FF_SWISS, L"Arial");
    HGDIOBJ before = SelectObject(context, font);
    DrawTextW(context, text.c_str(), static_cast<int>(text.size()), &area, format | DT_NOPREFIX);
    SelectObject(context, before);
    DeleteObject(font);
}

void Paint(HWND handle, const SampleWindow& window) {
    PAINTSTRUCT paint{};
    HDC context = BeginPaint(handle, &paint);
    RECT area{};
    GetClientRect(handle, &area);
    RECT band = area;
    band.bottom = BandHeight;
    HBRUSH brush = CreateSolidBrush(Navy);
    FillRect(context, &band, brush);
    DeleteObject(brush);
    SetBkMode(context, TRANSPARENT);

    band.left += Margin;
    SetTextColor(context, RGB(255, 255, 255));
    DrawLine(context, window.Headline, band, 24, FW_BOLD, DT_SINGLELINE | DT_VCENTER);
    RECT body{Margin, BandHeight + Margin, area.right - Margin, area.bottom - Margin};
    SetTextColor(context, Navy);
    DrawLine(context, window.Text, body, 16, FW_NORMAL, DT_WORDBREAK);
    EndPaint(handle, &paint);
}

LRESULT CALLBACK HandleMessage(HWND handle, UINT message, WPARAM wide, LPARAM param) {
    switch (message) {
        case WM_CREATE: {
            const auto* creation = reinterpret_cast<const CREATESTRUCTW*>(param);
            SetWindowLongPtrW(handle, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(creation->lpCreateParams));
            return 0;
        }
        case WM_PAINT:
            Paint(handle, *reinterpret_cast<const SampleWindow*>(GetWindowLongPtrW(handle, GWLP_USERDATA)));
            return 0;
        case WM_TIMER:
            DestroyWindow(handle);
            return 0;
        case WM_DESTROY:
            PostQuitMessage(0);
            return 0;
        default:
            return DefWindowProcW(handle, message, wide, param);
    }
}

void CloseAfterOrderedTime(HWND handle) {
    std::array<wchar_t, 16> text{};
    const DWORD length = GetEnvironmentVariableW(L"SAMPLE_CLOSE_AFTER", text.data(), static_cast<DWORD>(text.size()));
    if (length > 0 && length < text.size()) {
        SetTimer(handle, 1, static_cast<UINT>(std::wcstoul(text.data(), nullptr, 10)), nullptr);
    }
}

}  // namespace

int ShowSampleWindow(const SampleWindow& window) {
    HINSTANCE instance = GetModuleHandleW(nullptr);
    WNDCLASSW description{};
    description.lpfnWndProc = HandleMessage;
    description.hInstance = instance;
    description.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    description.hbrBackground = GetSysColorBrush(COLOR_WINDOW);
    description.lpszClassName = window.ClassName.c_str();
    RegisterClassW(&description);

    HWND handle = CreateWindowExW(0, description.lpszClassName, window.Title.c_str(), WS_OVERLAPPEDWINDOW | WS_VISIBLE,
                                  CW_USEDEFAULT, CW_USEDEFAULT, 640, 320, nullptr, nullptr, instance,
                                  const_cast<SampleWindow*>(&window));
    if (handle == nullptr) {
        return 1;
    }
    CloseAfterOrderedTime(handle);
    MSG message{};
    while (GetMessageW(&message, nullptr, 0, 0) > 0) {
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
    return 0;
}

}  // namespace mip
