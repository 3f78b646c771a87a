#pragma once

#include "platform/Shell.h"

namespace mip {

/// Browser windows through the automation objects of the shell and of Internet Explorer.
class WindowsBrowsers : public Browsers {
  public:
    std::vector<OpenWindow> OpenWindows() override;
    std::unique_ptr<BrowserWindow> StartBrowser() override;
};

}  // namespace mip
