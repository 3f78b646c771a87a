#pragma once

#include <string>

#include "forms/WindowsHeader.h"

namespace mip {

/// Puts a text on the clipboard in the owner's name. Nothing happens when another program holds the clipboard.
void PutOnClipboard(HWND owner, const std::wstring& text);

}  // namespace mip
