#pragma once

namespace mip {

/// The screens that the program's flow opens. Each call shows the screen, not modal, and returns; the flow goes on
/// with that screen's events. Screens unload themselves as they hand over.
class Screens {
  public:
    virtual ~Screens() = default;

    virtual void ShowMenu() = 0;
    virtual void ShowStartUp() = 0;
    virtual void ShowInstallation() = 0;
    virtual void ShowResult() = 0;
    virtual void ShowTerms() = 0;
    virtual void ShowTransaction() = 0;
};

}  // namespace mip
