#pragma once

#include <functional>
#include <memory>
#include <string>

#include "platform/Shell.h"

namespace mip {

struct Paths;
struct Platform;

/// The browser window to use, and whether an open one was found (1) or a new one started (0).
struct FoundBrowser {
    std::unique_ptr<BrowserWindow> Window;  ///< null when no browser automation object can be had
    int Result = 0;
};

/// Finds the open browser window that shows the program's start page, or starts a new browser.
FoundBrowser GetBrowserWindow(Platform& platform, const Paths& paths);
/// The viewer when it is installed, else the path of the system's browser.
std::wstring ChooseViewer(Platform& platform, const Paths& paths);
/// What came of opening the start page.
enum class Opening { Done, Failed, Stopped };

/// Shows the disc's start page: in the viewer, else in a browser window (waiting a minute at most until it is loaded),
/// else by the shell. A missing page does nothing. The wait also ends when `isStopped` answers true; a browser that was
/// started and does not get to show the page is ended.
Opening ShowDiscIndex(Platform& platform, const Paths& paths, const std::function<bool()>& isStopped);

}  // namespace mip
