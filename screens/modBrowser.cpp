#include "screens/modBrowser.h"

#include <chrono>
#include <optional>

#include "app/Program.h"
#include "platform/Clock.h"
#include "platform/FaultLog.h"
#include "platform/Files.h"
#include "platform/PlatformError.h"
#include "platform/Processes.h"
#include "text/TextTools.h"

namespace mip {

namespace {

constexpr wchar_t SystemBrowser[] = L"c:\\Program Files\\Internet Explorer\\IEXPLORE.EXE";
constexpr int ReadyStateComplete = 4;
/// Between two looks at a browser that is still loading.
constexpr std::chrono::milliseconds PollInterval{10};
constexpr std::chrono::seconds LongestWait{60};

/// The page at the root of the disc, which the browser is sent to.
std::wstring DriveIndexPage(Platform& platform, const Paths& paths) {
    return platform.Volumes.DriveName(paths.ProgramFolder) + L"\\index.html";
}

/// Whether an address, written as a path or as a URL, leads to the page.
bool LeadsTo(const std::wstring& address, const std::wstring& page) {
    return ToUpper(ReplaceAll(address, L"/", L"\\")).find(ToUpper(page)) != std::wstring::npos;
}

bool ShowsStartPage(const OpenWindow& window, Platform& platform, const Paths& paths) {
    return window.DocumentType == L"HTMLDocument" && (LeadsTo(window.Address, paths.ProgramFolder + L"\\index.html") ||
                                                      LeadsTo(window.Address, DriveIndexPage(platform, paths)));
}

Opening WaitUntilLoaded(BrowserWindow& browser, Clock& clock, const std::function<bool()>& isStopped) {
    const DateTime end = clock.Now() + LongestWait;
    while (browser.IsBusy() || browser.ReadyState() != ReadyStateComplete) {
        if (isStopped()) {
            return Opening::Stopped;
        }
        if (clock.Now() >= end) {
            return Opening::Failed;
        }
        clock.YieldToMessages();
        clock.Sleep(PollInterval);
    }
    browser.Show();
    return Opening::Done;
}

/// Ends a browser that nobody has seen; one that the user had stays.
void GiveUp(const FoundBrowser& browser, FaultLog& log) {
    if (browser.Result == 1) {
        return;
    }
    try {
        browser.Window->Quit();
    } catch (const PlatformError& error) {
        log.Trapped("ending the browser", error);
    }
}

/// Nothing when there is no browser that can be sent to the page.
std::optional<Opening> ShowInBrowser(Platform& platform, const Paths& paths, const std::function<bool()>& isStopped) {
    const FoundBrowser browser = GetBrowserWindow(platform, paths);
    if (!browser.Window) {
        return std::nullopt;
    }
    try {
        browser.Window->Navigate(DriveIndexPage(platform, paths));
    } catch (const PlatformError& error) {
        platform.FaultLog.Trapped("sending the browser to the start page", error);
        GiveUp(browser, platform.FaultLog);
        return std::nullopt;
    }
    try {
        const Opening opening = WaitUntilLoaded(*browser.Window, platform.Clock, isStopped);
        if (opening != Opening::Done) {
            GiveUp(browser, platform.FaultLog);
        }
        return opening;
    } catch (const PlatformError& error) {
        // The user closed the browser while it was loading.
        platform.FaultLog.Trapped("showing the browser", error);
        return Opening::Done;
    }
}

bool StartViewer(Platform& platform, const std::wstring& viewer, const std::wstring& page) {
    try {
        platform.Processes.StartVisible(viewer + L" " + page);
        return true;
    } catch (const PlatformError& error) {
        platform.FaultLog.Trapped("starting the viewer", error);
        return false;
    }
}

}  // namespace

FoundBrowser GetBrowserWindow(Platform& platform, const Paths& paths) {
    Browsers& browsers = platform.Browsers;
    try {
        for (OpenWindow& window : browsers.OpenWindows()) {
            if (ShowsStartPage(window, platform, paths)) {
                return {std::move(window.Window), 1};
            }
        }
    } catch (const PlatformError& error) {
        // A shell without a collection of windows has none to reuse.
        platform.FaultLog.Trapped("looking through the open windows", error);
    }
    try {
        return {browsers.StartBrowser(), 0};
    } catch (const PlatformError& error) {
        platform.FaultLog.Trapped("starting a browser", error);
        return {};
    }
}

std::wstring ChooseViewer(Platform& platform, const Paths& paths) {
    const std::wstring& viewer = paths.ViewerExePath;
    return platform.Files.Exists(viewer) ? viewer : SystemBrowser;
}

Opening ShowDiscIndex(Platform& platform, const Paths& paths, const std::function<bool()>& isStopped) {
    const std::wstring page = paths.DiscRootPath + L"index.html";
    if (!platform.Files.Exists(page)) {
        return Opening::Done;
    }
    const std::wstring viewer = ChooseViewer(platform, paths);
    if (viewer != paths.ViewerExePath) {
        if (const auto opening = ShowInBrowser(platform, paths, isStopped)) {
            return *opening;
        }
    } else if (StartViewer(platform, viewer, page)) {
        return Opening::Done;
    }
    return platform.Shell.OpenDocument(L"Open", page, showCommands::Normal) >= showCommands::LowestSuccess
               ? Opening::Done
               : Opening::Failed;
}

}  // namespace mip
