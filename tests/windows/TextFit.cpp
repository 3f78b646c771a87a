#include "tests/windows/TextFit.h"

#include <commctrl.h>

#include "forms/WholeTextTip.h"
#include "text/TextTools.h"

namespace mip {

namespace {

bool HasClass(HWND control, const wchar_t* name) {
    wchar_t actual[64]{};
    GetClassNameW(control, actual, 64);
    return ToUpper(actual) == ToUpper(name);
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
        const SIZE size = SizeOfText(control, oneLine ? 0 : static_cast<int>(client.right), format);
        return size.cx <= client.right && size.cy <= client.bottom;
    }
    if (HasClass(control, L"BUTTON")) {
        const LONG kind = style & BS_TYPEMASK;
        const bool hasMark = kind == BS_AUTORADIOBUTTON || kind == BS_AUTOCHECKBOX;
        const bool breaks = (style & BS_MULTILINE) != 0;
        RECT margin{hasMark ? 20 : 8, 0, 0, 0};
        if (breaks && !hasMark) {
            SendMessageW(control, BCM_GETTEXTMARGIN, 0, reinterpret_cast<LPARAM>(&margin));
        }
        const int width = static_cast<int>(client.right - margin.left - margin.right);
        const SIZE size = SizeOfText(control, breaks ? width : 0, breaks ? DT_WORDBREAK : DT_SINGLELINE);
        return size.cx <= width && size.cy + margin.top + margin.bottom <= client.bottom;
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
