#include "screens/modBrowser.h"

#include "app/Program.h"

#include <chrono>

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
std::wstring DriveIndexPage(const Program& program) {
    return program.Platform.Volumes.DriveName(program.Paths.ProgramFolder) + L"\\index.html";
}

/// Whether an address, written as a path or as a URL, leads to the page.
bool LeadsTo(const std::wstring& address, const std::wstring& page) {
    return ToUpper(ReplaceAll(address, L"/", L"\\")).find(ToUpper(page)) != std::wstring::npos;
}

bool ShowsStartPage(const OpenWindow& window, const Program& program) {
    return window.DocumentType == L"HTMLDocument" &&
           (LeadsTo(window.Address, program.Paths.ProgramFolder + L"\\index.html") ||
            LeadsTo(window.Address, DriveIndexPage(program)));
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
bool ShowInBrowser(const Program& program) {
    const FoundBrowser browser = GetBrowserWindow(program);
    if (!browser.Window) {
        return false;
    }
    try {
        browser.Window->Navigate(DriveIndexPage(program));
    } catch (const PlatformError& error) {
        program.Platform.FaultLog.Trapped("sending the browser to the start page", error);
        return false;
    }
    try {
        WaitUntilLoaded(*browser.Window, program.Platform.Clock);
        browser.Window->Show();
    } catch (const PlatformError& error) {
        // The user closed the browser while it was loading.
        program.Platform.FaultLog.Trapped("showing the browser", error);
    }
    return true;
}

bool StartViewer(const Program& program, const std::wstring& viewer, const std::wstring& page) {
    try {
        program.Platform.Processes.StartVisible(viewer + L" " + page);
        return true;
    } catch (const PlatformError& error) {
        program.Platform.FaultLog.Trapped("starting the viewer", error);
        return false;
    }
}

}  // namespace

FoundBrowser GetBrowserWindow(const Program& program) {
    Browsers& browsers = program.Platform.Browsers;
    try {
        for (OpenWindow& window : browsers.OpenWindows()) {
            if (ShowsStartPage(window, program)) {
                return {std::move(window.Window), 1};
            }
        }
    } catch (const PlatformError& error) {
        // A shell without a collection of windows has none to reuse.
        program.Platform.FaultLog.Trapped("looking through the open windows", error);
    }
    try {
        return {browsers.StartBrowser(), 0};
    } catch (const PlatformError& error) {
        program.Platform.FaultLog.Trapped("starting a browser", error);
        return {};
    }
}

std::wstring ChooseViewer(const Program& program) {
    const std::wstring& viewer = program.Paths.ViewerExePath;
    return program.Platform.Files.Exists(viewer) ? viewer : SystemBrowser;
}

void ShowDiscIndex(Program& program) {
    Platform& platform = program.Platform;
    const std::wstring page = program.Paths.DiscRootPath + L"index.html";
    if (!platform.Files.Exists(page)) {
        return;
    }
    const std::wstring viewer = ChooseViewer(program);
    const bool isShown =
        viewer == program.Paths.ViewerExePath ? StartViewer(program, viewer, page) : ShowInBrowser(program);
    if (!isShown) {
        platform.Shell.OpenDocument(L"Open", page, showCommands::Normal);
    }
}

}  // namespace mip
