#include "startup/modMain.h"

#include <gtest/gtest.h>

#include <functional>

#include "app/modSysParameter.h"
#include "screens/AgreementScreen.h"
#include "tests/native/startup/Workshop.h"

namespace mip {
namespace {

using Arrange = std::function<void(Workshop&)>;

struct StartCase {
    const char* Label;
    Arrange Given;
    std::wstring Text;                                 ///< of the box, or the result screen's first text
    std::optional<std::uint32_t> Exit = std::nullopt;  ///< set when the process ends without a screen
};

const std::wstring database = std::wstring(Library) + L"\\kvx3.mdb";

/// Every way in which a start fails, in the order of the checks: each case leaves the later checks' faults in place.
std::vector<StartCase> FailingStarts() {
    const Arrange noDatabase = [](Workshop& shop) { shop.Windows.Tree.Erase(database); };
    const Arrange managerRuns = [](Workshop& shop) { shop.Windows.Processes.Running = {L"a.exe", L"Manager.exe"}; };
    const Arrange refused = [](Workshop& shop) { shop.Engine.Refuse = true; };
    const Arrange readOnly = [](Workshop& shop) {
        shop.Windows.Tree.Find(database)->Attributes = attributes::ReadOnly;
    };
    const Arrange both = [=](Workshop& shop) { managerRuns(shop), refused(shop), readOnly(shop); };
    return {
        {"settings missing",
         [](Workshop& shop) { shop.Windows.Tree.Erase(std::wstring(SysDir) + L"\\SysParameter.ini"); },
         L"System Parameter File None", 1},
        {"number missing", [](Workshop& shop) { shop.PutSettings("ShortcutIcon=1", ""); }, L"No System Data", 1},
        {"database missing", [=](Workshop& shop) { both(shop), noDatabase(shop); }, L"no database"},
        {"manager running", both, L"manager running"},
        {"lock file without process list",
         [](Workshop& shop) {
             shop.Windows.Processes.Running.reset();
             shop.PutSettings("kvx3.mdb", "mdbfile.mdb");
             shop.Windows.Tree.PutFile(std::wstring(Library) + L"\\mdbfile.mdb");
             shop.Windows.Tree.PutFile(std::wstring(Library) + L"\\ldbfile.ldb");
         },
         L"manager running"},
        {"capital database name is its own lock file",
         [](Workshop& shop) {
             shop.Windows.Processes.Running.reset();
             shop.PutSettings("kvx3.mdb", "KVX3.MDB");
         },
         L"manager running"},
        {"database not opened", [=](Workshop& shop) { refused(shop), readOnly(shop); }, L"not opened"},
        {"read-only", readOnly, L"read-only"},
        {"unexpected error", [](Workshop& shop) { shop.Screens.Fail = true; }, L"Unexpected error: no window", 1},
    };
}

TEST(StartUp, EachFailureIsShownAndEndsWithOne) {
    for (const StartCase& given : FailingStarts()) {
        SCOPED_TRACE(given.Label);
        Workshop shop;
        given.Given(shop);
        shop.Start();
        EXPECT_EQ(shop.ExitCode, given.Exit);
        EXPECT_EQ(shop.Program.Outcome.ExitCode, ExitCode::CouldNotStart);
        EXPECT_EQ(*shop.Engine.OpenConnections, given.Text == L"read-only" ? 1 : 0);
        const std::vector<ShownBox> boxes(given.Exit ? 1 : 0, {given.Text, 48, L"Manual Install Program"});
        EXPECT_EQ(shop.Windows.MessageBoxes.Shown, boxes);
        EXPECT_EQ(shop.Screens.Shown, std::vector<std::string>(given.Exit ? 0 : 1, "result"));
        EXPECT_EQ(shop.Program.Outcome.ResultMessage, given.Exit ? L"" : given.Text);
        EXPECT_EQ(shop.Program.Outcome.ResultSubMessage, given.Exit ? L"" : L"stopped");
    }
}

TEST(StartUp, TextsStayWhenTheDiscIsTakenOut) {
    Workshop shop;
    shop.Windows.Tree.PutFile(std::wstring(SysDir) + L"\\Licence_09.txt", "Terms");
    shop.Start();
    shop.Windows.Tree.Erase(SysDir);
    EXPECT_EQ(GetMessageText(shop.Program, 24), L"stopped");
    EXPECT_EQ(GetMessageText(shop.Program, 96), L"Bad switch: ");
    EXPECT_EQ(LoadAgreementText(shop.Program), L"Terms\r\n");
}

TEST(StartUp, QuietRunLogsTheFailureAndShowsNothing) {
    std::vector<StartCase> cases = FailingStarts();
    cases.push_back({"no diagnostic program",
                     [](Workshop& shop) { shop.Windows.Tree.Erase(std::wstring(Library) + L"\\KVX3.exe"); },
                     L"diagnostic program is not installed", 3});
    for (const StartCase& given : cases) {
        SCOPED_TRACE(given.Label);
        Workshop shop;
        given.Given(shop);
        shop.Start({L"/SILENT", L"/ACCEPT", L"/LOG=C:\\mip.log"});
        EXPECT_EQ(shop.ExitCode, given.Exit.value_or(1));
        EXPECT_TRUE(shop.Windows.MessageBoxes.Shown.empty());
        EXPECT_TRUE(shop.Screens.Shown.empty());
        EXPECT_TRUE(shop.Windows.Browsers.Started.empty());
        const std::string text(given.Text.begin(), given.Text.end());
        EXPECT_NE(shop.LogText().find("\tstart-up\t\t" + std::string(given.Exit == 3 ? "the " : "") + text),
                  std::string::npos)
            << shop.LogText();
    }
}

TEST(StartUp, AnUnforeseenErrorAfterAQuietInstallationIsNoFailedStart) {
    Workshop shop;
    shop.Screens.Fail = true;
    shop.Program.Outcome.RunFinished = true;
    shop.Start({L"/SILENT", L"/ACCEPT"});
    EXPECT_EQ(shop.ExitCode, 4u);
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
        shop.Start(given.Arguments);
        EXPECT_EQ(shop.Screens.Shown, given.Screens);
        EXPECT_EQ(shop.ExitCode, given.Exit);
        EXPECT_EQ(*shop.Engine.OpenConnections, given.Exit ? 0 : 1);
    }
}

TEST(StartUp, BadSwitchIsNamedAndLoggedUnlessThisIsASecondInstance) {
    const Arrange nothing = [](Workshop&) {};
    const Arrange wordless = [](Workshop& shop) { shop.Windows.Tree.Erase(std::wstring(SysDir) + L"\\M09.ini"); };
    const Arrange second = [](Workshop& shop) { shop.Windows.Computer.PreviousInstance = true; };
    const struct {
        Arrange Given;
        std::vector<std::wstring> Arguments;
        std::wstring Box;  ///< "" when none is shown
        std::string Log;
    } cases[] = {
        {nothing, {L"/LOG=C:\\mip.log", L"/FASTER"}, L"Bad switch: /FASTER", "switch: /FASTER"},
        {wordless, {L"/FASTER"}, L"Unknown or incomplete switch: /FASTER", ""},
        {nothing, {L"/SILENT", L"/LOG=C:\\mip.log"}, L"", "switch: /SILENT"},
        {nothing, {L"/LOG=D:\\mip.log"}, L"Log file cannot be written: D:\\mip.log", ""},
        {second, {L"/FASTER", L"/LOG=C:\\mip.log"}, L"", ""},
    };
    for (const auto& given : cases) {
        Workshop shop;
        given.Given(shop);
        shop.Start(given.Arguments);
        EXPECT_EQ(shop.ExitCode, 1u);
        EXPECT_EQ(shop.Windows.Computer.PreviousInstanceShown, shop.Windows.Computer.PreviousInstance ? 1 : 0);
        const auto& shown = shop.Windows.MessageBoxes.Shown;
        EXPECT_EQ(shown.empty() ? L"" : shown.at(0).Text, given.Box);
        EXPECT_EQ(shop.Windows.Tree.HasFile(L"C:\\mip.log"), !given.Log.empty());
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
        shop.Windows.Computer.Folder = folder;
        shop.Windows.Tree.AddDrive({L"\\\\server\\discs"});
        shop.Windows.Tree.PutFile(folder + L"\\SysDir\\SysParameter.ini",
                                  shop.Windows.Tree.BytesOf(std::wstring(SysDir) + L"\\SysParameter.ini"));
        shop.Start();
        EXPECT_EQ(shop.Program.Paths.DiscRootPath, discRoot) << std::string(folder.begin(), folder.end());
        EXPECT_EQ(shop.Program.Paths.SecondDiscBase, second);
    }
}

TEST(StartUp, LearnsLanguageUserAndUsersGroup) {
    for (const bool isChosen : {false, true}) {
        Workshop shop;
        shop.Windows.Computer.Language = L"0411";
        shop.Start(isChosen ? std::vector<std::wstring>{L"/LANG=04s"} : std::vector<std::wstring>{});
        const Identity& identity = shop.Program.Identity;
        EXPECT_EQ(identity.LanguageCode, isChosen ? L"04S" : L"11");
        EXPECT_EQ(identity.UserName, L"Mechanic");
        EXPECT_TRUE(identity.FolderTrustee.starts_with(std::wstring(L"Users\0", 6)));
        EXPECT_EQ(identity.FullAccessTrustee, identity.FolderTrustee);
    }
}

TEST(StartUp, InterruptedUpgradeIsUndoneOnlyWithoutTheManager) {
    for (const bool managerRuns : {false, true}) {
        SCOPED_TRACE(managerRuns);
        Workshop shop;
        const std::string rows = shop.Windows.Tree.BytesOf(database);
        shop.Windows.Tree.PutFile(std::wstring(Library) + L"\\BACK_kvx3.mdb", rows);
        shop.Windows.Tree.PutFile(std::wstring(database) + L".upgrade", "1");
        shop.Windows.Tree.Erase(database);
        if (managerRuns) {
            shop.Windows.Processes.Running = {L"Manager.exe"};
        }
        shop.Start();
        EXPECT_EQ(shop.Screens.Shown, std::vector<std::string>{managerRuns ? "result" : "menu"});
        EXPECT_EQ(shop.Windows.Tree.HasFile(database), !managerRuns);
    }
}

TEST(StartPage, WithoutALocalFolderTheProgramEndsAsNotStarted) {
    Workshop shop;
    shop.Windows.Tree.Erase(std::wstring(Library) + L"\\KVX3.exe");
    shop.Windows.Tree.DriveOf(L"C:")->ReadOnly = true;
    shop.Start();
    EXPECT_EQ(shop.ExitCode, 1u);
    EXPECT_TRUE(shop.Windows.Browsers.Started.empty());
}

TEST(EndOfProgram, TemporaryFolderGoesUnlessKept) {
    const std::wstring folder = std::wstring(Library) + L"\\UnZipTemp";
    for (const bool isKept : {false, true}) {
        Workshop shop;
        shop.Start();
        shop.Windows.Tree.PutFile(folder + L"\\page.html");
        shop.Program.Outcome.ExitCode = ExitCode::FailedPartWay;
        EXPECT_THROW(EndProgram(shop.Program, isKept ? TemporaryFolder::Keep : TemporaryFolder::Remove), ProcessEnded);
        EXPECT_EQ(*shop.Engine.OpenConnections, 0);
        EXPECT_EQ(shop.Windows.Tree.HasFolder(folder), isKept);
        const std::wstring batch = L"D:\\programs\\setup\\SysDir\\RmDir.bat \"" + folder + L"\"";
        EXPECT_EQ(shop.Windows.Processes.StartedHidden, std::vector<std::wstring>(isKept ? 0 : 1, batch));
    }
}

void CheckFaultedStart(Workshop& shop, const std::map<std::wstring, std::string>& before) {
    const bool ended = shop.ExitCode.has_value();
    EXPECT_NE(ended, shop.Screens.Shown.size() == 1) << "a screen, or the end of the process";
    if (ended) {
        EXPECT_NE(shop.ExitCode, 0u);
        EXPECT_EQ(*shop.Engine.OpenConnections, 0);
    }
    EXPECT_EQ(shop.Windows.Tree.Snapshot(Library), before) << "the library";
}

TEST(StartUp, SurvivesEveryFault) {
    for (const bool bare : {false, true}) {
        for (const bool lasting : {false, true}) {
            std::size_t calls = 1;
            for (;; ++calls) {
                SCOPED_TRACE(calls);
                Workshop shop;
                if (bare) {
                    shop.Windows.Tree.Erase(std::wstring(Library) + L"\\KVX3.exe");
                }
                const auto before = shop.Windows.Tree.Snapshot(Library);
                lasting ? shop.Windows.Faults.FailFrom(calls) : shop.Windows.Faults.FailCall(calls);
                ASSERT_NO_THROW(shop.Start());
                if (!shop.Windows.Faults.Hit()) {
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
