#pragma once

#include "platform/MessageBoxes.h"

namespace mip {

/// Boxes owned by the active screen.
class WindowsMessageBoxes : public MessageBoxes {
  public:
    int Show(const std::wstring& text, int style, const std::wstring& title) override;
};

}  // namespace mip
