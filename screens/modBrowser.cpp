#include "screens/modBrowser.h"

#include <chrono>

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

void WaitUntilLoaded(BrowserWindow& browser, Clock& clock) {
    const auto letOthersWork = [&clock] {
        clock.YieldToMessages();
        clock.Sleep(PollInterval);
    };
    while (browser.IsBusy()) {
        letOthersWork();
    }
    while (browser.ReadyState() != ReadyStateComplete) {
        letOthersWork();
    }
}

/// False when there is no browser that can be sent to the page.
bool ShowInBrowser(Platform& platform, const Paths& paths) {
    const FoundBrowser browser = GetBrowserWindow(platform, paths);
    if (!browser.Window) {
        return false;
    }
    try {
        browser.Window->Navigate(DriveIndexPage(platform, paths));
    } catch (const PlatformError& error) {
        platform.FaultLog.Trapped("sending the browser to the start page", error);
        return false;
    }
    try {
        WaitUntilLoaded(*browser.Window, platform.Clock);
        browser.Window->Show();
    } catch (const PlatformError& error) {
        // The user closed the browser while it was loading.
        platform.FaultLog.Trapped("showing the browser", error);
    }
    return true;
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

void ShowDiscIndex(Platform& platform, const Paths& paths) {
    const std::wstring page = paths.DiscRootPath + L"index.html";
    if (!platform.Files.Exists(page)) {
        return;
    }
    const std::wstring viewer = ChooseViewer(platform, paths);
    const bool isShown =
        viewer == paths.ViewerExePath ? StartViewer(platform, viewer, page) : ShowInBrowser(platform, paths);
    if (!isShown) {
        platform.Shell.OpenDocument(L"Open", page, showCommands::Normal);
    }
}

}  // namespace mip
