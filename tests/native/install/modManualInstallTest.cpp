#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <utility>

#include "app/Messages.h"
#include "install/modManualInstall.h"
#include "tests/native/install/DiscWorkshop.h"

namespace mip {
namespace {

using Row = DiscWorkshop::Row;

std::wstring Page(DiscWorkshop& shop, const std::wstring& path) {
    const std::string bytes = shop.Tree.BytesOf(L"C:\\Manuals\\" + path);
    return {bytes.begin(), bytes.end()};
}

std::wstring ArchiveOf(const std::wstring& pubNo) {
    return L"D:\\" + pubNo + L"\\install\\condense\\manual.zip";
}

TEST(Installation, InstallsUpdatesAndReplacesEveryManualOfTheDisc) {
    DiscWorkshop shop;
    shop.PutInstalledManual(L"AAAA1MM", 1);
    shop.PutInstalledManual(L"BBBB1MM", 4);
    shop.PutInstalledManual(L"CCCC0MM", 7);
    shop.PutInstalledManual(L"EEEE1MM", 3);
    shop.Tree.PutFile(L"C:\\Manuals\\AAAA1MM\\contents\\dropped.html", "only in edition 1");
    shop.PutArchiveManual(L"AAAA1MM", 3);
    shop.PutArchiveManual(L"BBBB1MM", 5);
    shop.PutComparisonSet(L"BBBB1MM", 5);
    shop.PutArchiveManual(L"CCCC2MM", 1);
    shop.PutPdfManual(L"DDDD1MM", 1);
    shop.PutArchiveManual(L"EEEE1MM", 3);

    ASSERT_TRUE(shop.Install()) << testing::PrintToString(shop.Program().Outcome.ResultMessage);

    EXPECT_EQ(shop.Rows(), (std::map<std::wstring, Row>{{L"AAAA1MM", {L"3", L"C:\\Manuals\\AAAA1MM", L"0"}},
                                                        {L"BBBB1MM", {L"5", L"C:\\Manuals\\BBBB1MM", L"0"}},
                                                        {L"CCCC2MM", {L"1", L"C:\\Manuals\\CCCC2MM", L"0"}},
                                                        {L"DDDD1MM", {L"1", L"C:\\Manuals\\DDDD1MM", L"0"}},
                                                        {L"EEEE1MM", {L"3", L"C:\\Manuals\\EEEE1MM", L"0"}}}));
    EXPECT_EQ(Page(shop, L"AAAA1MM\\contents\\engine.html"), L"engine of AAAA1MM 3");
    EXPECT_FALSE(shop.Tree.HasFile(L"C:\\Manuals\\AAAA1MM\\contents\\dropped.html"));
    EXPECT_EQ(Page(shop, L"BBBB1MM\\contents\\engine.html"), L"engine of BBBB1MM 5");
    EXPECT_EQ(Page(shop, L"BBBB1MM\\contents\\index.html"), L"contents of BBBB1MM 4") << "not in the comparison set";
    EXPECT_FALSE(shop.Tree.HasFolder(L"C:\\Manuals\\CCCC0MM"));
    EXPECT_EQ(Page(shop, L"DDDD1MM\\contents\\DDDD1MM.pdf"), L"%PDF-1.4");
    Installation& run = shop.Program().Installation;
    EXPECT_EQ(run.NoFolderCount, 2) << "only the two manuals without a folder ask for one";
    EXPECT_EQ(run.MadeFolders,
              (std::vector<std::wstring>{L"C:\\Manuals\\AAAA1MM", L"C:\\Manuals\\CCCC2MM", L"C:\\Manuals\\DDDD1MM"}));
    EXPECT_EQ(run.InstallTime0, std::chrono::local_days{std::chrono::year{2024} / 5 / 6} + std::chrono::seconds{25694});
    EXPECT_EQ(run.InstallTime1, run.InstallTime0 + std::chrono::seconds(1));
    EXPECT_EQ(run.InstallTime2, run.InstallTime0 + std::chrono::seconds(2));
    EXPECT_EQ(shop.Program().Outcome.ManualsRecorded, 4);
    EXPECT_EQ(shop.Program().Outcome.ExitCode, ExitCode::Done);
    EXPECT_TRUE(shop.Program().Outcome.ResultKind && shop.Program().Outcome.RunFinished);
    const std::wstring noInfo =
        L"\tcopying the manual information: CopyToNew failed with code 2 on D:\\programs\\setup\\";
    EXPECT_EQ(ReplaceAll(ReplaceAll(shop.Program().Log.Text(), noInfo, L"\tno "), L"2024-05-06 07:08:", L""),
              L"09\tmanager\t\tup to date\r\n"
              L"09\tmanager\t\treading a program's version: Read failed with code 1813 on C:\\Vantor\\Manager.exe\r\n"
              L"10\tcatalogue database\t\tcurrent\r\n12\tdisc\t\t5 manuals\r\n14\tmanuals\t\tno man_info_do.ci\r\n"
              L"15\tinstall\tAAAA1MM\tC:\\Manuals\\AAAA1MM\r\n19\tupdate\tBBBB1MM\tC:\\Manuals\\BBBB1MM\r\n"
              L"20\tremove\tCCCC0MM\treplaced by a later edition\r\n20\tinstall\tCCCC2MM\tC:\\Manuals\\CCCC2MM\r\n"
              L"22\tinstall\tDDDD1MM\tC:\\Manuals\\DDDD1MM\r\n22\tinstall\tDDDD1MM\tno man_info_do.ci\r\n"
              L"22\tinstall\tDDDD1MM\tno man_info_us.ci\r\n25\trun\t\tdone\r\n");

    EXPECT_FALSE(shop.AccessControl.ListOf(L"C:\\Manuals\\AAAA1MM").empty()) << "open before it is recorded";
    EXPECT_FALSE(shop.AccessControl.ListOf(L"C:\\Manuals\\DDDD1MM").empty());

    const auto before = shop.Tree.Snapshot(L"C:\\Manuals");
    ASSERT_TRUE(shop.Install()) << "a second run";
    EXPECT_FALSE(shop.Tree.HasFolder(L"C:\\Vantor\\UnZipTemp")) << "left by the first";
    EXPECT_EQ(shop.Program().Outcome.ManualsRecorded, 0);
    EXPECT_TRUE(run.MadeFolders.empty() && run.NoFolderCount == 0);
    EXPECT_EQ(shop.Tree.Snapshot(L"C:\\Manuals"), before);
}

/// Installs, with the screen's timers running, and tells what was shown.
std::string StoryOf(DiscWorkshop& shop) {
    InstallationDriver driver(shop.Program(), shop.View, shop.View);
    bool inTimer = false;
    shop.Clock.OnYield = [&] {
        shop.View.Tell(L".");
        EXPECT_EQ(shop.View.Progress.Writing, shop.Computer.Awake);
        if (shop.View.Bars[Bar::Pdf].Visible && !std::exchange(inTimer, true)) {
            driver.Timer2();
            inTimer = false;
        }
    };
    shop.Archives.WhileReading = [&] { driver.Timer1(), driver.Timer1(), driver.Timer1(), driver.Timer2(); };
    driver.FormLoad();
    EXPECT_TRUE(driver.RunInstallation()) << testing::PrintToString(shop.Program().Outcome.ResultMessage);
    return shop.View.Story;
}

TEST(Installation, StepsAndBarsShowTheWork) {
    DiscWorkshop shop;
    shop.Program().Settings.ZipExtractTime = 2;
    shop.PutInstalledManual(L"BBBB1MM", 4);
    shop.PutArchiveManual(L"AAAA1MM", 1);
    shop.Archives.Put(ArchiveOf(L"AAAA1MM"), {{L"AAAA1MM\\index.html", "page"}});
    shop.PutArchiveManual(L"BBBB1MM", 5);
    shop.PutComparisonSet(L"BBBB1MM", 5);
    shop.PutArchiveManual(L"CCCC1MM", 1);
    shop.PutPdfManual(L"DDDD1MM", 1);
    shop.Tree.PutFile(L"C:\\Manuals\\CCCC1MM\\note.txt", "of nobody");
    EXPECT_EQ(
        StoryOf(shop),
        "title: message 34 \n1: message 9 - \n2: message 12 - \n3: message 15 - Z- C- P- busy "
        "\n1: message 10 > . +3s \n1: message 11 + . \n2: message 13 > . +2s \n2: message 14 + . "
        "\n3: message 16 > . 0w Z- C- P- ! 0w "
        "\n[Aria  AAAA1MM: message 102 1/4] idle asked: C:\\Manuals busy . Z,0,0,2 0w ! Z,0,1,2 62w . Z,0,2,2 125w "
        ". . . Z,0,2,2 125w ! C,0,1,2 125w Z- ! C,0,2,2 250w ! Z- C- P- ! 250w "
        "\n[Aria  BBBB1MM: message 102 2/4] +1s C,0,0,1 250w ! +1s C,0,1,1 500w ! . +2s Z- C- P- ! 500w "
        "\n[Aria  CCCC1MM: message 102 3/4] idle asked: C:\\Manuals busy . . . . . Z,0,0,2 500w ! Z,0,1,2 562w . "
        "Z,0,2,2 625w . . . Z,0,2,2 625w ! C,0,4,8 625w Z- ! C,0,5,8 656w ! . C,0,6,8 687w ! . C,0,7,8 718w ! . "
        "C,0,8,8 750w ! . Z- C- P- ! 750w "
        "\n[Aria  DDDD1MM: message 102 4/4] +1s . idle asked: C:\\Manuals busy . P,0,1,2 875w ! ! . P,0,6,2 1000w . "
        "! . . ! . . P,0,2,2 1000w ! +2s \n[: ] Z- C- P- ! 1000 +2s \n3: message 17 + . +1s idle");
    EXPECT_TRUE(shop.AccessControl.ListOf(L"C:\\Manuals\\CCCC1MM").empty()) << "was there before";
}

TEST(Installation, WithoutAnExpectedTimeNothingCreeps) {
    DiscWorkshop shop;
    shop.Program().Settings.ZipExtractTime = 0;
    shop.PutPdfManual(L"DDDD1MM", 1);
    const std::string story = StoryOf(shop);
    EXPECT_NE(story.find("busy . P,0,1,0 ! ! . . ! . . ! . . P,0,0,0 ! +2s \n[: ] Z- C- P- ! 0 +2s "),
              std::string::npos)
        << story;
}

struct FailureCase {
    const char* Label;
    std::function<void(DiscWorkshop&)> Arrange;
    const wchar_t* Message;
    const wchar_t* End = L"17";  ///< the second in which the run ends
    const wchar_t* Log = L"";    ///< among its lines
    const wchar_t* SubMessage = L"message 24";
    ExitCode Code = ExitCode::FailedPartWay;
};

void Refuse(DiscWorkshop& shop, const std::wstring& change) {
    shop.Embedded.Open(Workshop::MdbPath)
        ->Execute(L"CREATE TRIGGER no BEFORE " + change + L" ON M_manage BEGIN SELECT RAISE(ABORT, 'no'); END");
}

const DiscWorkshop::Pages OnlyAFile{{L"index.html", "page"}};
const DiscWorkshop::Pages OnlyAFolder{{L"AAAA1MM\\", ""}};

/// The disc brings a new manual AAAA1MM and an update of MMMM1MM, in this order.
const FailureCase Failures[] = {
    {"no manager setup",
     [](auto& shop) { shop.Tree.Erase(L"C:\\Vantor\\Manager.exe"), shop.Tree.Erase(L"D:\\programs\\man_manager"); },
     L"message 18", L"12", L"manager\t\tfailed\r\n"},
    {"manager program of the disc unreadable",
     [](auto& shop) { shop.Tree.Deny(L"D:\\programs\\man_manager\\Manager.exe"); }, L"message 18", L"12",
     L"manager\t\tthe step of the installation: "},
    {"no new database", [](auto& shop) { shop.Tree.Erase(Workshop::NewSource); }, L"message 71", L"13",
     L"catalogue database\t\tupgrade failed\r\n"},
    {"companion failed and user stops",
     [](auto& shop) {
         shop.Tree.PutFile(L"D:\\programs\\manual_link\\setup.exe");
         shop.MessageBoxes.Answers = {boxes::AnswerNo};
     },
     L"message 90", L"15", L"\tmanual_link\t\tfailed\r\n2024-05-06 07:08:14\tcompanions\t\tmessage 90: "},
    {"field too long", [](auto& shop) { shop.Program().Settings.Columns.Country = 1; },
     L"car_info.ci data length Error program abort", L"15", L"disc\t\tfailed PubNo = AAAA1MM",
     L"PubNo = AAAA1MM [ Country length = 2 ]"},
    {"disc unreadable", [](auto& shop) { shop.Tree.Deny(L"D:\\"); }, L"message 97", L"15", L"disc\t\tmessage 97: "},
    {"archive of update broken", [](auto& shop) { shop.Archives.Break(ArchiveOf(L"MMMM1MM")); }, L"message 23", L"17",
     L"install\tMMMM1MM\treading the new edition: "},
    {"archive of empty folder", [](auto& shop) { shop.Archives.Put(ArchiveOf(L"AAAA1MM"), OnlyAFolder); },
     L"message 83", L"17", L"the archive brought no files"},
    {"PDF manual's folder is a link",
     [](auto& shop) { shop.PutPdfManual(L"DDDD1MM", 1), shop.Tree.PutLink(L"C:\\Manuals\\DDDD1MM", L"C:\\Temp"); },
     L"message 83", L"17", L"the manual's folder is a link: C:\\Manuals\\DDDD1MM"},
    {"PDF manual's folder cannot be made",
     [](auto& shop) { shop.PutPdfManual(L"DDDD1MM", 1), shop.Tree.PutFile(L"C:\\Manuals\\DDDD1MM"); }, L"message 83",
     L"17", L"the manual's folder cannot be made"},
    {"catalogue takes no mark", [](auto& shop) { Refuse(shop, L"UPDATE"); }, L"message 67", L"17", L"take the mark"},
    {"catalogue takes no manual", [](auto& shop) { Refuse(shop, L"INSERT"); }, L"message 67", L"17",
     L"take the manual"},
    {"catalogue keeps a base edition",
     [](auto& shop) { shop.PutRow(L"AAAA0MM", 1, L"C:\\Gone\\AAAA0MM", L"1"), Refuse(shop, L"DELETE"); }, L"message 67",
     L"17", L"keeps the base edition's row"},
    {"no texts", [](auto& shop) { shop.Tree.Erase(Workshop::Messages), shop.StartProgram(), shop.Tree.Deny(L"D:\\"); },
     L"The installation failed.", L"15", L"message 98: \r\n", L""},
    {"archive of new manual broken", [](auto& shop) { shop.Archives.Break(ArchiveOf(L"AAAA1MM")); }, L"message 23",
     L"17", L"\tAAAA1MM\tfailed: message 23\r\n"},
    {"archive without top-level folder", [](auto& shop) { shop.Archives.Put(ArchiveOf(L"AAAA1MM"), OnlyAFile); },
     L"message 83"},
    {"archive of update without top-level folder",
     [](auto& shop) { shop.Archives.Put(ArchiveOf(L"MMMM1MM"), OnlyAFile); }, L"message 83"},
    {"archive of update wants one name twice",
     [](auto& shop) {
         shop.Archives.Put(ArchiveOf(L"MMMM1MM"), {{L"M\\a", "page"}, {L"M\\a\\b.html", "page"}});
     },
     L"message 23"},
    {"target denied",
     [](auto& shop) {
         shop.Tree.PutFolder(L"C:\\Manuals\\AAAA1MM"), shop.Tree.Deny(L"C:\\Manuals\\AAAA1MM\\contents");
     },
     L"message 83"},
    {"installed edition is open",
     [](auto& shop) { shop.Tree.Find(L"C:\\Manuals\\MMMM1MM\\contents\\index.html")->OpenHandles = 1; },
     L"message 101"},
    {"replaced page is open",
     [](auto& shop) {
         shop.PutArchiveManual(L"MMMM1MM", 2);
         shop.Tree.PutFile(L"D:\\MMMM1MM\\install\\compare\\a.html", "page");
         shop.Tree.PutFile(L"D:\\MMMM1MM\\install\\compare\\index.html", "page");
         shop.Tree.Find(L"C:\\Manuals\\MMMM1MM\\contents\\index.html")->OpenHandles = 1;
     },
     L"message 101", L"18"},
    {"no room for comparison set",
     [](auto& shop) {
         shop.PutArchiveManual(L"MMMM1MM", 2);
         shop.Tree.PutFile(L"D:\\MMMM1MM\\install\\compare\\new.html", std::string(400'000, ' '));
         shop.Tree.DriveOf(L"C:\\")->FreeBytes = 350'000;
     },
     L"message 22", L"18"},
    {"PDF of update unreadable",
     [](auto& shop) { shop.PutPdfManual(L"MMMM1MM", 3), shop.Tree.Deny(L"D:\\MMMM1MM\\contents\\MMMM1MM.pdf"); },
     L"message 83"},
    {"last page of comparison set unreadable",
     [](auto& shop) {
         shop.PutArchiveManual(L"MMMM1MM", 2);
         shop.PutComparisonSet(L"MMMM1MM", 2);
         shop.Tree.PutFile(L"D:\\MMMM1MM\\install\\compare\\last.html", "page");
         shop.Tree.Deny(L"D:\\MMMM1MM\\install\\compare\\last.html");
     },
     L"message 83", L"18"},
    {"leftovers stay in the temporary folder",
     [](auto& shop) {
         shop.Tree.PutFile(L"C:\\Vantor\\UnZipTemp\\ZZZZ1MM\\old.html").OpenHandles = 1;
         shop.View.OnAskForFolder = [](const auto&) { return std::nullopt; };
     },
     L"message 23", L"19"},
    {"room for one copy only", [](auto& shop) { shop.Tree.DriveOf(L"C:\\")->FreeBytes = 20'000; }, L"message 22"},
    {"no edition digit", [](auto& shop) { shop.PutArchiveManual(L"AAAAXMM", 1); }, L"message 83"},
    {"cancel before anything",
     [](auto& shop) {
         shop.View.OnAskForFolder = [&run = shop.Program()](const std::wstring&) {
             FailRun(run, messages::Cancelled);
             return std::nullopt;
         };
     },
     L"message 25", L"17", L"installing the manual: the question for the folder was cancelled\r\n", L"message 24",
     ExitCode::NotAccepted},
};

TEST(Installation, FailureIsToldAndKeepsTheInstalledEdition) {
    for (const FailureCase& given : Failures) {
        SCOPED_TRACE(given.Label);
        DiscWorkshop shop;
        shop.PutInstalledManual(L"MMMM1MM", 1);
        shop.PutArchiveManual(L"AAAA1MM", 1);
        shop.PutArchiveManual(L"MMMM1MM", 3);
        given.Arrange(shop);
        const auto installed = shop.Tree.Snapshot(L"C:\\Manuals");
        const auto rows = shop.Rows();

        EXPECT_FALSE(shop.Install());

        EXPECT_EQ(shop.Program().Outcome.ResultMessage, given.Message);
        EXPECT_EQ(shop.Program().Outcome.ResultSubMessage, given.SubMessage);
        EXPECT_EQ(shop.Program().Outcome.ExitCode, given.Code);
        EXPECT_TRUE(shop.View.Progress.Failed);
        EXPECT_FALSE(shop.View.Progress.Writing || shop.Computer.Awake);
        const std::wstring log = shop.Program().Log.Text();
        EXPECT_TRUE(log.ends_with(std::wstring(L":") + given.End + L"\trun\t\t" + given.Message + L"\r\n"));
        EXPECT_NE(log.find(given.Log), std::wstring::npos) << testing::PrintToString(log);
        const auto left = shop.Tree.Snapshot(L"C:\\Manuals");
        for (const auto& [path, bytes] : installed) {
            EXPECT_TRUE(path.ends_with(L'\\') || (left.contains(path) && left.at(path) == bytes));
        }
        const auto rowsLeft = shop.Rows();
        EXPECT_EQ(rowsLeft.contains(L"AAAA1MM"), shop.Program().Outcome.ManualsRecorded == 1);
        EXPECT_EQ(std::ranges::count(shop.Program().DiscCatalogue.Records, true, &DiscCatalogueRecord::DoneFlag),
                  shop.Program().Outcome.ManualsRecorded);
        for (const auto& [pubNo, row] : rows) {
            EXPECT_EQ(rowsLeft.at(pubNo), row);
        }
    }
}

TEST(Installation, ARowOfAnyUserOpensNoFolderButAManualsToRemoval) {
    const struct {
        const char* Label;
        std::wstring RowPath;
        std::wstring File;  ///< below the row's path
        std::wstring NewPath;
        bool Asked = false;
        bool Stays = true;
    } cases[] = {
        {"manual", L"C:\\Lib\\M", L"\\contents\\dropped.html", L"C:\\Lib\\MMMM1MM", false, false},
        {"no manual", L"C:\\Precious", L"\\data.txt", L"C:\\MMMM1MM"},
        {"no manual of the same name", L"C:\\Lib\\MMMM1MM", L"\\data.txt", L"C:\\Lib\\MMMM1MM"},
        {"the program's home", L"c:\\vantor", L"\\contents\\a.html", L"c:\\MMMM1MM"},
        {"program files", L"C:\\Program Files", L"\\contents\\a.html", L"C:\\MMMM1MM"},
        {"link", L"C:\\Link", L"", L"C:\\MMMM1MM"},
        {"link in the end", L"C:\\Lib\\L", L"\\contents\\index.html", L"C:\\Lib\\MMMM1MM"},
        {"root", L"C:\\", L"contents\\a.html", L"C:\\Manuals\\MMMM1MM", true},
        {"system", L"C:\\Windows\\Web\\M", L"\\contents\\a.html", L"C:\\Manuals\\MMMM1MM", true},
        {"relative", L"Lib\\M", L"", L"C:\\Manuals\\MMMM1MM", true},
        {"up again", L"C:\\Lib\\..\\Elsewhere", L"", L"C:\\Manuals\\MMMM1MM", true},
        {"command", L"C:\\x\" & evil.exe & rem ", L"", L"C:\\Manuals\\MMMM1MM", true},
    };
    for (const auto& given : cases) {
        SCOPED_TRACE(given.Label);
        DiscWorkshop shop;
        shop.Tree.PutFile(L"C:\\Elsewhere\\contents\\index.html", "a page");
        shop.Tree.PutLink(L"C:\\Link", L"C:\\Elsewhere");
        const std::wstring file =
            given.File.empty() ? L"C:\\Elsewhere\\contents\\index.html" : given.RowPath + given.File;
        shop.Tree.PutFile(file, "precious");
        shop.PutRow(L"MMMM1MM", 1, given.RowPath);
        shop.PutArchiveManual(L"MMMM1MM", 3);
        shop.Archives.WhileReading = [&] {
            if (given.RowPath == L"C:\\Lib\\L") {
                shop.Tree.Erase(given.RowPath);
                shop.Tree.PutLink(given.RowPath, L"C:\\Elsewhere");
            }
        };

        ASSERT_TRUE(shop.Install()) << testing::PrintToString(shop.Program().Outcome.ResultMessage);

        EXPECT_EQ(shop.Rows().at(L"MMMM1MM"), (Row{L"3", given.NewPath, L"0"}));
        EXPECT_TRUE(shop.Tree.HasFile(given.NewPath + L"\\contents\\engine.html"));
        EXPECT_EQ(shop.View.FoldersAsked, given.Asked ? 1 : 0);
        EXPECT_TRUE(shop.Tree.HasFile(L"C:\\Elsewhere\\contents\\index.html"));
        EXPECT_EQ(shop.Tree.HasFile(file), given.Stays);
        EXPECT_EQ(shop.Program().Log.Text().find(L"left alone") != std::wstring::npos, given.Stays);
        for (const std::wstring& started : shop.Processes.StartedHidden) {
            EXPECT_EQ(started.find(L"evil"), std::wstring::npos);
        }
    }
}

TEST(Installation, AnEditionIsReplacedWhereItIsFromAFolderWithABlank) {
    DiscWorkshop shop;
    FileTree& tree = shop.Tree;
    shop.PutInstalledManual(L"MMMM1MM", 1);
    shop.Clock.Sleep(std::chrono::seconds(1));
    shop.PutRow(L"NNNN1MM", 1, L"C:\\Elsewhere\\NNNN1MM");
    shop.PutArchiveManual(L"MMMM1MM", 3);
    tree.PutFile(L"D:\\Ondari 2021\\car_info.ci", tree.BytesOf(L"D:\\MMMM1MM\\car_info.ci"));
    tree.Erase(L"D:\\MMMM1MM");
    shop.Archives.Put(L"D:\\Ondari 2021\\install\\condense\\manual.zip",
                      DiscWorkshop::ManualPages(L"MMMM1MM", "MMMM1MM 3"));
    EXPECT_TRUE(shop.Install());
    EXPECT_EQ(shop.Rows().at(L"MMMM1MM"), (Row{L"3", L"C:\\Manuals\\MMMM1MM", L"0"}));
    EXPECT_EQ(tree.BytesOf(L"C:\\Manuals\\MMMM1MM\\index.html"), "frame of MMMM1MM 3");
}

TEST(Installation, MissingCatalogueFileLeavesTheSecondTextAlone) {
    DiscWorkshop shop;
    shop.PutArchiveManual(L"AAAA1MM", 1);
    shop.View.OnAskForFolder = [&](const std::wstring&) {
        shop.Tree.Erase(L"C:\\Vantor\\kvx3.mdb");
        return L"C:\\Manuals";
    };
    EXPECT_FALSE(shop.Install());
    EXPECT_EQ(shop.Program().Outcome.ResultMessage, L"message 24");
    EXPECT_EQ(shop.Program().Outcome.ResultSubMessage, L"");
}

TEST(Installation, CancelAfterAManualIsPartWay) {
    DiscWorkshop shop;
    shop.PutArchiveManual(L"AAAA1MM", 1);
    shop.PutArchiveManual(L"BBBB1MM", 1);
    shop.View.OnAskForFolder = [&](const std::wstring& proposal) {
        return shop.View.FoldersAsked == 1 ? std::optional(proposal) : std::nullopt;
    };
    EXPECT_FALSE(shop.Install());
    EXPECT_TRUE(shop.Program().Outcome.InstallCancelled);
    EXPECT_EQ(shop.Program().Outcome.ExitCode, ExitCode::CancelledPartWay);
    shop.View.OnAskForFolder = nullptr;
    EXPECT_TRUE(shop.Install());
    EXPECT_FALSE(shop.Program().Outcome.InstallCancelled);
}

TEST(Installation, InterruptedUpdateIsInstalledInFullByTheNextRun) {
    DiscWorkshop shop;
    shop.PutInstalledManual(L"AAAA1MM", 1);
    shop.PutArchiveManual(L"AAAA1MM", 2);
    shop.PutComparisonSet(L"AAAA1MM", 2);
    shop.Tree.PutFile(L"D:\\AAAA1MM\\install\\compare\\last.html", "page");
    shop.Tree.Deny(L"C:\\Manuals\\AAAA1MM\\contents\\last.html");
    EXPECT_FALSE(shop.Install());
    EXPECT_EQ(shop.Rows().at(L"AAAA1MM"), (Row{L"1", L"C:\\Manuals\\AAAA1MM", L"1"})) << "half old, half new";

    shop.Tree.Erase(L"D:\\AAAA1MM\\install\\compare\\last.html");
    shop.Install();
    EXPECT_EQ(shop.Program().DiscCatalogue.Records[1].InstallKind, InstallKind::Full);
    EXPECT_EQ(shop.Program().Outcome.ResultMessage + shop.Program().Outcome.ResultSubMessage, L"");
}

TEST(Installation, AManualThatAnotherProgramHoldsIsCopiedAfterThreeAttemptsToMoveIt) {
    DiscWorkshop shop;
    shop.PutArchiveManual(L"AAAA1MM", 1);
    shop.Archives.OnSevenZip = [&](const std::wstring&) {
        shop.Tree.PutFile(L"C:\\Vantor\\UnZipTemp\\AAAA1MM\\index.html", "page").OpenHandles = 1;
        return 0;
    };
    ASSERT_TRUE(shop.Install());
    EXPECT_EQ(Page(shop, L"AAAA1MM\\index.html"), L"page");
    EXPECT_FALSE(shop.AccessControl.ListOf(L"C:\\Manuals\\AAAA1MM").empty());
    std::wstring attempts;
    for (const std::wstring second : {L"14", L"15", L"16"}) {
        attempts += second + L"\tinstall\tAAAA1MM\tmoving the manual into its place: Move failed with code 5 on " +
                    L"C:\\Vantor\\UnZipTemp\\AAAA1MM\r\n2024-05-06 07:08:";
    }
    EXPECT_NE(shop.Program().Log.Text().find(attempts + L"16\tinstall\tAAAA1MM\tC:"), std::wstring::npos);
}

}  // namespace
}  // namespace mip
