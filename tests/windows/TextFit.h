#pragma once

#include <string>
#include <vector>

#include <windows.h>

namespace mip {

/// Checks every visible child of a window: its text, measured in its own font, fits into it; it lies inside the window;
/// it covers no other one. Returns what does not hold, a line each.
std::vector<std::string> TextsThatDoNotFit(HWND window);

}  // namespace mip
