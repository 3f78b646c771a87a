#include "startup/modMain.h"

#include <gtest/gtest.h>

#include <functional>

#include "app/modSysParameter.h"
#include "screens/AgreementScreen.h"
#include "tests/native/fakes/Workshop.h"
#include "text/TextTools.h"

namespace mip {
namespace {

using Arrange = std::function<void(Workshop&)>;

struct StartCase {
    const char* Label;
    Arrange Given;
    std::wstring Text;                                 ///< of the box, or the result screen's first text
    std::optional<std::uint32_t> Exit = std::nullopt;  ///< set when the process ends without a screen
};

/// Every way in which a start fails, in the order of the checks: each case leaves the later checks' faults in place.
std::vector<StartCase> FailingStarts() {
    const Arrange managerRuns = [](auto& shop) { shop.Processes.Running = {L"a.exe", L"Manager.exe"}; };
    const Arrange readOnly = [](auto& shop) { shop.Tree.Find(Workshop::MdbPath)->Attributes = attributes::ReadOnly; };
    const Arrange refused = [=](auto& shop) {
        readOnly(shop);
        shop.Tree.Find(Workshop::MdbPath)->Bytes = "no catalogue";
    };
    const Arrange both = [=](auto& shop) { managerRuns(shop), refused(shop); };
    return {
        {"settings missing", [](auto& shop) { shop.Tree.Erase(Workshop::SettingsFile); }, L"System Parameter File None",
         1},
        {"number missing", [](auto& shop) { shop.PutSettings("ShortcutIcon=0", ""); }, L"No System Data", 1},
        {"database missing", [=](auto& shop) { both(shop), shop.Tree.Erase(Workshop::MdbPath); }, L"message 19"},
        {"manager running", both, L"message 70"},
        {"lock file without process list",
         [](auto& shop) {
             shop.Processes.Running.reset();
             shop.PutSettings("kvx3.mdb", "mdbfile.mdb");
             shop.Tree.PutFile(L"C:\\Vantor\\mdbfile.mdb");
             shop.Tree.PutFile(L"C:\\Vantor\\ldbfile.ldb");
         },
         L"message 70"},
        {"capital database name is its own lock file",
         [](auto& shop) {
             shop.Processes.Running.reset();
             shop.PutSettings("kvx3.mdb", "KVX3.MDB");
         },
         L"message 70"},
        {"database not opened", refused, L"message 20"},
        {"read-only", readOnly, L"message 67"},
        {"unexpected error", [](auto& shop) { shop.Run->Screens.Fail = true; },
         L"Unexpected error: window failed with code 5\r\nno window", 1},
    };
}

TEST(StartUp, EachFailureIsShownAndEndsWithOne) {
    for (const StartCase& given : FailingStarts()) {
        SCOPED_TRACE(given.Label);
        Workshop shop;
        given.Given(shop);
        shop.Run->Start();
        EXPECT_EQ(shop.Run->ExitCode, given.Exit);
        EXPECT_EQ(shop.Program().Outcome.ExitCode, ExitCode::CouldNotStart);
        EXPECT_EQ(shop.OpenConnections(), given.Text == L"message 67" ? 1 : 0);
        const std::vector<ShownBox> boxes(given.Exit ? 1 : 0, {given.Text, 48, L"Manual Install Program"});
        EXPECT_EQ(shop.MessageBoxes.Shown, boxes);
        EXPECT_EQ(shop.Run->Screens.Shown, std::vector<std::string>(given.Exit ? 0 : 1, "result"));
        EXPECT_EQ(shop.Program().Outcome.ResultMessage, given.Exit ? L"" : given.Text);
        EXPECT_EQ(shop.Program().Outcome.ResultSubMessage, given.Exit ? L"" : L"message 24");
    }
}

TEST(StartUp, TextsStayWhenTheDiscIsTakenOut) {
    Workshop shop;
    shop.Tree.PutFile(L"D:\\programs\\setup\\SysDir\\Licence_09.txt", "Terms");
    shop.Run->Start();
    shop.Tree.Erase(L"D:\\programs");
    EXPECT_EQ(GetMessageText(shop.Program(), 24), L"message 24");
    EXPECT_EQ(GetMessageText(shop.Program(), 96), L"message 96");
    EXPECT_EQ(LoadAgreementText(shop.Program()), L"Terms\r\n");
}

TEST(StartUp, QuietRunLogsTheFailureAndShowsNothing) {
    std::vector<StartCase> cases = FailingStarts();
    cases.push_back({"no diagnostic program", [](auto& shop) { shop.Tree.Erase(L"C:\\Vantor\\KVX3.exe"); },
                     L"diagnostic program is not installed", 3});
    for (const StartCase& given : cases) {
        SCOPED_TRACE(given.Label);
        Workshop shop;
        given.Given(shop);
        shop.Run->Start({L"/SILENT", L"/ACCEPT", L"/LOG=C:\\mip.log"});
        EXPECT_EQ(shop.Run->ExitCode, given.Exit.value_or(1));
        EXPECT_TRUE(shop.MessageBoxes.Shown.empty());
        EXPECT_TRUE(shop.Run->Screens.Shown.empty());
        EXPECT_TRUE(shop.Browsers.Started.empty());
        EXPECT_NE(shop.LogText().find("\tend\t\texit code " + std::to_string(given.Exit.value_or(1))),
                  std::string::npos);
        EXPECT_TRUE(shop.LogText().starts_with("2024-05-06 07:08:09\tstart-up\t\tstarted\r\n"));
        const std::string text = ToUtf8(ReplaceAll(given.Text, L"\r\n", L"  ") + (given.Exit ? L"" : L" message 24"));
        EXPECT_NE(shop.LogText().find("\tstart-up\t\t" + std::string(given.Exit == 3 ? "the " : "") + text),
                  std::string::npos)
            << shop.LogText();
    }
}

TEST(StartUp, AnUnforeseenErrorAfterAQuietInstallationIsNoFailedStart) {
    Workshop shop;
    shop.Run->Screens.Fail = true;
    shop.Program().Outcome.RunFinished = true;
    shop.Run->Start({L"/SILENT", L"/ACCEPT"});
    EXPECT_EQ(shop.Run->ExitCode, 4u);
    EXPECT_NE(shop.Program().Log.Text().find(L"starting up, or running quietly"), std::wstring::npos);
}

TEST(StartUp, ArgumentsChooseTheFirstScreen) {
    const struct {
        std::vector<std::wstring> Arguments;
        std::vector<std::string> Screens;  ///< none in a run that shows nothing and ends by itself
        std::optional<std::uint32_t> Exit = std::nullopt;
    } cases[] = {{{}, {"menu"}},
                 {{L"/ACCEPT"}, {"menu"}},
                 {{L"/CHECK"}, {"maintenance"}},
                 {{L"/SILENT", L"/CHECK"}, {"maintenance"}},
                 {{L"/SILENT", L"/ACCEPT"}, {"installation"}},
                 {{L"/VERYSILENT", L"/REMOVE=A1"}, {}, 1},
                 {{L"/VERYSILENT", L"/ACCEPT"}, {}, 4}};
    for (const auto& given : cases) {
        Workshop shop;
        shop.Run->Start(given.Arguments);
        EXPECT_EQ(shop.Run->Screens.Shown, given.Screens);
        EXPECT_EQ(shop.Run->ExitCode, given.Exit);
        EXPECT_EQ(shop.OpenConnections(), given.Exit ? 0 : 1);
        EXPECT_EQ(shop.Program().WindowTitle, given.Exit == 4u ? L"message 34" : L"");
        EXPECT_EQ(shop.Program().Outcome.ResultMessage, given.Exit == 4u ? L"message 18" : L"");
    }
}

TEST(StartUp, HelpIsGivenAndABadSwitchNamedAndLoggedUnlessThisIsASecondInstance) {
    const wchar_t help[] =
        L"message 108\r\n\r\nmessage 109\r\nmessage 110\r\nmessage 111\r\nmessage 112\r\nmessage 113\r\n"
        L"message 114\r\nmessage 115\r\nmessage 116";
    const Arrange nothing = [](Workshop&) {};
    const Arrange wordless = [](auto& shop) { shop.Tree.Erase(Workshop::Messages); };
    const Arrange second = [](auto& shop) { shop.Computer.PreviousInstance = true; };
    const struct {
        Arrange Given;
        std::vector<std::wstring> Arguments;
        std::wstring Box;  ///< "" when none is shown
        std::string Log;
    } cases[] = {
        {nothing, {L"/LOG=C:\\mip.log", L"/FASTER"}, L"message 96/FASTER", "message 96/FASTER"},
        {wordless, {L"/FASTER"}, L"Unknown or incomplete switch: /FASTER", ""},
        {nothing, {L"/SILENT", L"/LOG=C:\\mip.log"}, L"", "message 96/SILENT"},
        {nothing, {L"/LOG=D:\\mip.log"}, L"Log file cannot be written: D:\\mip.log", ""},
        {nothing, {L"/?"}, help, ""},
        {second, {L"/FASTER", L"/LOG=C:\\mip.log"}, L"", ""},
    };
    for (const auto& given : cases) {
        Workshop shop;
        given.Given(shop);
        shop.Run->Start(given.Arguments);
        EXPECT_EQ(shop.Run->ExitCode, given.Arguments[0] == L"/?" ? 0u : 1u);
        EXPECT_EQ(shop.Computer.PreviousInstanceShown, shop.Computer.PreviousInstance ? 1 : 0);
        const auto& shown = shop.MessageBoxes.Shown;
        EXPECT_EQ(shown.empty() ? L"" : shown.at(0).Text, given.Box);
        EXPECT_EQ(shop.Tree.HasFile(L"C:\\mip.log"), !given.Log.empty());
        EXPECT_TRUE(given.Log.empty() || shop.LogText().find(given.Log) != std::string::npos) << given.Log;
    }
}

TEST(StartUp, DiscRootIsThreeFoldersUp) {
    const std::array<std::wstring, 3> cases[] = {
        {L"D:\\programs\\setup", L"D:\\", L"D:\\"},
        {L"D:\\", L"D:\\", L"D:\\"},
        {L"D:\\a\\b\\c\\d", L"D:\\a\\", L"D:\\"},
        {L"\\\\server\\discs\\one\\programs\\setup", L"\\\\server\\discs\\", L"\\\\server\\discs\\"}};
    for (const auto& [folder, discRoot, second] : cases) {
        Workshop shop;
        shop.Computer.Folder = folder;
        shop.Tree.AddDrive({L"\\\\server\\discs"});
        shop.Tree.PutFile(folder + L"\\SysDir\\SysParameter.ini", shop.Tree.BytesOf(Workshop::SettingsFile));
        shop.Run->Start();
        EXPECT_EQ(shop.Program().Paths.DiscRootPath, discRoot) << std::string(folder.begin(), folder.end());
        EXPECT_EQ(shop.Program().Paths.SecondDiscBase, second);
    }
}

TEST(StartUp, LearnsLanguageUserAndUsersGroup) {
    for (const bool isChosen : {false, true}) {
        Workshop shop;
        shop.Computer.Language = L"0411";
        shop.Run->Start(isChosen ? std::vector<std::wstring>{L"/LANG=04s"} : std::vector<std::wstring>{});
        const Identity& identity = shop.Program().Identity;
        EXPECT_EQ(identity.LanguageCode, isChosen ? L"04S" : L"11");
        EXPECT_EQ(identity.UserName, L"Mechanic");
        EXPECT_TRUE(identity.FolderTrustee.starts_with(std::wstring(L"Users\0", 6)));
        EXPECT_EQ(identity.FullAccessTrustee, identity.FolderTrustee);
        EXPECT_EQ(shop.Program().ProcessNames, (std::vector<std::wstring>{L"", L"System", L"explorer.exe"}));
    }
}

TEST(StartUp, InterruptedUpgradeIsUndoneOnlyWithoutTheManager) {
    for (const bool managerRuns : {false, true}) {
        SCOPED_TRACE(managerRuns);
        Workshop shop;
        const std::string rows = shop.Tree.BytesOf(Workshop::MdbPath);
        shop.Tree.PutFile(L"C:\\Vantor\\BACK_kvx3.mdb", rows);
        shop.Tree.PutFile(L"C:\\Vantor\\kvx3.mdb.upgrade", "1");
        shop.Tree.Erase(Workshop::MdbPath);
        if (managerRuns) {
            shop.Processes.Running = {L"Manager.exe"};
        }
        shop.Run->Start();
        EXPECT_EQ(shop.Run->Screens.Shown, std::vector<std::string>{managerRuns ? "result" : "menu"});
        EXPECT_EQ(shop.Tree.HasFile(Workshop::MdbPath), !managerRuns);
    }
}

TEST(StartPage, IsNotShownWithoutALocalFolderOrToWhoRefusesAnOlderDisc) {
    for (const bool isRefused : {false, true}) {
        Workshop shop;
        shop.Tree.Erase(L"C:\\Vantor\\KVX3.exe");
        if (isRefused) {
            shop.Tree.PutFile(L"C:\\man_info\\man_info_do.ci", "unreadable");
            shop.MessageBoxes.Answers = {boxes::AnswerNo};
        }
        shop.Tree.DriveOf(L"C:")->ReadOnly = true;
        shop.Run->Start();
        EXPECT_EQ(shop.Run->ExitCode, isRefused ? 3u : 1u);
        EXPECT_TRUE(shop.Browsers.Started.empty());
    }
}

TEST(EndOfProgram, TemporaryFolderGoesUnlessKept) {
    const std::wstring folder = L"C:\\Vantor\\UnZipTemp";
    for (const bool isKept : {false, true}) {
        Workshop shop;
        shop.Run->Start();
        shop.Tree.PutFile(folder + L"\\page.html");
        shop.Program().Outcome.ExitCode = ExitCode::FailedPartWay;
        EXPECT_THROW(EndProgram(shop.Program(), isKept ? TemporaryFolder::Keep : TemporaryFolder::Remove),
                     ProcessEnded);
        EXPECT_EQ(shop.OpenConnections(), 0);
        EXPECT_EQ(shop.Tree.HasFolder(folder), isKept);
        const std::wstring batch = L"D:\\programs\\setup\\SysDir\\RmDir.bat \"" + folder + L"\"";
        EXPECT_EQ(shop.Processes.StartedHidden, std::vector<std::wstring>(isKept ? 0 : 1, batch));
    }
}

void CheckFaultedStart(Workshop& shop, const std::map<std::wstring, std::string>& before) {
    const bool ended = shop.Run->ExitCode.has_value();
    EXPECT_NE(ended, shop.Run->Screens.Shown.size() == 1) << "a screen, or the end of the process";
    if (ended) {
        EXPECT_NE(shop.Run->ExitCode, 0u);
        EXPECT_EQ(shop.OpenConnections(), 0);
    }
    EXPECT_EQ(shop.Tree.Snapshot(Workshop::InstallDir), before) << "the library";
}

TEST(StartUp, SurvivesEveryFault) {
    for (const bool bare : {false, true}) {
        for (const bool lasting : {false, true}) {
            std::size_t calls = 1;
            for (;; ++calls) {
                SCOPED_TRACE(calls);
                Workshop shop;
                if (bare) {
                    shop.Tree.Erase(L"C:\\Vantor\\KVX3.exe");
                }
                const auto before = shop.Tree.Snapshot(Workshop::InstallDir);
                lasting ? shop.Faults.FailFrom(calls) : shop.Faults.FailCall(calls);
                ASSERT_NO_THROW(shop.Run->Start());
                if (!shop.Faults.Hit()) {
                    break;
                }
                CheckFaultedStart(shop, before);
            }
            EXPECT_GT(calls, 30u);
        }
    }
}

}  // namespace
}  // namespace mip
