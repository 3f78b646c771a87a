#pragma once

#include <optional>

#include "forms/WindowsHeader.h"

namespace mip {

/// The part of a window's screen that no task bar covers; of a minimised window the screen that it comes back to.
RECT WorkAreaOf(HWND window);

/// Puts a window that has its size where it belongs. One with an owner goes over the owner's middle, or to the screen's
/// middle while the owner is minimised. Another one takes the place of the last, the screen's middle when there was
/// none. None sticks out of the work area that it can be moved onto.
void PutInPlace(HWND window, const std::optional<POINT>& last);

/// The left upper corner of a window that stands on its own, as it can be seen; nothing while there is no such place.
std::optional<POINT> PlaceOf(HWND window);

}  // namespace mip
