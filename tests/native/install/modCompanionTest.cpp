#include <gtest/gtest.h>

#include "app/modPdf.h"
#include "install/modCompanion.h"
#include "install/modShortcut.h"
#include "tests/native/install/DiscWorkshop.h"

namespace mip {
namespace {

constexpr wchar_t LinkSetup[] = L"D:\\programs\\manual_link\\setup.exe";
constexpr wchar_t ManagerSetup[] = L"D:\\programs\\man_manager\\setup.exe";
constexpr wchar_t LinkLog[] = L"C:\\Program Files\\Vantor\\Korvex\\Link\\setup.log";

TEST(Companions, TheSetupLogOfThisRunDecides) {
    const struct {
        const char* Label;
        std::optional<std::string> Log;
        bool Succeeds = false;
        bool LogStays = false;
        int Handles = 0;  ///< that hold the log, and did so before
    } cases[] = {{"good", "copying\r\n0\r\n", true},
                 {"good after errors", "error 5\r\n0", true},
                 {"failed", "0\r\n3\r\n"},
                 {"not a number", "done\r\n", false, true},
                 {"empty", "", false, true},
                 {"only that of an earlier run", std::nullopt},
                 {"only an earlier one that stays", std::nullopt, false, true, 1},
                 {"over an earlier one that stays", "0\r\n", true, true, 1}};
    for (const auto& given : cases) {
        SCOPED_TRACE(given.Label);
        DiscWorkshop shop;
        shop.Tree.PutFile(LinkSetup);
        shop.Tree.PutFile(LinkLog, "0\r\n").OpenHandles = given.Handles;
        shop.Processes.On(LinkSetup, [&](const std::wstring&) {
            shop.Clock.Time += std::chrono::seconds(1);
            if (given.Log) {
                shop.Tree.PutFile(LinkLog, *given.Log).OpenHandles = given.Handles;
            }
            return ScriptedEnd{};
        });
        EXPECT_EQ(InstallLinkProgram(shop.Program(), LinkSetup), given.Succeeds);
        EXPECT_EQ(shop.Processes.StartedHidden.back(), std::wstring(LinkSetup) + L" 1");
        EXPECT_EQ(shop.Tree.HasFile(LinkLog), given.LogStays);
    }
}

TEST(Companions, SilentSwitchesAndLogFolders) {
    DiscWorkshop shop;
    shop.Tree.PutFile(L"D:\\programs\\View\\setup.exe");
    shop.Processes.On(L"D:\\programs\\View\\setup.exe", [&](const std::wstring&) {
        shop.Registry.Put(Hive::LocalMachine, L"SOFTWARE\\Vantor\\Korvex\\VantorView", L"InstallDir", L"C:\\My View");
        shop.Tree.PutFile(L"C:\\My View\\setup.log", "0\r\n");
        return ScriptedEnd{};
    });
    EXPECT_TRUE(InstallViewerProgram(shop.Program(), L"D:\\programs\\View\\setup.exe"));
    EXPECT_TRUE(InstallManagerProgram(shop.Program(), ManagerSetup));
    EXPECT_EQ(shop.Processes.StartedHidden,
              (std::vector<std::wstring>{L"D:\\programs\\View\\setup.exe /VERYSILENT /SP-",
                                         L"D:\\programs\\man_manager\\setup.exe /VERYSILENT /SP-"}));
    EXPECT_EQ(shop.Program().Paths.ViewerExePath, L"C:\\My View\\VBrowser.exe") << "where its setup put it";
}

TEST(Companions, SetupThatLosesThePathsHasFailed) {
    DiscWorkshop shop;
    shop.Processes.On(ManagerSetup, [&](const std::wstring&) {
        shop.Registry.Put(Hive::LocalMachine, L"SOFTWARE\\Vantor\\Korvex\\ManualLink", L"InstallDir", L"");
        return ScriptedEnd{};
    });
    EXPECT_FALSE(InstallManagerProgram(shop.Program(), ManagerSetup));
    EXPECT_EQ(shop.Program().Paths.UnZipTempPath, L"C:\\Vantor\\UnZipTemp");
}

TEST(Companions, ManagerShortcutIsMadeOnceAndOnlyWhenAskedFor) {
    DiscWorkshop shop;
    shop.Shell.SpecialFolders[2] = L"C:\\Menu";
    const auto setUp = [&] { return InstallManagerProgram(shop.Program(), ManagerSetup); };
    EXPECT_TRUE(setUp());
    EXPECT_EQ(shop.Program().Log.Text().find(L"making a shortcut: "), std::wstring::npos);

    shop.Program().Settings.ShortcutIconFlag = 1;
    EXPECT_TRUE(setUp()) << "without a menu";
    EXPECT_NE(shop.Program().Log.Text().find(L"making a shortcut: "), std::wstring::npos);
    shop.Tree.PutFolder(L"C:\\Menu");
    EXPECT_TRUE(setUp());
    const SavedShortcut& saved = shop.Shell.Shortcuts.at(L"C:\\Menu\\message 43.lnk");
    std::wstring properties;
    for (const auto& property : saved.Properties) {
        properties += property.Name + L"=" + property.Value + L"|";
    }
    EXPECT_EQ(properties,
              L"TargetPath=C:\\Vantor\\Manager.exe|Arguments=|WorkingDirectory=C:\\|Description=|"
              L"IconLocation=|Hotkey=|");
    EXPECT_EQ(saved.WindowStyle, 1);

    shop.Shell.Shortcuts.clear();
    EXPECT_TRUE(setUp());
    EXPECT_TRUE(shop.Shell.Shortcuts.empty()) << "an existing shortcut is never replaced";
}

TEST(Companions, ManagerIsSetUpOnlyWhenOlderAndThenStamped) {
    DiscWorkshop shop;
    ASSERT_TRUE(shop.Install());
    EXPECT_TRUE(shop.Processes.StartedHidden.empty());
    EXPECT_FALSE(shop.Tree.HasFile(L"C:\\Vantor\\mam_man.fdf"));

    shop.Tree.Find(L"C:\\Vantor\\Manager.exe")->Modified -= std::chrono::hours(1);
    shop.FileVersions.Put(L"C:\\Vantor\\Manager.exe", {0x00020001, 0x00030007});
    EXPECT_EQ(GetFileVersionNumbers(shop.Platform, L"C:\\Vantor\\Manager.exe"), (FileVersionNumbers{2, 1, 3, 7}));
    shop.Tree.PutFile(L"C:\\Vantor\\mam_man.fdf", "an older and much longer stamp" + std::string(500, ' '),
                      attributes::ReadOnly);
    ASSERT_TRUE(shop.Install());
    EXPECT_TRUE(shop.Program().Outcome.ManagerInstalled);
    EXPECT_NE(shop.Program().Log.Text().find(L"\tmanager\t\tset up\r\n"), std::wstring::npos);
    EXPECT_NE(shop.Program().Log.Text().find(L"\tversion stamp\t\twritten\r\n"), std::wstring::npos);
    EXPECT_EQ(shop.AccessControl.ListOf(L"C:\\Vantor\\mam_man.fdf").size(), 1U);
    EXPECT_EQ(shop.Tree.BytesOf(L"C:\\Vantor\\mam_man.fdf"),
              "%FDF-1.2\r\n1 0 obj\r\n<<\r\n/FDF << /Fields [\r\n<< /V (Ver 2.1.7)/T (ver_mam_man)>> ]\r\n"
              "/F (./message 60) >>\r\n>>\r\nendobj\r\ntrailer\r\n<<\r\n/Root 1 0 R\r\n\r\n>>\r\n%%EOF\r\n");

    shop.Tree.Find(L"C:\\Vantor\\Manager.exe")->Modified += std::chrono::hours(1);
    shop.Tree.Erase(L"C:\\Vantor\\mam_man.fdf");
    ASSERT_TRUE(shop.Install());
    EXPECT_FALSE(shop.Program().Outcome.ManagerInstalled);
    ASSERT_TRUE(shop.Tree.HasFile(L"C:\\Vantor\\mam_man.fdf")) << "a run ended before it was written";
    const FileTime written = shop.Tree.Find(L"C:\\Vantor\\mam_man.fdf")->Modified;
    ASSERT_TRUE(shop.Install());
    EXPECT_EQ(shop.Tree.Find(L"C:\\Vantor\\mam_man.fdf")->Modified, written) << "it said so already";
}

TEST(Companions, UserMayGoOnWithoutAProgramThatFailed) {
    DiscWorkshop shop;
    shop.Tree.PutFile(LinkSetup);
    shop.Tree.PutFile(L"D:\\programs\\View\\setup.exe");
    shop.MessageBoxes.Answers = {boxes::AnswerYes, boxes::AnswerYes};
    EXPECT_TRUE(shop.Install());
    EXPECT_NE(shop.Program().Log.Text().find(L"\tView\t\tfailed\r\n"), std::wstring::npos);
    EXPECT_EQ(shop.MessageBoxes.Shown, std::vector(2, ShownBox{L"message 90message 91", 308, L"message 34"}));
}

}  // namespace
}  // namespace mip
