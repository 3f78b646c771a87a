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
    std::wstring Text;              ///< of the box, or the result screen's first text
    const char* Screen = "result";  ///< "" when the process ends without a screen
    std::optional<std::uint32_t> Exit = std::nullopt;
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
         L"System Parameter File None", "", 1},
        {"number missing", [](Workshop& shop) { shop.PutSettings("ShortcutIcon=1", ""); }, L"No System Data", "", 1},
        {"database missing", [=](Workshop& shop) { both(shop), noDatabase(shop); }, L"no database"},
        {"manager running", both, L"manager running"},
        {"lock file without process list",
         [](Workshop& shop) {
             shop.Windows.Processes.Running.reset();
             shop.Windows.Tree.PutFile(std::wstring(Library) + L"\\kvx3.ldb");
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
        if (*given.Screen == '\0') {
            const std::vector<ShownBox> expected{{given.Text, 48, L"Manual Install Program"}};
            EXPECT_EQ(shop.Windows.MessageBoxes.Shown, expected);
            EXPECT_TRUE(shop.Screens.Shown.empty());
        } else {
            EXPECT_EQ(shop.Screens.Shown, std::vector<std::string>{given.Screen});
            EXPECT_EQ(shop.Program.Outcome.ResultMessage, given.Text);
            EXPECT_EQ(shop.Program.Outcome.ResultSubMessage, L"stopped");
        }
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
                     L"diagnostic program is not installed", "", 3});
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

TEST(StartUp, ArgumentsChooseTheFirstScreen) {
    struct Case {
        std::vector<std::wstring> Arguments;
        std::vector<std::string> Screens;  ///< none in a run that shows nothing and ends by itself
        std::optional<std::uint32_t> Exit;
    };
    for (const Case& given : std::initializer_list<Case>{
             {{}, {"menu"}, {}},
             {{L"/ACCEPT"}, {"menu"}, {}},
             {{L"/CHECK"}, {"maintenance"}, {}},
             {{L"/SILENT", L"/CHECK"}, {"maintenance"}, {}},
             {{L"/SILENT", L"/ACCEPT"}, {"installation"}, {}},
             {{L"/VERYSILENT", L"/REMOVE=A1"}, {}, 1},
             {{L"/VERYSILENT", L"/ACCEPT"}, {}, 4},
         }) {
        Workshop shop;
        shop.Start(given.Arguments);
        EXPECT_EQ(shop.Screens.Shown, given.Screens);
        EXPECT_EQ(shop.ExitCode, given.Exit);
        EXPECT_EQ(*shop.Engine.OpenConnections, given.Exit ? 0 : 1);
    }
}

TEST(StartUp, BadSwitchIsNamedAndLogged) {
    Workshop shop;
    shop.Start({L"/LOG=C:\\mip.log", L"/FASTER"});
    EXPECT_EQ(shop.ExitCode, 1u);
    EXPECT_EQ(shop.Windows.MessageBoxes.Shown.at(0).Text, L"Bad switch: /FASTER");

    Workshop wordless;
    wordless.Windows.Tree.Erase(std::wstring(SysDir) + L"\\M09.ini");
    wordless.Start({L"/FASTER"});
    EXPECT_EQ(wordless.Windows.MessageBoxes.Shown.at(0).Text, L"Unknown or incomplete switch: /FASTER");

    Workshop silent;
    silent.Start({L"/SILENT", L"/LOG=C:\\mip.log"});
    EXPECT_EQ(silent.ExitCode, 1u);
    EXPECT_TRUE(silent.Windows.MessageBoxes.Shown.empty());
    EXPECT_NE(silent.LogText().find("switch: /SILENT"), std::string::npos);

    Workshop noLog;
    noLog.Start({L"/LOG=D:\\mip.log"});
    EXPECT_EQ(noLog.ExitCode, 1u);
    EXPECT_EQ(noLog.Windows.MessageBoxes.Shown.at(0).Text, L"Log file cannot be written: D:\\mip.log");
}

