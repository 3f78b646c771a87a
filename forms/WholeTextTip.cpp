#include "forms/WholeTextTip.h"

#include "forms/Drawing.h"

namespace mip {

void WholeTextTip::Watch(HWND window, HWND label) {
    if (tip_ == nullptr) {
        // It goes with its owner.
        tip_ = CreateWindowExW(WS_EX_TOPMOST, TOOLTIPS_CLASSW, L"", WS_POPUP | TTS_ALWAYSTIP | TTS_NOPREFIX, 0, 0, 0, 0,
                               window, nullptr, GetModuleHandleW(nullptr), nullptr);
        constexpr LPARAM longest = 600;  // pixels; longer texts are broken into lines
        SendMessageW(tip_, TTM_SETMAXTIPWIDTH, 0, longest);
    }
    TTTOOLINFOW tool{};
    tool.cbSize = TTTOOLINFOW_V2_SIZE;
    tool.uFlags = TTF_IDISHWND | TTF_SUBCLASS;
    tool.hwnd = window;
    tool.uId = reinterpret_cast<UINT_PTR>(label);
    tool.lpszText = LPSTR_TEXTCALLBACKW;
    SendMessageW(tip_, TTM_ADDTOOLW, 0, reinterpret_cast<LPARAM>(&tool));
}

void WholeTextTip::Tell(NMTTDISPINFOW& question) {
    const auto label = reinterpret_cast<HWND>(question.hdr.idFrom);
    RECT room{};
    GetClientRect(label, &room);
    const bool isOneLine = (GetWindowLongW(label, GWL_STYLE) & SS_ELLIPSISMASK) != 0;
    const bool isWhole = !isOneLine || SizeOfText(label, 0, DT_SINGLELINE | DT_NOPREFIX).cx <= room.right;
    text_ = isWhole ? L"" : TextOf(label);
    question.lpszText = text_.data();
}

std::wstring TextOf(HWND control) {
    std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(control)), L'\0');
    GetWindowTextW(control, text.data(), static_cast<int>(text.size()) + 1);
    return text;
}

SIZE SizeOfText(HWND control, int width, UINT format) {
    const WindowDc dc(control);
    const SelectedObject font(dc.Get(), reinterpret_cast<HGDIOBJ>(SendMessageW(control, WM_GETFONT, 0, 0)));
    RECT area{0, 0, width, 0};
    const std::wstring text = TextOf(control);
    DrawTextW(dc.Get(), text.c_str(), static_cast<int>(text.size()), &area, DT_CALCRECT | format);
    return {area.right, area.bottom};
}

}  // namespace mip
