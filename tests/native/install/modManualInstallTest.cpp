#include <gtest/gtest.h>

#include <set>
#include <string>

#include "app/ExitCode.h"
#include "install/modManualInstall.h"
#include "tests/native/install/Workshop.h"

namespace mip {
namespace {

using Row = Workshop::Row;

std::wstring Page(Workshop& workshop, const std::wstring& path) {
    const std::string bytes = workshop.Windows.Tree.BytesOf(L"C:\\Manuals\\" + path);
    return {bytes.begin(), bytes.end()};
}

TEST(Installation, InstallsUpdatesAndReplacesEveryManualOfTheDisc) {
    Workshop workshop;
    workshop.PutInstalledManual(L"AAAA1MM", 1);
    workshop.PutInstalledManual(L"BBBB1MM", 4);
    workshop.PutInstalledManual(L"CCCC0MM", 7);
    workshop.PutInstalledManual(L"EEEE1MM", 3);
    workshop.Windows.Tree.PutFile(L"C:\\Manuals\\AAAA1MM\\contents\\dropped.html", "only in edition 1");
    workshop.PutArchiveManual(L"AAAA1MM", 3);
    workshop.PutArchiveManual(L"BBBB1MM", 5);
    workshop.PutComparisonSet(L"BBBB1MM", 5);
    workshop.PutArchiveManual(L"CCCC2MM", 1);
    workshop.PutPdfManual(L"DDDD1MM", 1);
    workshop.PutArchiveManual(L"EEEE1MM", 3);

    ASSERT_TRUE(workshop.Install()) << testing::PrintToString(workshop.Run.Outcome.ResultMessage);

    EXPECT_EQ(workshop.Rows(), (std::map<std::wstring, Row>{{L"AAAA1MM", {L"3", L"C:\\Manuals\\AAAA1MM", L"0"}},
                                                            {L"BBBB1MM", {L"5", L"C:\\Manuals\\BBBB1MM", L"0"}},
                                                            {L"CCCC2MM", {L"1", L"C:\\Manuals\\CCCC2MM", L"0"}},
                                                            {L"DDDD1MM", {L"1", L"C:\\Manuals\\DDDD1MM", L"0"}},
                                                            {L"EEEE1MM", {L"3", L"C:\\Manuals\\EEEE1MM", L"0"}}}));
    EXPECT_EQ(Page(workshop, L"AAAA1MM\\contents\\engine.html"), L"engine of AAAA1MM 3");
    EXPECT_FALSE(workshop.Windows.Tree.HasFile(L"C:\\Manuals\\AAAA1MM\\contents\\dropped.html"));
    EXPECT_EQ(Page(workshop, L"BBBB1MM\\contents\\engine.html"), L"engine of BBBB1MM 5");
    EXPECT_EQ(Page(workshop, L"BBBB1MM\\contents\\index.html"), L"contents of BBBB1MM 4")
        << "not in the comparison set";
    EXPECT_FALSE(workshop.Windows.Tree.HasFolder(L"C:\\Manuals\\CCCC0MM"));
    EXPECT_EQ(Page(workshop, L"DDDD1MM\\contents\\DDDD1MM.pdf"), L"%PDF-1.4");
    EXPECT_EQ(workshop.View.FoldersAsked, 2) << "only the two manuals without a folder ask for one";
    EXPECT_EQ(workshop.Run.Outcome.ManualsRecorded, 4);
    EXPECT_EQ(workshop.Run.Outcome.ResultMessage, L"");
    EXPECT_EQ(workshop.Run.Outcome.ExitCode, ExitCode::Done);

    for (const wchar_t* made : {L"C:\\Manuals\\AAAA1MM", L"C:\\Manuals\\DDDD1MM"}) {
        EXPECT_FALSE(workshop.Windows.AccessControl.ListOf(made).empty()) << "open before it is recorded";
    }

    const auto before = workshop.Windows.Tree.Snapshot(L"C:\\Manuals");
    ASSERT_TRUE(workshop.Install()) << "a second run";
    EXPECT_FALSE(workshop.Windows.Tree.HasFolder(L"C:\\Vantor\\UnZipTemp")) << "left by the first";
    EXPECT_EQ(workshop.Run.Outcome.ManualsRecorded, 0);
    EXPECT_EQ(workshop.Windows.Tree.Snapshot(L"C:\\Manuals"), before);
}

TEST(Installation, StepsAndBarsShowTheWork) {
    Workshop workshop;
    workshop.PutArchiveManual(L"AAAA1MM", 1);
    workshop.PutArchiveManual(L"BBBB1MM", 1);
    std::vector<RecordingView::ShownStep> manualSteps;
    std::set<std::wstring> positions;
    RunProgress last;
    workshop.Windows.Clock.OnYield = [&] {
        manualSteps.push_back(workshop.View.Steps[Step::Manuals]);
        positions.insert(workshop.View.Position);
        EXPECT_LE(last.Part, workshop.View.Progress.Part);
        last = workshop.View.Progress;
        EXPECT_EQ(last.Writing, workshop.Windows.Computer.Awake);
        EXPECT_EQ(last.Writing, !workshop.View.Position.empty());
    };

    ASSERT_TRUE(workshop.Install()) << testing::PrintToString(workshop.Run.Outcome.ResultMessage);

    manualSteps.erase(std::unique(manualSteps.begin(), manualSteps.end()), manualSteps.end());
    EXPECT_EQ(manualSteps, (std::vector<RecordingView::ShownStep>{{L"message 15", StepState::Waiting},
                                                                  {L"message 16", StepState::Running},
                                                                  {L"message 17", StepState::Done}}));
    EXPECT_EQ(workshop.View.Steps[Step::Programs].first, L"message 11");
    EXPECT_EQ(positions, (std::set<std::wstring>{L"", L"message 102 1/2", L"message 102 2/2"}));
    EXPECT_EQ(workshop.View.Progress, (RunProgress{1, false, false}));
    const auto& copy = workshop.View.ShownBars[Bar::Copy];
    EXPECT_EQ(copy.front(), (BarState{0, 8, 4, true, true})) << "the first half stands for the extraction";
    EXPECT_EQ(copy.back(), (BarState{0, 8, 8, true, true}));
    EXPECT_EQ(workshop.View.ShownBars[Bar::SevenZip].front(), (BarState{0, 20, 0, true, true}));
    for (const Bar bar : {Bar::SevenZip, Bar::Copy, Bar::Pdf}) {
        EXPECT_FALSE(workshop.View.Bars[bar].Visible || workshop.View.Bars[bar].Enabled);
    }
}

TEST(Installation, OnlyEnabledBarsCreepAndOnlyToTheExpectedTime) {
    for (const std::int32_t expected : {0, 7}) {
        Workshop workshop;
        workshop.Run.Settings.ZipExtractTime = expected;
        workshop.PutPdfManual(L"DDDD1MM", 1);
        InstallationDriver driver(workshop.Run, workshop.View, workshop.View);
        driver.FormLoad();
        bool inTimer = false;
        workshop.Windows.Clock.OnYield = [&] {
            if (!inTimer) {
                inTimer = true;
                driver.Timer1();
                driver.Timer2();
                inTimer = false;
            }
        };
        ASSERT_TRUE(driver.RunInstallation());
        float highest = 0;
        for (const BarState& state : workshop.View.ShownBars[Bar::Pdf]) {
            highest = std::max(highest, state.Value);
        }
        EXPECT_EQ(highest, expected == 0 ? 1 : 11) << "a step of five may overshoot, none is made above " << expected;
        EXPECT_TRUE(workshop.View.ShownBars[Bar::SevenZip].empty());
    }
}

struct FailureCase {
    const char* Label;
    std::function<void(Workshop&)> Arrange;
    std::wstring ResultMessage;
    std::wstring ResultSubMessage;
    ExitCode Code = ExitCode::FailedPartWay;
};

class InstallationFailure : public testing::TestWithParam<FailureCase> {};

// The disc brings a new manual AAAA1MM and an update of MMMM1MM, in this order.
TEST_P(InstallationFailure, TellsWhatFailedAndKeepsTheInstalledEdition) {
    Workshop workshop;
    workshop.PutInstalledManual(L"MMMM1MM", 1);
    workshop.PutArchiveManual(L"AAAA1MM", 1);
    workshop.PutArchiveManual(L"MMMM1MM", 3);
    GetParam().Arrange(workshop);
    const auto installed = workshop.Windows.Tree.Snapshot(L"C:\\Manuals");
    const auto rows = workshop.Rows();

    EXPECT_FALSE(workshop.Install());

    EXPECT_EQ(workshop.Run.Outcome.ResultMessage, GetParam().ResultMessage);
    EXPECT_EQ(workshop.Run.Outcome.ResultSubMessage, GetParam().ResultSubMessage);
    EXPECT_EQ(workshop.Run.Outcome.ExitCode, GetParam().Code);
    EXPECT_TRUE(workshop.View.Progress.Failed);
    EXPECT_FALSE(workshop.View.Progress.Writing || workshop.Windows.Computer.Awake);
    const auto left = workshop.Windows.Tree.Snapshot(L"C:\\Manuals");
    for (const auto& [path, bytes] : installed) {
        EXPECT_TRUE(path.ends_with(L'\\') || (left.contains(path) && left.at(path) == bytes));
    }
    const auto rowsLeft = workshop.Rows();
    for (const auto& [pubNo, row] : rows) {
        EXPECT_EQ(rowsLeft.at(pubNo), row);
    }
}

void AnswerSetup(Workshop& workshop, int answer) {
    workshop.Windows.Tree.PutFile(L"D:\\programs\\manual_link\\setup.exe");
    workshop.Windows.MessageBoxes.Answers = {answer};
}

INSTANTIATE_TEST_SUITE_P(
    All, InstallationFailure,
    testing::Values(
        FailureCase{"NoManagerSetup",
                    [](Workshop& workshop) {
                        workshop.Windows.Tree.Erase(L"C:\\Vantor\\Manager.exe");
                        workshop.Windows.Tree.Erase(L"D:\\programs\\man_manager");
                    },
                    L"message 18", L"message 24"},
        FailureCase{"NoNewDatabase",
                    [](Workshop& workshop) { workshop.Windows.Tree.Erase(L"D:\\programs\\setup\\kvx3new.mdb"); },
                    L"message 71", L"message 24"},
        FailureCase{"CompanionFailedAndUserStops", [](Workshop& workshop) { AnswerSetup(workshop, boxes::AnswerNo); },
                    L"message 90", L"message 24"},
        FailureCase{"FieldTooLong", [](Workshop& workshop) { workshop.Run.Settings.Columns.Country = 1; },
                    L"car_info.ci data length Error program abort", L"PubNo = AAAA1MM [ Country length = 2 ]"},
        FailureCase{"DiscUnreadable", [](Workshop& workshop) { workshop.Windows.Tree.Deny(L"D:\\"); }, L"message 97",
                    L"message 24"},
        FailureCase{
            "ArchiveOfUpdateBroken",
            [](Workshop& workshop) { workshop.Windows.Archives.Break(L"D:\\MMMM1MM\\install\\condense\\manual.zip"); },
            L"message 23", L"message 24"},
        FailureCase{
            "ArchiveOfNewManualBroken",
            [](Workshop& workshop) { workshop.Windows.Archives.Break(L"D:\\AAAA1MM\\install\\condense\\manual.zip"); },
            L"message 23", L"message 24"},
        FailureCase{
            "ArchiveWithoutTopLevelFolder",
            [](Workshop& workshop) {
                workshop.Windows.Archives.Put(L"D:\\AAAA1MM\\install\\condense\\manual.zip", {{L"index.html", "page"}});
            },
            L"message 83", L"message 24"},
        FailureCase{
            "ArchiveOfUpdateWithoutTopLevelFolder",
            [](Workshop& workshop) {
                workshop.Windows.Archives.Put(L"D:\\MMMM1MM\\install\\condense\\manual.zip", {{L"index.html", "page"}});
            },
            L"message 83", L"message 24"},
        FailureCase{"ArchiveOfUpdateWantsOneNameTwice",
                    [](Workshop& workshop) {
                        workshop.Windows.Archives.Put(L"D:\\MMMM1MM\\install\\condense\\manual.zip",
                                                      {{L"M\\a", "page"}, {L"M\\a\\b.html", "page"}});
                    },
                    L"message 23", L"message 24"},
        FailureCase{"TargetDenied",
                    [](Workshop& workshop) {
                        workshop.Windows.Tree.PutFolder(L"C:\\Manuals\\AAAA1MM");
                        workshop.Windows.Tree.Deny(L"C:\\Manuals\\AAAA1MM\\contents");
                    },
                    L"message 83", L"message 24"},
        FailureCase{"InstalledEditionIsOpen",
                    [](Workshop& workshop) {
                        workshop.Windows.Tree.Find(L"C:\\Manuals\\MMMM1MM\\contents\\index.html")->OpenHandles = 1;
                    },
                    L"message 101", L"message 24"},
        FailureCase{"ReplacedPageIsOpen",
                    [](Workshop& workshop) {
                        workshop.PutArchiveManual(L"MMMM1MM", 2);
                        workshop.Windows.Tree.PutFile(L"D:\\MMMM1MM\\install\\compare\\a.html", "page");
                        workshop.Windows.Tree.PutFile(L"D:\\MMMM1MM\\install\\compare\\index.html", "page");
                        workshop.Windows.Tree.Find(L"C:\\Manuals\\MMMM1MM\\contents\\index.html")->OpenHandles = 1;
                    },
                    L"message 101", L"message 24"},
        FailureCase{"BaseEditionIsOpen",
                    [](Workshop& workshop) {
                        workshop.PutInstalledManual(L"AAAA0MM", 1);
                        workshop.Windows.Tree.Find(L"C:\\Manuals\\AAAA0MM\\index.html")->OpenHandles = 1;
                    },
                    L"message 101", L"message 24"},
        FailureCase{"ArchiveOfLaterEditionBroken",
                    [](Workshop& workshop) {
                        workshop.PutInstalledManual(L"AAAA0MM", 1);
                        workshop.Windows.Archives.Break(L"D:\\AAAA1MM\\install\\condense\\manual.zip");
                    },
                    L"message 23", L"message 24"},
        FailureCase{"PdfOfUpdateUnreadable",
                    [](Workshop& workshop) {
                        workshop.PutPdfManual(L"MMMM1MM", 3);
                        workshop.Windows.Tree.Deny(L"D:\\MMMM1MM\\contents\\MMMM1MM.pdf");
                    },
                    L"message 83", L"message 24"},
        FailureCase{"LastPageOfComparisonSetUnreadable",
                    [](Workshop& workshop) {
                        workshop.PutArchiveManual(L"MMMM1MM", 2);
                        workshop.PutComparisonSet(L"MMMM1MM", 2);
                        workshop.Windows.Tree.PutFile(L"D:\\MMMM1MM\\install\\compare\\last.html", "page");
                        workshop.Windows.Tree.Deny(L"D:\\MMMM1MM\\install\\compare\\last.html");
                    },
                    L"message 83", L"message 24"},
        FailureCase{"LeftoversStayInTheTemporaryFolder",
                    [](Workshop& workshop) {
                        workshop.Windows.Tree.PutFile(L"C:\\Vantor\\UnZipTemp\\ZZZZ1MM\\old.html").OpenHandles = 1;
                    },
                    L"message 23", L"message 24"},
        FailureCase{"RoomForOneCopyOnly",
                    [](Workshop& workshop) { workshop.Windows.Tree.DriveOf(L"C:\\")->FreeBytes = 20'000; },
                    L"message 22", L"message 24"},
        FailureCase{"NoEditionDigit", [](Workshop& workshop) { workshop.PutArchiveManual(L"AAAAXMM", 1); },
                    L"message 83", L"message 24"},
        FailureCase{"DriveFull", [](Workshop& workshop) { workshop.Windows.Tree.DriveOf(L"C:\\")->FreeBytes = 100; },
                    L"message 22", L"message 24"},
        FailureCase{"CancelBeforeAnything",
                    [](Workshop& workshop) {
                        workshop.View.OnAskForFolder = [&run = workshop.Run](const std::wstring&) {
                            run.Outcome.ResultMessage = L"message 25";
                            run.Outcome.ResultSubMessage = L"message 24";
                            return std::nullopt;
                        };
                    },
                    L"message 25", L"message 24", ExitCode::NotAccepted}),
    [](const auto& testCase) { return testCase.param.Label; });

struct PlaceCase {
    const char* Label;
    std::wstring RowPath;
    std::wstring File;  ///< below the row's path
    std::wstring NewPath;
    bool Asked;
    bool Stays = true;
};

class RowOfAnyUser : public testing::TestWithParam<PlaceCase> {};

TEST_P(RowOfAnyUser, OpensNoFolderButAManualsToRemoval) {
    Workshop workshop;
    FileTree& tree = workshop.Windows.Tree;
    tree.PutFile(L"C:\\Elsewhere\\contents\\index.html", "a page");
    tree.PutLink(L"C:\\Link", L"C:\\Elsewhere");
    if (!GetParam().File.empty()) {
        tree.PutFile(GetParam().RowPath + GetParam().File, "precious");
    }
    workshop.PutRow(L"MMMM1MM", 1, GetParam().RowPath);
    workshop.PutArchiveManual(L"MMMM1MM", 3);

    ASSERT_TRUE(workshop.Install()) << testing::PrintToString(workshop.Run.Outcome.ResultMessage);

    EXPECT_EQ(workshop.Rows().at(L"MMMM1MM"), (Row{L"3", GetParam().NewPath, L"0"}));
    EXPECT_TRUE(tree.HasFile(GetParam().NewPath + L"\\contents\\engine.html"));
    EXPECT_EQ(workshop.View.FoldersAsked, GetParam().Asked ? 1 : 0);
    EXPECT_TRUE(tree.HasFile(L"C:\\Elsewhere\\contents\\index.html"));
    if (!GetParam().File.empty()) {
        EXPECT_EQ(tree.HasFile(GetParam().RowPath + GetParam().File), GetParam().Stays);
    }
    EXPECT_EQ(workshop.Run.Log.Text().find(L"left alone") != std::wstring::npos, GetParam().Stays);
    for (const std::wstring& started : workshop.Windows.Processes.StartedHidden) {
        EXPECT_EQ(started.find(L"evil"), std::wstring::npos);
    }
}

INSTANTIATE_TEST_SUITE_P(
    All, RowOfAnyUser,
    testing::Values(PlaceCase{"Manual", L"C:\\Lib\\M", L"\\contents\\dropped.html", L"C:\\Lib\\MMMM1MM", false, false},
                    PlaceCase{"NoManual", L"C:\\Precious", L"\\data.txt", L"C:\\MMMM1MM", false},
                    PlaceCase{"NoManualOfTheSameName", L"C:\\Lib\\MMMM1MM", L"\\data.txt", L"C:\\Lib\\MMMM1MM", false},
                    PlaceCase{"ProgramsHome", L"c:\\vantor", L"\\contents\\a.html", L"c:\\MMMM1MM", false},
                    PlaceCase{"ProgramFiles", L"C:\\Program Files", L"\\contents\\a.html", L"C:\\MMMM1MM", false},
                    PlaceCase{"Link", L"C:\\Link", L"", L"C:\\MMMM1MM", false},
                    PlaceCase{"Root", L"C:\\", L"contents\\a.html", L"C:\\Manuals\\MMMM1MM", true},
                    PlaceCase{"System", L"C:\\Windows\\Web\\M", L"\\contents\\a.html", L"C:\\Manuals\\MMMM1MM", true},
                    PlaceCase{"Relative", L"Lib\\M", L"", L"C:\\Manuals\\MMMM1MM", true},
                    PlaceCase{"UpAgain", L"C:\\Lib\\..\\Elsewhere", L"", L"C:\\Manuals\\MMMM1MM", true},
                    PlaceCase{"Command", L"C:\\x\" & evil.exe & rem ", L"", L"C:\\Manuals\\MMMM1MM", true}),
    [](const auto& testCase) { return testCase.param.Label; });

TEST(Installation, AnEditionIsReplacedFromAFolderWithABlank) {
    Workshop workshop;
    FileTree& tree = workshop.Windows.Tree;
    workshop.PutInstalledManual(L"MMMM1MM", 1);
    workshop.PutArchiveManual(L"MMMM1MM", 3);
    tree.PutFile(L"D:\\Ondari 2021\\car_info.ci", tree.BytesOf(L"D:\\MMMM1MM\\car_info.ci"));
    tree.Erase(L"D:\\MMMM1MM");
    workshop.Windows.Archives.Put(L"D:\\Ondari 2021\\install\\condense\\manual.zip",
                                  Workshop::ManualPages(L"MMMM1MM", "MMMM1MM 3"));
    EXPECT_TRUE(workshop.Install());
    EXPECT_EQ(workshop.Rows().at(L"MMMM1MM"), (Row{L"3", L"C:\\Manuals\\MMMM1MM", L"0"}));
    EXPECT_EQ(tree.BytesOf(L"C:\\Manuals\\MMMM1MM\\index.html"), "frame of MMMM1MM 3");
}

TEST(Installation, ManualsInstalledBeforeAFailureStay) {
    Workshop workshop;
    workshop.PutArchiveManual(L"AAAA1MM", 1);
    workshop.PutArchiveManual(L"BBBB1MM", 1);
    workshop.Windows.Archives.Break(L"D:\\BBBB1MM\\install\\condense\\manual.zip");

    EXPECT_FALSE(workshop.Install());

    EXPECT_EQ(workshop.Rows(), (std::map<std::wstring, Row>{{L"AAAA1MM", {L"1", L"C:\\Manuals\\AAAA1MM", L"0"}}}));
    EXPECT_TRUE(workshop.Run.DiscCatalogue.Records[1].DoneFlag);
    EXPECT_FALSE(workshop.Run.DiscCatalogue.Records[2].DoneFlag);
    EXPECT_EQ(workshop.View.Steps[Step::Manuals], (RecordingView::ShownStep{L"message 16", StepState::Running}));
}

TEST(Installation, MissingCatalogueFileLeavesTheSecondTextAlone) {
    Workshop workshop;
    workshop.PutArchiveManual(L"AAAA1MM", 1);
    workshop.View.OnAskForFolder = [&](const std::wstring&) {
        workshop.Windows.Tree.Erase(L"C:\\Vantor\\kvx3.mdb");
        return L"C:\\Manuals";
    };
    EXPECT_FALSE(workshop.Install());
    EXPECT_EQ(workshop.Run.Outcome.ResultMessage, L"message 24");
    EXPECT_EQ(workshop.Run.Outcome.ResultSubMessage, L"");
}

TEST(Installation, CancelAfterAManualIsPartWay) {
    Workshop workshop;
    workshop.PutArchiveManual(L"AAAA1MM", 1);
    workshop.PutArchiveManual(L"BBBB1MM", 1);
    workshop.View.OnAskForFolder = [&](const std::wstring& proposal) {
        return workshop.View.FoldersAsked == 1 ? std::optional(proposal) : std::nullopt;
    };
    EXPECT_FALSE(workshop.Install());
    EXPECT_TRUE(workshop.Run.Outcome.InstallCancelled);
    EXPECT_EQ(workshop.Run.Outcome.ExitCode, ExitCode::CancelledPartWay);
}

TEST(Installation, InterruptedUpdateIsInstalledInFullByTheNextRun) {
    Workshop workshop;
    workshop.PutInstalledManual(L"AAAA1MM", 1);
    workshop.PutArchiveManual(L"AAAA1MM", 2);
    workshop.PutComparisonSet(L"AAAA1MM", 2);
    workshop.Windows.Tree.PutFile(L"D:\\AAAA1MM\\install\\compare\\last.html", "page");
    workshop.Windows.Tree.Deny(L"C:\\Manuals\\AAAA1MM\\contents\\last.html");
    EXPECT_FALSE(workshop.Install());
    EXPECT_EQ(workshop.Rows().at(L"AAAA1MM"), (Row{L"1", L"C:\\Manuals\\AAAA1MM", L"1"})) << "half old, half new";

    workshop.Windows.Tree.Erase(L"D:\\AAAA1MM\\install\\compare\\last.html");
    workshop.Install();
    EXPECT_EQ(workshop.Run.DiscCatalogue.Records[1].InstallKind, InstallKind::Full);
}

TEST(Installation, AManualIsMovedIntoItsPlaceAndNeedsItsRoomOnceWhereNothingIs) {
    constexpr std::uint64_t OnceButNotTwice = 4 * 4096 + 256 * 1024 + 8000;
    for (const bool isThere : {false, true}) {
        SCOPED_TRACE(isThere);
        Workshop workshop;
        workshop.PutArchiveManual(L"AAAA1MM", 1);
        if (isThere) {
            workshop.Windows.Tree.PutFile(L"C:\\Manuals\\AAAA1MM\\note.txt");
        }
        workshop.Windows.Tree.DriveOf(L"C:\\")->FreeBytes = OnceButNotTwice;

        EXPECT_EQ(workshop.Install(), !isThere);

        EXPECT_EQ(workshop.Run.Outcome.ResultMessage, isThere ? L"message 22" : L"");
        EXPECT_EQ(workshop.Windows.AccessControl.ListOf(L"C:\\Manuals\\AAAA1MM").empty(), isThere);
        EXPECT_EQ(workshop.Windows.Tree.HasFolder(L"C:\\Vantor\\UnZipTemp\\AAAA1MM"), false);
        EXPECT_TRUE(workshop.Windows.Processes.StartedHidden.empty()) << "there is nothing to remove";
    }
}

}  // namespace
}  // namespace mip