TEST(StartUp, SecondInstanceEndsSilentlyBeforeAnythingElse) {
    Workshop shop;
    shop.Windows.Computer.PreviousInstance = true;
    shop.Start({L"/FASTER", L"/LOG=C:\\mip.log"});
    EXPECT_TRUE(shop.ExitCode);
    EXPECT_TRUE(shop.Windows.MessageBoxes.Shown.empty());
    EXPECT_FALSE(shop.Windows.Tree.HasFile(L"C:\\mip.log"));
}

TEST(StartUp, ManagerUnderAnotherLetterCaseIsNotSeen) {
    Workshop shop;
    shop.Windows.Processes.Running = {L"MANAGER.EXE"};
    shop.Start();
    EXPECT_EQ(shop.Screens.Shown, std::vector<std::string>{"menu"});
    EXPECT_EQ(shop.Program.ProcessNames, (std::vector<std::wstring>{L"", L"MANAGER.EXE"}));
}

TEST(StartUp, ReadOnlyDatabaseStaysOpen) {
    Workshop shop;
    shop.Windows.Tree.Find(database)->Attributes = attributes::ReadOnly;
    shop.Start();
    EXPECT_EQ(*shop.Engine.OpenConnections, 1);
}

TEST(StartUp, DiscRootIsThreeFoldersUp) {
    const std::vector<std::array<std::wstring, 3>> cases{
        {L"D:\\programs\\setup", L"D:\\", L"D:\\"},
        {L"D:\\", L"D:\\", L"D:\\"},
        {L"D:\\a", L"D:\\", L"D:\\"},
        {L"D:\\a\\b\\c\\d", L"D:\\a\\", L"D:\\"},
        {L"\\\\server\\discs\\one\\programs\\setup", L"\\\\server\\discs\\", L"\\\\server\\discs\\"},
    };
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

TEST(StartUp, LockFileNameReplacesEveryMdb) {
    Workshop shop;
    shop.PutSettings("kvx3.mdb", "mdbfile.mdb");
    shop.Start();
    EXPECT_EQ(shop.Program.Paths.MdbPath, std::wstring(Library) + L"\\mdbfile.mdb");
    EXPECT_EQ(shop.Program.Paths.LdbPath, std::wstring(Library) + L"\\ldbfile.ldb");
}

TEST(StartUp, LearnsLanguageUserAndUsersGroup) {
    Workshop shop;
    shop.Windows.Computer.Language = L"0411";
    shop.Start();
    EXPECT_EQ(shop.Program.Identity.LanguageCode, L"11");
    EXPECT_EQ(shop.Program.Identity.UserName, L"Mechanic");
    EXPECT_TRUE(shop.Program.Identity.FolderTrustee.starts_with(std::wstring(L"Users\0", 6)));
    EXPECT_EQ(shop.Program.Identity.FullAccessTrustee, shop.Program.Identity.FolderTrustee);

    Workshop overridden;
    overridden.Windows.Computer.Language = L"0411";
    overridden.Start({L"/LANG=04s"});
    EXPECT_EQ(overridden.Program.Identity.LanguageCode, L"04S");
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

TEST(StartUp, UnexpectedErrorBecomesABox) {
    Workshop shop;
    shop.Screens.Fail = true;
    shop.Start();
    EXPECT_EQ(shop.ExitCode, 1u);
    EXPECT_EQ(shop.Windows.MessageBoxes.Shown.at(0).Text, L"Unexpected error: no window");
}

/// A computer without the diagnostic program.
struct BareWorkshop : Workshop {
    BareWorkshop() { Windows.Tree.Erase(std::wstring(Library) + L"\\KVX3.exe"); }
};

TEST(StartPage, ViewerIsPreferredToTheBrowser) {
    BareWorkshop shop;
    shop.Start();
    EXPECT_EQ(shop.ExitCode, 3u);
    EXPECT_EQ(shop.Windows.Browsers.Started.at(0)->Navigated, std::vector<std::wstring>{L"D:\\index.html"});

    BareWorkshop withViewer;
    withViewer.Windows.Tree.PutFile(L"C:\\Program Files\\Vantor\\Korvex\\View\\VBrowser.exe");
    withViewer.Start();
    EXPECT_EQ(withViewer.Windows.Processes.StartedVisible,
              std::vector<std::wstring>{L"C:\\Program Files\\Vantor\\Korvex\\View\\VBrowser.exe D:\\index.html"});
    EXPECT_TRUE(withViewer.Windows.Browsers.Started.empty());
}

TEST(StartPage, WithoutAPageNothingIsShownOrCopied) {
    BareWorkshop shop;
    shop.Windows.Tree.Erase(L"D:\\index.html");
    shop.Start();
    EXPECT_EQ(shop.ExitCode, 3u);
    EXPECT_TRUE(shop.Windows.MessageBoxes.Shown.empty());
    EXPECT_TRUE(shop.Windows.Browsers.Started.empty());
    EXPECT_FALSE(shop.Windows.Tree.HasFolder(L"C:\\man_info"));
}

TEST(StartPage, WithoutALocalFolderTheProgramEndsAsNotStarted) {
    BareWorkshop shop;
    shop.Windows.Tree.DriveOf(L"C:")->ReadOnly = true;
    shop.Start();
    EXPECT_EQ(shop.ExitCode, 1u);
    EXPECT_TRUE(shop.Windows.Browsers.Started.empty());
}

TEST(StartPage, OpensOnlyWhenTheUserAgreesToOlderManuals) {
    for (const int answer : {boxes::AnswerYes, boxes::AnswerNo}) {
        BareWorkshop shop;
        shop.Windows.Tree.PutFolder(L"D:\\A1");
        shop.Windows.Tree.PutFile(L"D:\\programs\\setup\\man_info_do.ci", "Model,Name,,A1,,2010/04");
        shop.Windows.Tree.PutFile(L"C:\\man_info\\man_info_do.ci", "Model,Name,,A1,,2011/04");
        shop.Windows.MessageBoxes.Answers = {answer};
        shop.Start();
        EXPECT_EQ(shop.Windows.MessageBoxes.Shown.size(), 1u);
        EXPECT_EQ(shop.Windows.Browsers.Started.size(), answer == boxes::AnswerYes ? 1u : 0u);
        EXPECT_EQ(shop.ExitCode, 3u);
    }
}

TEST(EndOfProgram, TemporaryFolderGoesUnlessKept) {
    for (const TemporaryFolder given : {TemporaryFolder::Remove, TemporaryFolder::Keep}) {
        const bool isKept = given == TemporaryFolder::Keep;
        Workshop shop;
        shop.Start();
        shop.Windows.Tree.PutFile(std::wstring(Library) + L"\\UnZipTemp\\page.html");
        shop.Program.Outcome.ExitCode = ExitCode::FailedPartWay;
        EXPECT_THROW(EndProgram(shop.Program, given), ProcessEnded);
        EXPECT_EQ(*shop.Engine.OpenConnections, 0);
        EXPECT_EQ(shop.Windows.Tree.HasFolder(std::wstring(Library) + L"\\UnZipTemp"), isKept);
        const std::vector<std::wstring> batch{L"D:\\programs\\setup\\SysDir\\RmDir.bat \"" + std::wstring(Library) +
                                              L"\\UnZipTemp\""};
        EXPECT_EQ(shop.Windows.Processes.StartedHidden, isKept ? std::vector<std::wstring>{} : batch);
    }
}

void CheckFaultedStart(Workshop& shop, const std::map<std::wstring, std::string>& before) {
    const bool ended = shop.ExitCode.has_value();
    EXPECT_NE(ended, shop.Screens.Shown.size() == 1) << "a screen, or the end of the process";
    if (ended) {
        EXPECT_NE(shop.ExitCode, 0u);
        EXPECT_EQ(*shop.Engine.OpenConnections, 0);
    }
    auto after = shop.Windows.Tree.Snapshot(Library);
    EXPECT_EQ(after, before) << "the library";
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
