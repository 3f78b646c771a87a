#include <gtest/gtest.h>

#include <functional>

#include "app/Program.h"
#include "screens/modBrowser.h"
#include "tests/native/fakes/InMemoryWindows.h"

namespace mip {
namespace {

constexpr auto Viewer = L"C:\\Program Files\\View\\view.exe";
constexpr auto Page = L"D:\\index.html";

class DiscIndex : public testing::Test {
  protected:
    DiscIndex() {
        program_.Paths.ProgramFolder = L"D:\\programs\\setup";
        program_.Paths.DiscRootPath = L"D:\\";
        program_.Paths.ViewerExePath = Viewer;
        windows_.Tree.PutFile(Page);
    }

    Opening Open(const std::function<bool()>& isStopped = [] { return false; }) {
        return ShowDiscIndex(program_.Platform, program_.Paths, isStopped);
    }

    bool Logged(const wchar_t* routine) const { return program_.Log.Text().find(routine) != std::wstring::npos; }
    InMemoryWindows windows_;
    Program program_{windows_.Platform};
};

TEST_F(DiscIndex, ViewerIsPreferredAndWithoutAPageNothingIsStarted) {
    windows_.Tree.PutFile(Viewer);
    Open();
    windows_.Tree.Erase(Page);
    Open();
    EXPECT_EQ(windows_.Processes.StartedVisible, std::vector<std::wstring>{std::wstring(Viewer) + L" " + Page});
    EXPECT_TRUE(windows_.Browsers.Started.empty());
    EXPECT_TRUE(windows_.Shell.Opened.empty());
}

TEST_F(DiscIndex, WhenViewerOrBrowserFailsTheShellOpensThePage) {
    const auto failTheViewer = [this] {
        windows_.Tree.PutFile(Viewer);
        windows_.Faults.Reset();
        Open();
        windows_.Faults.FailCall(windows_.Faults.Calls());  // its start is the last of the calls
    };
    const std::pair<std::function<void()>, const wchar_t*> failures[] = {
        {[this] { windows_.Browsers.NewBrowser.RefusesPages = true; }, L"sending the browser to the start page"},
        {[this] { windows_.Browsers.CanStart = false; }, L"starting a browser"},
        {failTheViewer, L"starting the viewer"}};
    for (const auto& [arrange, routine] : failures) {
        arrange();
        windows_.Shell.Opened.clear();
        Open();
        EXPECT_EQ(windows_.Shell.Opened, (std::vector<OpenedDocument>{{L"Open", Page, 1}}));
        EXPECT_TRUE(Logged(routine));
        EXPECT_TRUE(windows_.Browsers.Started.empty() || windows_.Browsers.Started.back()->Quit);
        windows_.Shell.OpenResult = 31;
        arrange();
        EXPECT_EQ(Open(), Opening::Failed) << "nor does the shell";
        windows_.Shell.OpenResult = showCommands::LowestSuccess;
    }
}

TEST_F(DiscIndex, NewBrowserIsShownWhenItHasLoadedThePageOfTheDrive) {
    windows_.Browsers.HasWindowCollection = false;
    windows_.Browsers.NewBrowser.BusyPolls = 3;
    windows_.Browsers.NewBrowser.ReadyPolls = 2;
    windows_.Clock.OnYield = [this] { EXPECT_FALSE(windows_.Browsers.Started.at(0)->Shown); };
    Open();
    const ScriptedBrowser& browser = *windows_.Browsers.Started.at(0);
    EXPECT_EQ(browser.Navigated, std::vector<std::wstring>{Page});
    EXPECT_TRUE(browser.Shown);
    EXPECT_EQ(windows_.Clock.Yields, 5) << "the message loop is served at each look";
    EXPECT_EQ(windows_.Clock.Sleeps, std::vector(5, std::chrono::milliseconds(10))) << "the processor is spared";
    EXPECT_TRUE(Logged(L"looking through the open windows"));
}

TEST_F(DiscIndex, OpenWindowWithTheStartPageIsReused) {
    const std::tuple<const wchar_t*, const wchar_t*, bool> cases[] = {
        {L"HTMLDocument", L"file://d:\\PROGRAMS\\setup\\INDEX.HTML", true},
        {L"HTMLDocument", L"file:///D:/programs/setup/index.html#top", true},
        {L"HTMLDocument", L"file:///D:/index.html", true},  // at the root, where it was sent
        {L"HTMLDocument", L"file:///D:/manuals/index.html", false},
        {L"HTMLDocument", L"file:///E:/index.html", false},
        {L"IShellFolderViewDual", L"D:\\programs\\setup\\index.html", false},
        {L"", L"", false},
    };
    for (const auto& [kind, place, isReused] : cases) {
        SCOPED_TRACE(testing::PrintToString(place));
        windows_.Browsers.Open.clear();
        windows_.Browsers.Started.clear();
        for (const auto& [type, address] :
             {std::pair<std::wstring, std::wstring>{L"HTMLDocument", L"about:blank"}, {kind, place}}) {
            windows_.Browsers.Open.push_back(std::make_shared<ScriptedBrowser>());
            windows_.Browsers.Open.back()->DocumentType = type;
            windows_.Browsers.Open.back()->Address = address;
        }
        Open();
        EXPECT_EQ(windows_.Browsers.Open[1]->Shown, isReused);
        EXPECT_EQ(windows_.Browsers.Started.size(), isReused ? 0u : 1u);
    }
}

TEST_F(DiscIndex, AWaitIsGivenUpAfterAMinuteOrByTheUserAndLeavesNoBrowserBehind) {
    for (const auto& [isReused, isStopped, result] :
         {std::tuple{false, false, Opening::Failed}, {true, false, Opening::Failed}, {false, true, Opening::Stopped}}) {
        SCOPED_TRACE(testing::Message() << isReused << isStopped);
        windows_.Browsers.NewBrowser.ReadyPolls = 1'000'000;
        windows_.Browsers.Open.clear();
        if (isReused) {
            windows_.Browsers.Open.push_back(std::make_shared<ScriptedBrowser>(windows_.Browsers.NewBrowser));
            windows_.Browsers.Open.back()->Address = Page;
        }
        windows_.Clock.Yields = 0;
        const DateTime start = windows_.Clock.Now();
        EXPECT_EQ(Open([&, stops = isStopped] { return stops && windows_.Clock.Yields == 7; }), result);
        EXPECT_EQ(windows_.Clock.Now() - start, std::chrono::seconds(isStopped ? 0 : 60));
        const auto& browser = isReused ? windows_.Browsers.Open.back() : windows_.Browsers.Started.back();
        EXPECT_EQ(browser->Quit, !isReused);
        EXPECT_FALSE(browser->Shown);
    }
}

TEST_F(DiscIndex, BrowserClosedWhileItLoadsEndsTheWait) {
    for (const bool whileBusy : {true, false}) {
        windows_.Browsers.NewBrowser.BusyPolls = whileBusy ? 1000 : 0;
        windows_.Browsers.NewBrowser.ReadyPolls = 1000;
        windows_.Browsers.Started.clear();
        windows_.Clock.Yields = 0;
        windows_.Clock.OnYield = [this] { windows_.Browsers.Started.at(0)->Gone = windows_.Clock.Yields == 7; };
        Open();
        EXPECT_EQ(windows_.Clock.Yields, 7);
        EXPECT_FALSE(windows_.Browsers.Started.at(0)->Shown);
    }
    EXPECT_TRUE(Logged(L"showing the browser"));
    EXPECT_TRUE(windows_.Shell.Opened.empty()) << "who closed the browser does not want the page";
}

}  // namespace
}  // namespace mip
