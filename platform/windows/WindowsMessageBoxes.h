#pragma once

#include "platform/MessageBoxes.h"

namespace mip {

/// Boxes owned by the screen that is open, also while the user works with another program.
class WindowsMessageBoxes : public MessageBoxes {
  public:
    int Show(const std::wstring& text, int style, const std::wstring& title) override;
};

}  // namespace mip
