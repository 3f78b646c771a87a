#pragma once

#include <string>

#include "forms/WindowsHeader.h"

namespace mip {

/// Shows the whole text of a control that has no room for it while the mouse rests on it.
class WholeTextTip {
  public:
    /// Looks after a label of the window.
    void Watch(HWND window, HWND label);
    /// Answers the tip's question for its text; nothing where the label shows all of it already.
    void Tell(NMTTDISPINFOW& question);

  private:
    HWND tip_ = nullptr;
    std::wstring text_;
};

/// A control's text.
std::wstring TextOf(HWND control);
/// The size of a control's text in its own font, broken into lines or not as the format says.
SIZE SizeOfText(HWND control, int width, UINT format);

}  // namespace mip
