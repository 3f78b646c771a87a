#include "tests/windows/TextFit.h"

#include <commctrl.h>

#include "forms/Drawing.h"
#include "text/TextTools.h"

namespace mip {

namespace {

std::wstring TextOf(HWND control) {
    std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(control)), L'\0');
    GetWindowTextW(control, text.data(), static_cast<int>(text.size()) + 1);
    return text;
}

bool HasClass(HWND control, const wchar_t* name) {
    wchar_t actual[64]{};
    GetClassNameW(control, actual, 64);
    return ToUpper(actual) == ToUpper(name);
}

SIZE MeasureText(HWND control, int width, UINT format) {
    const WindowDc dc(control);
    const SelectedObject font(dc.Get(), reinterpret_cast<HGDIOBJ>(SendMessageW(control, WM_GETFONT, 0, 0)));
    RECT area{0, 0, width, 0};
    const std::wstring text = TextOf(control);
    DrawTextW(dc.Get(), text.c_str(), static_cast<int>(text.size()), &area, DT_CALCRECT | format);
    return {area.right, area.bottom};
}

bool IsTextWhole(HWND control) {
    RECT client{};
    GetClientRect(control, &client);
    const LONG style = GetWindowLongW(control, GWL_STYLE);
    if (HasClass(control, L"STATIC")) {
        const bool oneLine = (style & SS_ELLIPSISMASK) != 0;
        const bool breaksAnywhere = (style & SS_EDITCONTROL) != 0;
        const UINT format = DT_NOPREFIX | (oneLine ? DT_SINGLELINE : DT_WORDBREAK) |
                            (breaksAnywhere ? static_cast<UINT>(DT_EDITCONTROL) : 0U);
        const SIZE size = MeasureText(control, oneLine ? 0 : static_cast<int>(client.right), format);
        return size.cx <= client.right && size.cy <= client.bottom;
    }
    if (HasClass(control, L"BUTTON")) {
        const LONG kind = style & BS_TYPEMASK;
        const bool hasMark = kind == BS_AUTORADIOBUTTON || kind == BS_AUTOCHECKBOX;
        const SIZE size = MeasureText(control, 0, DT_SINGLELINE);
        const LONG mark = hasMark ? client.bottom : 8;
        return size.cx + mark <= client.right && size.cy <= client.bottom;
    }
    if (HasClass(control, WC_LISTVIEWW)) {
        return (style & WS_HSCROLL) == 0;
    }
    return true;
}

std::vector<HWND> VisibleChildren(HWND window) {
    std::vector<HWND> children;
    for (HWND child = GetWindow(window, GW_CHILD); child != nullptr; child = GetWindow(child, GW_HWNDNEXT)) {
        if ((GetWindowLongW(child, GWL_STYLE) & WS_VISIBLE) != 0) {
            children.push_back(child);
        }
    }
    return children;
}

RECT PlaceOf(HWND window) {
    RECT place{};
    GetWindowRect(window, &place);
    return place;
}

}  // namespace

std::vector<std::string> TextsThatDoNotFit(HWND window) {
    std::vector<std::string> complaints;
    const auto complain = [&](HWND control, const char* what) {
        complaints.push_back(std::to_string(GetDlgCtrlID(control)) + what + ToUtf8(TextOf(control)));
    };
    const RECT whole = PlaceOf(window);
    if (whole.bottom - whole.top > GetSystemMetrics(SM_CYSCREEN)) {
        complaints.push_back("the window is higher than the screen");
    }
    RECT client{};
    GetClientRect(window, &client);
    MapWindowPoints(window, nullptr, reinterpret_cast<POINT*>(&client), 2);
    const std::vector<HWND> children = VisibleChildren(window);
    for (const HWND child : children) {
        const RECT place = PlaceOf(child);
        RECT common{};
        IntersectRect(&common, &place, &client);
        if (EqualRect(&common, &place) == 0) {
            complain(child, " leaves the window: ");
        }
        if (!IsTextWhole(child)) {
            complain(child, " is cut off: ");
        }
        for (const HWND other : children) {
            const RECT otherPlace = PlaceOf(other);
            if (other > child && IntersectRect(&common, &place, &otherPlace) != 0) {
                complain(child, " overlaps: ");
            }
        }
    }
    return complaints;
}

}  // namespace mip
