#include "forms/Placement.h"

#include <algorithm>

namespace mip {

namespace {

RECT RectOf(HWND window) {
    RECT rect{};
    GetWindowRect(window, &rect);
    return rect;
}

POINT Centred(SIZE size, const RECT& area) {
    return {area.left + (area.right - area.left - size.cx) / 2, area.top + (area.bottom - area.top - size.cy) / 2};
}

/// Moves a window onto the area; the left upper corner of one that is larger stays on it.
POINT MovedOnto(POINT place, SIZE size, const RECT& area) {
    return {std::max(std::min(place.x, area.right - size.cx), area.left),
            std::max(std::min(place.y, area.bottom - size.cy), area.top)};
}

RECT WorkAreaOf(HMONITOR screen) {
    MONITORINFO monitor{};
    monitor.cbSize = sizeof monitor;
    GetMonitorInfoW(screen, &monitor);
    return monitor.rcWork;
}

}  // namespace

RECT WorkAreaOf(HWND window) {
    return WorkAreaOf(MonitorFromWindow(window, MONITOR_DEFAULTTOPRIMARY));
}

void PutInPlace(HWND window, const std::optional<POINT>& last) {
    const RECT own = RectOf(window);
    const SIZE size{own.right - own.left, own.bottom - own.top};
    const HWND owner = GetWindow(window, GW_OWNER);
    RECT work = WorkAreaOf(owner != nullptr ? owner : window);
    POINT place = Centred(size, owner != nullptr && IsIconic(owner) == 0 ? RectOf(owner) : work);
    if (owner == nullptr && last) {
        const RECT wanted{last->x, last->y, last->x + size.cx, last->y + size.cy};
        work = WorkAreaOf(MonitorFromRect(&wanted, MONITOR_DEFAULTTONEAREST));
        place = *last;
    }
    place = MovedOnto(place, size, work);
    SetWindowPos(window, nullptr, place.x, place.y, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

std::optional<POINT> PlaceOf(HWND window) {
    if (GetWindow(window, GW_OWNER) != nullptr || IsIconic(window) != 0 || IsZoomed(window) != 0) {
        return {};
    }
    const RECT own = RectOf(window);
    return POINT{own.left, own.top};
}

}  // namespace mip
