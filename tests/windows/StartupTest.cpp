// How the real program starts, and how it says that it cannot. The program lies on C:, in a folder that may be damaged;
// the root of C: then stands for the disc's root.

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <optional>

#include <windows.h>

#include "forms/ControlIds.h"
#include "tools/screenshots/WorkshopUser.h"

namespace mip {
namespace {

namespace fs = std::filesystem;

const fs::path ProgramFolder = L"C:\\programs\\setup";
const fs::path Viewer = L"C:\\Program Files\\Vantor\\Korvex\\View";
const fs::path ViewerLog = Viewer / L"VBrowser.log";
const fs::path LocalInfo = L"C:\\man_info\\man_info_do.ci";

class StartUp : public testing::Test {
  protected:
    void SetUp() override {
        CopyProgram();
        ASSERT_FALSE(Message(19).empty());
    }

    /// Also mends what was damaged.
    static void CopyProgram() {
        fs::create_directories(ProgramFolder);
        fs::copy(L"D:\\programs\\setup", ProgramFolder,
                 fs::copy_options::recursive | fs::copy_options::overwrite_existing);
    }

    static std::wstring CommandLine(const std::wstring& switches = L"/LANG=09") {
        return (ProgramFolder / L"ManualInstall.exe").wstring() + L" " + switches;
    }
};

TEST_F(StartUp, SecondInstanceEndsSilentlyAndLeavesTheFirstAlone) {
    const WindowDriver first(CommandLine());
    const HWND menu = first.WaitForScreen(ids::cmdStartInstall);
    const WindowDriver second(CommandLine());
    EXPECT_EQ(second.WaitForEnd([&] { EXPECT_EQ(second.FindScreen(ids::cmdStartInstall), nullptr); }), 1U);
    EXPECT_TRUE(IsWindowVisible(menu));
    first.CloseByTitleBar(menu);
    EXPECT_EQ(first.WaitForEnd(), 2U);
    const WindowDriver third(CommandLine());
    EXPECT_NE(third.WaitForScreen(ids::cmdStartInstall), nullptr) << "the first one is gone";
}

TEST_F(StartUp, AskedForItsSwitchesItNamesEachAndDoesNothingElse) {
    const WindowDriver user(CommandLine(L"/silent /? /LANG=07"));
    const HWND box = user.WaitForBox();
    const std::wstring text = MessageOf(box);
    for (const wchar_t* name :
         {L"/SILENT", L"/VERYSILENT", L"/ACCEPT", L"/DIR=", L"/LANG=", L"/LOG=", L"/CHECK", L"/REMOVE=", L"/?: "}) {
        EXPECT_NE(text.find(name), std::wstring::npos) << testing::PrintToString(name);
    }
    user.Answer(box, IDOK);
    EXPECT_EQ(user.WaitForEnd(), 0U);
}

TEST_F(StartUp, AFatalFaultIsSaidInABox) {
    fs::remove(ProgramFolder / L"SysDir\\SysParameter.ini");
    const WindowDriver user(CommandLine());
    const HWND box = user.WaitForBox();
    EXPECT_EQ(TextOf(box), L"Manual Install Program");
    EXPECT_EQ(MessageOf(box), L"System Parameter File None");
    user.Answer(box, IDOK);
    EXPECT_EQ(user.WaitForEnd(), 1U);
}

TEST_F(StartUp, AnUnusableDatabaseOrARunningManagerIsShownOnTheResultScreen) {
    std::optional<WindowDriver> manager;
    const std::tuple<int, std::function<void()>> faults[] = {
        {19, [] { fs::remove(Catalogue); }},
        {20, [] { WriteBytes(Catalogue, "no database"); }},
        {20, [] { fs::resize_file(Catalogue, 5000); }},
        {70, [&] { manager.emplace(L"D:\\programs\\man_manager\\ManualManager.exe"); }},
        {67, [] { SetFileAttributesW(Catalogue, FILE_ATTRIBUTE_READONLY); }}};
    const std::string whole = BytesOf(Catalogue);
    for (const auto& [message, damage] : faults) {
        WriteBytes(Catalogue, whole);
        damage();
        const std::string damaged = BytesOf(Catalogue);
        const WindowDriver user(CommandLine());
        const HWND result = user.WaitForScreen(ids::vaSpread);
        EXPECT_EQ(TextOf(result, ids::L_ErrorMsg + 1), Message(message));
        EXPECT_EQ(TextOf(result, ids::L_ErrorMsg + 2), Message(24));
        user.Press(result, ids::B_OK);
        EXPECT_EQ(user.WaitForEnd(), 1U);
        EXPECT_EQ(BytesOf(Catalogue), damaged);
        manager.reset();
    }
}

// The viewer closes on its own and notes how it was called.
TEST_F(StartUp, WithoutTheDiagnosticProgramTheStartPageIsShownAndNewerInformationCopied) {
    const auto information = [](const std::string& month) {
        return "Aria,Workshop,K1230MM,Aria2020,1,2020/" + month + "\r\n";
    };
    fs::remove(fs::path(ManagerFolder) / L"KVX3.exe");
    fs::create_directories(L"C:\\Aria2020");
    fs::create_directories(Viewer);
    fs::copy_file(L"D:\\programs\\View\\VBrowser.exe", Viewer / L"VBrowser.exe");
    SetEnvironmentVariableW(L"SAMPLE_CLOSE_AFTER", L"200");
    WriteBytes(L"C:\\index.html", "start page");
    WriteBytes(ProgramFolder / L"man_info_do.ci", information("05"));
    const std::tuple<const char*, int, const char*> cases[] = {
        {"06", IDNO, "06"}, {"06", IDYES, "06"}, {"04", 0, "05"}};
    for (const auto& [local, answer, afterwards] : cases) {
        WriteBytes(LocalInfo, information(local));
        const WindowDriver user(CommandLine());
        if (answer != 0) {
            const HWND box = user.WaitForBox();
            EXPECT_EQ(TextOf(box), L"Vantor Manual Information");
            EXPECT_NE(MessageOf(box).find(L"May 2020"), std::wstring::npos);
            EXPECT_FALSE(fs::exists(ViewerLog)) << "not before the answer, and not after a No";
            user.Answer(box, answer);
        }
        EXPECT_EQ(user.WaitForEnd(), 3U);
        if (answer != IDNO) {
            user.WaitUntil("the viewer", [] {
                return BytesOf(ViewerLog).find("VBrowser.exe\" C:\\index.html") != std::string::npos;
            });
            fs::remove(ViewerLog);
        }
        EXPECT_EQ(BytesOf(LocalInfo), information(afterwards));
    }
}

}  // namespace
}  // namespace mip
