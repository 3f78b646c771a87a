#include <gtest/gtest.h>

#include <set>
#include <string>

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
    EXPECT_EQ(shop.View.FoldersAsked, 2) << "only the two manuals without a folder ask for one";
    EXPECT_EQ(shop.Program().Outcome.ManualsRecorded, 4);
    EXPECT_EQ(shop.Program().Outcome.ResultMessage, L"");
    EXPECT_EQ(shop.Program().Outcome.ExitCode, ExitCode::Done);
    const std::wstring log = shop.Program().Log.Text();
    EXPECT_NE(log.find(L"remove\tCCCC0MM\treplaced by a later edition\r\n"), std::wstring::npos);
    EXPECT_TRUE(log.ends_with(L"run\t\tdone\r\n"));

    for (const wchar_t* made : {L"C:\\Manuals\\AAAA1MM", L"C:\\Manuals\\DDDD1MM"}) {
        EXPECT_FALSE(shop.AccessControl.ListOf(made).empty()) << "open before it is recorded";
    }

    const auto before = shop.Tree.Snapshot(L"C:\\Manuals");
    ASSERT_TRUE(shop.Install()) << "a second run";
    EXPECT_FALSE(shop.Tree.HasFolder(L"C:\\Vantor\\UnZipTemp")) << "left by the first";
    EXPECT_EQ(shop.Program().Outcome.ManualsRecorded, 0);
    EXPECT_EQ(shop.Tree.Snapshot(L"C:\\Manuals"), before);
}

TEST(Installation, StepsAndBarsShowTheWork) {
    DiscWorkshop shop;
    shop.PutArchiveManual(L"AAAA1MM", 1);
    shop.PutArchiveManual(L"BBBB1MM", 1);
    std::vector<RecordingView::ShownStep> manualSteps;
    std::set<std::wstring> positions;
    RunProgress last;
    shop.Clock.OnYield = [&] {
        manualSteps.push_back(shop.View.Steps[Step::Manuals]);
        positions.insert(shop.View.Position);
        EXPECT_LE(last.Part, shop.View.Progress.Part);
        last = shop.View.Progress;
        EXPECT_EQ(last.Writing, shop.Computer.Awake);
        EXPECT_EQ(last.Writing, !shop.View.Position.empty());
    };

    ASSERT_TRUE(shop.Install()) << testing::PrintToString(shop.Program().Outcome.ResultMessage);

    manualSteps.erase(std::unique(manualSteps.begin(), manualSteps.end()), manualSteps.end());
    EXPECT_EQ(manualSteps, (std::vector<RecordingView::ShownStep>{{L"message 15", StepState::Waiting},
                                                                  {L"message 16", StepState::Running},
                                                                  {L"message 17", StepState::Done}}));
    EXPECT_EQ(shop.View.Steps[Step::Programs].first, L"message 11");
    EXPECT_EQ(positions,
              (std::set<std::wstring>{L"", L"Aria  AAAA1MM: message 102 1/2", L"Aria  BBBB1MM: message 102 2/2"}));
    EXPECT_EQ(shop.View.Position, L"") << "at the end";
    EXPECT_EQ(shop.View.Progress, (RunProgress{1, false, false}));
    const auto& copy = shop.View.ShownBars[Bar::Copy];
    EXPECT_EQ(copy.front(), (BarState{0, 8, 4, true, true})) << "the first half stands for the extraction";
    EXPECT_EQ(copy.back(), (BarState{0, 8, 8, true, true}));
    EXPECT_EQ(shop.View.ShownBars[Bar::SevenZip].front(), (BarState{0, 20, 0, true, true}));
    for (const Bar bar : {Bar::SevenZip, Bar::Copy, Bar::Pdf}) {
        EXPECT_FALSE(shop.View.Bars[bar].Visible || shop.View.Bars[bar].Enabled);
    }
}

TEST(Installation, OnlyEnabledBarsCreepAndOnlyToTheExpectedTime) {
    for (const std::int32_t expected : {0, 7}) {
        DiscWorkshop shop;
        shop.Program().Settings.ZipExtractTime = expected;
        shop.PutPdfManual(L"DDDD1MM", 1);
        InstallationDriver driver(shop.Program(), shop.View, shop.View);
        driver.FormLoad();
        bool inTimer = false;
        shop.Clock.OnYield = [&] {
            if (!inTimer) {
                inTimer = true;
                driver.Timer1();
                driver.Timer2();
                inTimer = false;
            }
        };
        ASSERT_TRUE(driver.RunInstallation());
        float highest = 0;
        for (const BarState& state : shop.View.ShownBars[Bar::Pdf]) {
            highest = std::max(highest, state.Value);
        }
        EXPECT_EQ(highest, expected == 0 ? 1 : 11) << "a step of five may overshoot, none is made above " << expected;
        EXPECT_TRUE(shop.View.ShownBars[Bar::SevenZip].empty());
    }
}

