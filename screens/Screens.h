#pragma once

#include "install/FolderQuestion.h"

namespace mip {

/// The screens that the program's flow opens. Each call shows the screen, not modal, and returns; the flow goes on
/// with that screen's events. Screens unload themselves as they hand over. Only the folder question is modal.
class Screens : public FolderQuestion {
  public:
    virtual void ShowMenu() = 0;
    /// The terms of use, to be agreed to before an installation.
    virtual void ShowAgreement() = 0;
    /// The progress of an installation, which the screen runs.
    virtual void ShowInstallation() = 0;
    virtual void ShowResult() = 0;
    /// The last words of a program that has installed something.
    virtual void ShowClosing() = 0;
    /// The maintenance run that the command line asks for, which the screen runs.
    virtual void ShowMaintenance() = 0;
    /// The disc's start page, on a computer without the diagnostic program.
    virtual void ShowStartPage() = 0;
};

}  // namespace mip
