// How the real program starts, and how it says that it cannot. The program lies on C:, in a folder that may be damaged;
// the root of C: then stands for the disc's root.

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>

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

TEST_F(StartUp, AFatalFaultIsSaidInABox) {
    const fs::path settings = ProgramFolder / L"SysDir\\SysParameter.ini";
    const std::tuple<std::function<void()>, std::wstring, std::wstring> faults[] = {
        {[&] { fs::remove(settings); }, L"", L"System Parameter File None"},
        {[&] { WritePrivateProfileStringW(L"SYSTEM INFORMATION", L"ZIP_ExtractTime", L"soon", settings.c_str()); }, L"",
         L"No System Data"},
        {[] {}, L" /NONSENSE", L"This switch is not known, or cannot be used in this way: /NONSENSE"}};
    for (const auto& [damage, switches, text] : faults) {
        CopyProgram();
        damage();
        const WindowDriver user(CommandLine(L"/LANG=09" + switches));
        const HWND box = user.WaitForBox();
        EXPECT_EQ(TextOf(box), L"Manual Install Program");
        EXPECT_EQ(MessageOf(box), text);
        user.Answer(box, IDOK);
        EXPECT_EQ(user.WaitForEnd(), 1U);
    }
}

TEST_F(StartUp, AnUnusableDatabaseIsShownOnTheResultScreenAndNotChanged) {
    const std::tuple<int, std::function<void()>> faults[] = {
        {19, [] { fs::remove(Catalogue); }},
        {20, [] { WriteBytes(Catalogue, "no database"); }},
        {20, [] { fs::resize_file(Catalogue, 5000); }},
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
    }
}

TEST_F(StartUp, ARunningManagerIsNamed) {
    const WindowDriver manager(L"D:\\programs\\man_manager\\ManualManager.exe");
    const WindowDriver user(CommandLine());
    EXPECT_EQ(TextOf(user.WaitForScreen(ids::vaSpread), ids::L_ErrorMsg + 1), Message(70));
}

TEST_F(StartUp, ALanguageWithoutFilesShowsTheEnglishOnes) {
    fs::remove(ProgramFolder / L"SysDir\\M11.ini");
    fs::remove(ProgramFolder / L"SysDir\\Licence_11.txt");
    const WindowDriver user(CommandLine(L"/LANG=11"));
    const HWND menu = user.WaitForScreen(ids::cmdStartInstall);
    EXPECT_EQ(TextOf(menu), Message(84));
    user.Press(menu, ids::cmdStartInstall);
    const HWND agreement = user.WaitForScreen(ids::T_CONTRACT);
    EXPECT_NE(TextOf(agreement, ids::T_CONTRACT).find(L"TERMS OF USE"), std::wstring::npos);
}

/// A computer without the diagnostic program, with a viewer; the disc has one manual, issued in May 2020.
class StartPage : public StartUp {
  protected:
    void SetUp() override {
        StartUp::SetUp();
        fs::remove(fs::path(ManagerFolder) / L"KVX3.exe");
        fs::create_directories(Viewer);
        fs::copy_file(L"D:\\programs\\View\\VBrowser.exe", Viewer / L"VBrowser.exe");
        fs::create_directories(L"C:\\Aria2020");
        WriteBytes(L"C:\\index.html", "start page");
        WriteBytes(ProgramFolder / L"man_info_do.ci", Disc);
        SetEnvironmentVariableW(L"SAMPLE_CLOSE_AFTER", L"200");
    }

    static void ExpectQuietEnd() { EXPECT_EQ(WindowDriver(CommandLine()).WaitForEnd(), 3U); }
    /// The viewer, which closes on its own, notes how it was called.
    static bool ViewerWasAsked() {
        const auto end = std::chrono::steady_clock::now() + WindowDriver::Patience;
        bool asked = false;
        while (!asked && std::chrono::steady_clock::now() < end) {
            Sleep(20);
            asked = BytesOf(ViewerLog).find("VBrowser.exe\" C:\\index.html") != std::string::npos;
        }
        return asked;
    }

    const std::string Disc = "Aria,Workshop,K1230MM,Aria2020,1,2020/05\r\n";
};

TEST_F(StartPage, OpensInTheViewerAndNewerInformationIsCopied) {
    fs::remove(L"C:\\index.html");
    ExpectQuietEnd();
    EXPECT_FALSE(fs::exists(LocalInfo) || fs::exists(ViewerLog)) << "there is no page";

    WriteBytes(L"C:\\index.html", "start page");
    for (const char* const local : {"", "Aria,Workshop,K1230MM,Aria2020,1,2020/04\r\n"}) {
        fs::remove(ViewerLog);
        if (*local != '\0') {
            WriteBytes(LocalInfo, local);
        }
        ExpectQuietEnd();
        EXPECT_TRUE(ViewerWasAsked()) << local;
        EXPECT_EQ(BytesOf(LocalInfo), Disc) << local;
    }
}

TEST_F(StartPage, OlderInformationIsAskedAbout) {
    const std::string local = "Aria,Workshop,K1230MM,Aria2020,1,2020/06\r\n";
    WriteBytes(LocalInfo, local);
    for (const int answer : {IDNO, IDYES}) {
        const WindowDriver user(CommandLine());
        const HWND box = user.WaitForBox();
        EXPECT_EQ(TextOf(box), L"Vantor Manual Information");
        EXPECT_NE(MessageOf(box).find(L"May 2020"), std::wstring::npos);
        EXPECT_FALSE(fs::exists(ViewerLog)) << "not before the answer, and not after a No";
        user.Answer(box, answer);
        EXPECT_EQ(user.WaitForEnd(), 3U);
    }
    EXPECT_TRUE(ViewerWasAsked());
    EXPECT_EQ(BytesOf(LocalInfo), local);
}

}  // namespace
}  // namespace mip