struct FailureCase {
    const char* Label;
    std::function<void(DiscWorkshop&)> Arrange;
    const wchar_t* Message;
    const wchar_t* SubMessage = L"message 24";
    ExitCode Code = ExitCode::FailedPartWay;
};

std::wstring ArchiveOf(const std::wstring& pubNo) {
    return L"D:\\" + pubNo + L"\\install\\condense\\manual.zip";
}

/// The disc brings a new manual AAAA1MM and an update of MMMM1MM, in this order.
const FailureCase Failures[] = {
    {"no manager setup",
     [](auto& shop) { shop.Tree.Erase(L"C:\\Vantor\\Manager.exe"), shop.Tree.Erase(L"D:\\programs\\man_manager"); },
     L"message 18"},
    {"no new database", [](auto& shop) { shop.Tree.Erase(Workshop::NewSource); }, L"message 71"},
    {"companion failed and user stops",
     [](auto& shop) {
         shop.Tree.PutFile(L"D:\\programs\\manual_link\\setup.exe");
         shop.MessageBoxes.Answers = {boxes::AnswerNo};
     },
     L"message 90"},
    {"field too long", [](auto& shop) { shop.Program().Settings.Columns.Country = 1; },
     L"car_info.ci data length Error program abort", L"PubNo = AAAA1MM [ Country length = 2 ]"},
    {"disc unreadable", [](auto& shop) { shop.Tree.Deny(L"D:\\"); }, L"message 97"},
    {"archive of update broken", [](auto& shop) { shop.Archives.Break(ArchiveOf(L"MMMM1MM")); }, L"message 23"},
    {"archive of new manual broken", [](auto& shop) { shop.Archives.Break(ArchiveOf(L"AAAA1MM")); }, L"message 23"},
    {"archive without top-level folder",
     [](auto& shop) {
         shop.Archives.Put(ArchiveOf(L"AAAA1MM"), {{L"index.html", "page"}});
     },
     L"message 83"},
    {"archive of update without top-level folder",
     [](auto& shop) {
         shop.Archives.Put(ArchiveOf(L"MMMM1MM"), {{L"index.html", "page"}});
     },
     L"message 83"},
    {"archive of update wants one name twice",
     [](auto& shop) {
         shop.Archives.Put(ArchiveOf(L"MMMM1MM"), {{L"M\\a", "page"}, {L"M\\a\\b.html", "page"}});
     },
     L"message 23"},
    {"target denied",
     [](auto& shop) {
         shop.Tree.PutFolder(L"C:\\Manuals\\AAAA1MM");
         shop.Tree.Deny(L"C:\\Manuals\\AAAA1MM\\contents");
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
     L"message 101"},
    {"base edition is open",
     [](auto& shop) {
         shop.PutInstalledManual(L"AAAA0MM", 1);
         shop.Tree.Find(L"C:\\Manuals\\AAAA0MM\\index.html")->OpenHandles = 1;
     },
     L"message 101"},
    {"archive of later edition broken",
     [](auto& shop) { shop.PutInstalledManual(L"AAAA0MM", 1), shop.Archives.Break(ArchiveOf(L"AAAA1MM")); },
     L"message 23"},
    {"PDF of update unreadable",
     [](auto& shop) {
         shop.PutPdfManual(L"MMMM1MM", 3);
         shop.Tree.Deny(L"D:\\MMMM1MM\\contents\\MMMM1MM.pdf");
     },
     L"message 83"},
    {"last page of comparison set unreadable",
     [](auto& shop) {
         shop.PutArchiveManual(L"MMMM1MM", 2);
         shop.PutComparisonSet(L"MMMM1MM", 2);
         shop.Tree.PutFile(L"D:\\MMMM1MM\\install\\compare\\last.html", "page");
         shop.Tree.Deny(L"D:\\MMMM1MM\\install\\compare\\last.html");
     },
     L"message 83"},
    {"leftovers stay in the temporary folder",
     [](auto& shop) { shop.Tree.PutFile(L"C:\\Vantor\\UnZipTemp\\ZZZZ1MM\\old.html").OpenHandles = 1; }, L"message 23"},
    {"room for one copy only", [](auto& shop) { shop.Tree.DriveOf(L"C:\\")->FreeBytes = 20'000; }, L"message 22"},
    {"no edition digit", [](auto& shop) { shop.PutArchiveManual(L"AAAAXMM", 1); }, L"message 83"},
    {"drive full", [](auto& shop) { shop.Tree.DriveOf(L"C:\\")->FreeBytes = 100; }, L"message 22"},
    {"cancel before anything",
     [](auto& shop) {
         shop.View.OnAskForFolder = [&run = shop.Program()](const std::wstring&) {
             FailRun(run, messages::Cancelled);
             return std::nullopt;
         };
     },
     L"message 25", L"message 24", ExitCode::NotAccepted},
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
        EXPECT_TRUE(shop.Program().Log.Text().ends_with(std::wstring(L"run\t\t") + given.Message + L"\r\n"));
        const auto left = shop.Tree.Snapshot(L"C:\\Manuals");
        for (const auto& [path, bytes] : installed) {
            EXPECT_TRUE(path.ends_with(L'\\') || (left.contains(path) && left.at(path) == bytes));
        }
        const auto rowsLeft = shop.Rows();
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

TEST(Installation, AnEditionIsReplacedFromAFolderWithABlank) {
    DiscWorkshop shop;
    FileTree& tree = shop.Tree;
    shop.PutInstalledManual(L"MMMM1MM", 1);
    shop.PutArchiveManual(L"MMMM1MM", 3);
    tree.PutFile(L"D:\\Ondari 2021\\car_info.ci", tree.BytesOf(L"D:\\MMMM1MM\\car_info.ci"));
    tree.Erase(L"D:\\MMMM1MM");
    shop.Archives.Put(L"D:\\Ondari 2021\\install\\condense\\manual.zip",
                      DiscWorkshop::ManualPages(L"MMMM1MM", "MMMM1MM 3"));
    EXPECT_TRUE(shop.Install());
    EXPECT_EQ(shop.Rows().at(L"MMMM1MM"), (Row{L"3", L"C:\\Manuals\\MMMM1MM", L"0"}));
    EXPECT_EQ(tree.BytesOf(L"C:\\Manuals\\MMMM1MM\\index.html"), "frame of MMMM1MM 3");
}

TEST(Installation, ManualsInstalledBeforeAFailureStay) {
    DiscWorkshop shop;
    shop.PutArchiveManual(L"AAAA1MM", 1);
    shop.PutArchiveManual(L"BBBB1MM", 1);
    shop.Archives.Break(L"D:\\BBBB1MM\\install\\condense\\manual.zip");

    EXPECT_FALSE(shop.Install());

    EXPECT_EQ(shop.Rows(), (std::map<std::wstring, Row>{{L"AAAA1MM", {L"1", L"C:\\Manuals\\AAAA1MM", L"0"}}}));
    EXPECT_NE(shop.Program().Log.Text().find(L"\tAAAA1MM\tC:\\Manuals\\AAAA1MM\r\n"), std::wstring::npos);
    EXPECT_NE(shop.Program().Log.Text().find(L"\tBBBB1MM\tfailed: message 23\r\n"), std::wstring::npos);
    EXPECT_TRUE(shop.Program().DiscCatalogue.Records[1].DoneFlag);
    EXPECT_FALSE(shop.Program().DiscCatalogue.Records[2].DoneFlag);
    EXPECT_EQ(shop.View.Steps[Step::Manuals], (RecordingView::ShownStep{L"message 16", StepState::Running}));
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
}

TEST(Installation, AManualIsMovedIntoItsPlaceAndNeedsItsRoomOnceWhereNothingIs) {
    constexpr std::uint64_t OnceButNotTwice = 4 * 4096 + 256 * 1024 + 8000;
    for (const bool isThere : {false, true}) {
        SCOPED_TRACE(isThere);
        DiscWorkshop shop;
        shop.PutArchiveManual(L"AAAA1MM", 1);
        if (isThere) {
            shop.Tree.PutFile(L"C:\\Manuals\\AAAA1MM\\note.txt");
        }
        shop.Tree.DriveOf(L"C:\\")->FreeBytes = OnceButNotTwice;

        EXPECT_EQ(shop.Install(), !isThere);

        EXPECT_EQ(shop.Program().Outcome.ResultMessage, isThere ? L"message 22" : L"");
        EXPECT_EQ(shop.AccessControl.ListOf(L"C:\\Manuals\\AAAA1MM").empty(), isThere);
        EXPECT_EQ(shop.Tree.HasFolder(L"C:\\Vantor\\UnZipTemp\\AAAA1MM"), false);
        EXPECT_TRUE(shop.Processes.StartedHidden.empty()) << "there is nothing to remove";
    }
}

}  // namespace
}  // namespace mip
