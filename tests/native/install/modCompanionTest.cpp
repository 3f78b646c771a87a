#include <gtest/gtest.h>

#include "app/modPdf.h"
#include "install/modCompanion.h"
#include "install/modShortcut.h"
#include "tests/native/install/Workshop.h"

namespace mip {
namespace {

constexpr wchar_t LinkSetup[] = L"D:\\programs\\manual_link\\setup.exe";
constexpr wchar_t LinkLog[] = L"C:\\Program Files\\Vantor\\Korvex\\Link\\setup.log";

struct LogCase {
    const char* Label;
    std::optional<std::string> Log;
    bool Succeeds;
    bool LogStays;
    bool OldLogIsOpen = false;
};

class SetupLog : public testing::TestWithParam<LogCase> {};

TEST_P(SetupLog, OfThisRunDecides) {
    Workshop workshop;
    workshop.Windows.Tree.PutFile(LinkSetup);
    workshop.Windows.Tree.PutFile(LinkLog, "0\r\n").OpenHandles = GetParam().OldLogIsOpen ? 1 : 0;
    workshop.Windows.Processes.On(LinkSetup, [&](const std::wstring&) {
        workshop.Windows.Clock.Time += std::chrono::seconds(1);
        if (GetParam().Log) {
            workshop.Windows.Tree.PutFile(LinkLog, *GetParam().Log).OpenHandles = GetParam().OldLogIsOpen ? 1 : 0;
        }
        return ScriptedEnd{};
    });

    EXPECT_EQ(InstallLinkProgram(workshop.Run, LinkSetup), GetParam().Succeeds);

    EXPECT_EQ(workshop.Windows.Processes.StartedHidden.back(), std::wstring(LinkSetup) + L" 1");
    EXPECT_EQ(workshop.Windows.Tree.HasFile(LinkLog), GetParam().LogStays);
}

INSTANTIATE_TEST_SUITE_P(All, SetupLog,
                         testing::Values(LogCase{"Good", "copying\r\n0\r\n", true, false},
                                         LogCase{"GoodAfterErrors", "error 5\r\n0", true, false},
                                         LogCase{"Failed", "0\r\n3\r\n", false, false},
                                         LogCase{"NotANumber", "done\r\n", false, true},
                                         LogCase{"Empty", "", false, true},
                                         LogCase{"OnlyThatOfAnEarlierRun", std::nullopt, false, false},
                                         LogCase{"OnlyAnEarlierOneThatStays", std::nullopt, false, true, true},
                                         LogCase{"OverAnEarlierOneThatStays", "0\r\n", true, true, true}),
                         [](const auto& testCase) { return testCase.param.Label; });

TEST(Companions, SilentSwitchesAndLogFolders) {
    Workshop workshop;
    workshop.Windows.Tree.PutFile(L"D:\\programs\\View\\setup.exe");
    workshop.Windows.Processes.On(L"D:\\programs\\View\\setup.exe", [&](const std::wstring&) {
        workshop.Windows.Registry.Put(Hive::LocalMachine, L"SOFTWARE\\Vantor\\Korvex\\VantorView", L"InstallDir",
                                      L"C:\\My View");
        workshop.Windows.Tree.PutFile(L"C:\\My View\\setup.log", "0\r\n");
        return ScriptedEnd{};
    });
    EXPECT_TRUE(InstallViewerProgram(workshop.Run, L"D:\\programs\\View\\setup.exe"));
    EXPECT_TRUE(InstallManagerProgram(workshop.Run, L"D:\\programs\\man_manager\\setup.exe"));
    EXPECT_EQ(workshop.Windows.Processes.StartedHidden,
              (std::vector<std::wstring>{L"D:\\programs\\View\\setup.exe /VERYSILENT /SP-",
                                         L"D:\\programs\\man_manager\\setup.exe /VERYSILENT /SP-"}));
    EXPECT_EQ(workshop.Run.Paths.ViewerExePath, L"C:\\My View\\VBrowser.exe") << "where its setup put it";
}

TEST(Companions, SetupThatLosesThePathsHasFailed) {
    Workshop workshop;
    workshop.Windows.Processes.On(L"D:\\programs\\man_manager\\setup.exe", [&](const std::wstring&) {
        workshop.Windows.Registry.Put(Hive::LocalMachine, L"SOFTWARE\\Vantor\\Korvex\\ManualLink", L"InstallDir", L"");
        return ScriptedEnd{};
    });
    EXPECT_FALSE(InstallManagerProgram(workshop.Run, L"D:\\programs\\man_manager\\setup.exe"));
    EXPECT_EQ(workshop.Run.Paths.UnZipTempPath, L"C:\\Vantor\\UnZipTemp");
}

TEST(Companions, ManagerShortcutIsMadeOnceAndOnlyWhenAskedFor) {
    Workshop workshop;
    workshop.Windows.Shell.SpecialFolders[2] = L"C:\\Menu";
    workshop.Windows.Tree.PutFolder(L"C:\\Menu");
    const auto setUp = [&] { return InstallManagerProgram(workshop.Run, L"D:\\programs\\man_manager\\setup.exe"); };
    EXPECT_TRUE(setUp());
    EXPECT_TRUE(workshop.Windows.Shell.Shortcuts.empty());

    workshop.Run.Settings.ShortcutIconFlag = 1;
    EXPECT_TRUE(setUp());
    const SavedShortcut& saved = workshop.Windows.Shell.Shortcuts.at(L"C:\\Menu\\message 43.lnk");
    const std::vector<std::pair<std::wstring, std::wstring>> expected{{L"TargetPath", L"C:\\Vantor\\Manager.exe"},
                                                                      {L"Arguments", L""},
                                                                      {L"WorkingDirectory", L"C:\\"},
                                                                      {L"Description", L""},
                                                                      {L"IconLocation", L""},
                                                                      {L"Hotkey", L""}};
    ASSERT_EQ(saved.Properties.size(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i) {
        EXPECT_EQ(std::pair(saved.Properties[i].Name, saved.Properties[i].Value), expected[i]);
    }
    EXPECT_EQ(saved.WindowStyle, 1);

    workshop.Windows.Shell.Shortcuts.clear();
    EXPECT_TRUE(setUp());
    EXPECT_TRUE(workshop.Windows.Shell.Shortcuts.empty()) << "an existing shortcut is never replaced";
}

TEST(Companions, ManagerIsSetUpOnlyWhenOlderAndThenStamped) {
    Workshop workshop;
    ASSERT_TRUE(workshop.Install());
    EXPECT_TRUE(workshop.Windows.Processes.StartedHidden.empty());
    EXPECT_FALSE(workshop.Windows.Tree.HasFile(L"C:\\Vantor\\mam_man.fdf"));

    workshop.Windows.Tree.Find(L"C:\\Vantor\\Manager.exe")->Modified -= std::chrono::hours(1);
    workshop.Windows.FileVersions.Put(L"C:\\Vantor\\Manager.exe", {0x00020001, 0x00000007});
    workshop.Windows.Tree.PutFile(L"C:\\Vantor\\mam_man.fdf", "an older and much longer stamp" + std::string(500, ' '),
                                  attributes::ReadOnly);
    ASSERT_TRUE(workshop.Install());
    EXPECT_TRUE(workshop.Run.Outcome.ManagerInstalled);
    EXPECT_EQ(workshop.Windows.Tree.BytesOf(L"C:\\Vantor\\mam_man.fdf"),
              "%FDF-1.2\r\n1 0 obj\r\n<<\r\n/FDF << /Fields [\r\n<< /V (Ver 2.1.7)/T (ver_mam_man)>> ]\r\n"
              "/F (./message 60) >>\r\n>>\r\nendobj\r\ntrailer\r\n<<\r\n/Root 1 0 R\r\n\r\n>>\r\n%%EOF\r\n");

    workshop.Windows.Tree.Find(L"C:\\Vantor\\Manager.exe")->Modified += std::chrono::hours(1);
    workshop.Windows.Tree.Erase(L"C:\\Vantor\\mam_man.fdf");
    ASSERT_TRUE(workshop.Install());
    EXPECT_FALSE(workshop.Run.Outcome.ManagerInstalled);
    EXPECT_TRUE(workshop.Windows.Tree.HasFile(L"C:\\Vantor\\mam_man.fdf")) << "a run ended before it was written";
}

TEST(Companions, UserMayGoOnWithoutAProgramThatFailed) {
    Workshop workshop;
    workshop.Windows.Tree.PutFile(LinkSetup);
    workshop.Windows.MessageBoxes.Answers = {boxes::AnswerYes};
    EXPECT_TRUE(workshop.Install());
    EXPECT_EQ(workshop.Windows.MessageBoxes.Shown,
              (std::vector<ShownBox>{{L"message 90message 91", 308, L"message 34"}}));
}

}  // namespace
}  // namespace mip
