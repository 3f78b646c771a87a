#pragma once

#include <memory>

#include "forms/WindowsHeader.h"

#include <shobjidl.h>

#include "platform/windows/ComAutomation.h"

namespace mip {

/// The progress on a screen's button in the task bar. Where there is none, as before Windows 7, nothing happens.
class TaskbarButton {
  public:
    /// Shows a part of 0 to 1. The state is one of the system's: TBPF_NORMAL, TBPF_PAUSED, TBPF_ERROR.
    void Show(HWND screen, float part, TBPFLAG state);
    /// Lets the button flash until the user comes to a program that works in the background.
    static void CallUser(HWND screen);

  private:
    ComPointer<ITaskbarList3> list_;
    bool isTried_ = false;
};

}  // namespace mip
