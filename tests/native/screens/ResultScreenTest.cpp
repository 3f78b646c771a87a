#include "screens/ResultScreen.h"

#include <algorithm>

#include "screens/GridModel.h"
#include "tests/native/screens/ScreensTest.h"

namespace mip {
namespace {

class ResultScreenTest : public ScreensTest, private SpreadForm {
  protected:
    std::vector<SpreadGrid*> SpreadGrids() override { return {&grid_}; }

    /// The list's lines.
    std::wstring Load() {
        EXPECT_TRUE(ResultList(program_, *this, grid_).Load());
        return grid_.AllText();
    }

    void Add(const std::wstring& pubNo, std::int16_t order, const std::wstring& year, const std::wstring& kubun) {
        DiscCatalogueRecord& manual = AddManual(pubNo);
        manual.OrderNo = order;
        manual.Year = year;
        manual.Kubun = kubun;
    }

    GridModel grid_{0, 6};
};

TEST_F(ResultScreenTest, ManualsAreListedByOrderThenYearThenKindThenPlaceOnTheDisc) {
    Add(L"order 100", 100, L"2001", L"");
    Add(L"order 9, 2020", 9, L"2020", L"b");
    Add(L"order 9, year 999", 9, L"999", L"z");
    Add(L"order 9, year 01x", 9, L"01x", L"");
    Add(L"order 9, 2020, kind a", 9, L"2020", L"a");
    Add(L"order 9, 2020 again", 9, L"2020", L"b");
    Add(L"order 9, no year", 9, L"MY", L"b");
    SortDiscCatalogue(program_.DiscCatalogue, BuildSortOrder(program_.DiscCatalogue));
    std::vector<std::wstring> sorted;
    for (const DiscCatalogueRecord& manual : program_.DiscCatalogue.Records) {
        sorted.push_back(manual.Pub_No);
    }
    EXPECT_EQ(sorted,
              (std::vector<std::wstring>{L"", L"order 9, year 999", L"order 9, year 01x", L"order 9, 2020, kind a",
                                         L"order 9, 2020", L"order 9, 2020 again", L"order 9, no year", L"order 100"}));
    program_.DiscCatalogue = {};
    for (int i = 1; i <= 120; ++i) {
        Add(std::to_wstring(i), 1, L"2020", L"");
    }
    const auto order = BuildSortOrder(program_.DiscCatalogue);
    EXPECT_TRUE(order.size() == 120 && std::ranges::is_sorted(order)) << "equal manuals keep their places";
}

TEST_F(ResultScreenTest, TheListShowsWhatWasChosenForInstallation) {
    Add(L"K1210MM", 0, L"2019", L"整備書");
    DiscCatalogueRecord& talis = program_.DiscCatalogue.Records.back();
    talis.Model_desc = L"Talis";
    talis.Lang = L"EN";
    talis.Version = L"3";
    AddManual(L"not chosen").InstallFlag = Selection::UpToDate;
    AddManual(L"superseded").InstallFlag = Selection::Superseded;
    Add(L"K1", -1, L"2019", L"");
    int drawn = 0;
    grid_.OnChange([&drawn] { ++drawn; });
    program_.Identity.LanguageCode = L"11";
    const std::wstring header = L"message 35\tmessage 37\tmessage 38\tmessage 68\tmessage 69\tmessage 55\r\n";
    EXPECT_EQ(Load(), header + L"\t\t\tK1\t\tmessage 52\r\nTalis\t整備書\tEN\tK1210MM\t3\tmessage 52\r\n");
    const int drawnForTwo = std::exchange(drawn, 0);
    program_.Identity.LanguageCode = L"09";
    program_.DiscCatalogue.Records[1].InstallFlag = Selection::UpToDate;
    EXPECT_EQ(Load(), header + L"Talis\t2019\tEN\tK1210MM\t3\tmessage 52\r\n") << "a second listing replaces the first";
    EXPECT_EQ(drawn, drawnForTwo) << "all rows at once";
    program_.DiscCatalogue.Clear();
    EXPECT_EQ(Load(), header);
}

TEST_F(ResultScreenTest, AManualWithoutStateKeepsTheStatusOfTheRowBefore) {
    using enum InstallState;
    const std::pair<InstallState, const wchar_t*> states[] = {
        {None, L""},           {New, L"message 52"},     {Update, L"message 53"},
        {None, L"message 53"}, {Nothing, L"message 54"}, {NotImported, L"取込対象外"},
        {None, L"取込対象外"}};
    for (const auto& [state, text] : states) {
        AddManual(L"K").InstallState = state;
    }
    Load();
    for (std::int32_t row = 1; row <= grid_.Rows(); ++row) {
        EXPECT_EQ(grid_.GetText(6, row), states[row - 1].second) << row;
    }
}

TEST_F(ResultScreenTest, AfterAFailureTheInstalledManualsStandOut) {
    AddManual(L"installed").DoneFlag = true;
    AddManual(L"failed").InstallState = InstallState::None;
    windows_.Tree.PutFile(Workshop::Messages, "[MESSAGE]\r\nM052=message 52\r\nM106=@ (installed)\r\n");
    Load();
    EXPECT_EQ(grid_.CellProperty(1, 1, L"BackColor"), GridValue(0xFFD5AA));
    EXPECT_EQ(grid_.GetText(6, 1), L"message 52 (installed)") << "also for who does not see the colour";
    EXPECT_EQ(grid_.CellProperty(1, 2, L"BackColor"), GridValue(0xFFFFFF));
    EXPECT_EQ(grid_.GetText(6, 2), L"message 52");
    program_.Outcome.ResultKind = true;
    Load();
    EXPECT_EQ(grid_.CellProperty(1, 1, L"BackColor"), GridValue(0xFFFFFF));
}

TEST_F(ResultScreenTest, TheCopyHoldsTheOutcomeTheListAndTheLog) {
    EXPECT_EQ(GetOutcomeTexts(program_), (OutcomeTexts{true, L"message 64", L"message 65"}));
    program_.Log.Write(L"copy", L"K1", L"failed");
    program_.Outcome.ResultSubMessage = L"what now";
    EXPECT_EQ(GetOutcomeTexts(program_), (OutcomeTexts{false, L"", L"what now"})) << "one text makes a failure";
    program_.Outcome.ResultMessage = L"what happened";
    EXPECT_EQ(TextToCopy(program_, grid_), L"what happened\r\nwhat now\r\n\r\n" + program_.Log.Text());
    AddManual(L"K1").Version = L"3";
    Load();
    EXPECT_EQ(TextToCopy(program_, grid_),
              L"what happened\r\nwhat now\r\n\r\n"
              L"message 35\tmessage 37\tmessage 38\tmessage 68\tmessage 69\tmessage 55\r\n"
              L"\t\t\tK1\t3\tmessage 52\r\n\r\n" +
                  program_.Log.Text());
    EXPECT_NE(program_.Log.Text().find(L"copy\tK1\tfailed\r\n"), std::wstring::npos);
}

TEST_F(ResultScreenTest, StatusByDateComparesToTheSecond) {
    using namespace std::chrono_literals;
    const StatusTexts texts(program_);
    Installation& run = program_.Installation;
    run.InstallTime1 = windows_.Clock.Now() + 1s;
    run.InstallTime2 = windows_.Clock.Now() + 2s;
    EXPECT_EQ(texts.StatusTextForDate(run, run.InstallTime1), L"message 52");
    EXPECT_EQ(texts.StatusTextForDate(run, run.InstallTime2), L"message 53");
    EXPECT_EQ(texts.StatusTextForDate(run, run.InstallTime2 + 1s), L"message 54");
}

TEST_F(ResultScreenTest, TheShortcutIsOfferedOnceAndPointsToTheManager) {
    windows_.Tree.PutFolder(L"C:\\Desktop");
    windows_.Shell.SpecialFolders[25] = L"C:\\Desktop";
    program_.Settings.ShortcutIconFlag = 1;
    EXPECT_FALSE(MayOfferDesktopShortcut(program_)) << "no manager program";
    windows_.Tree.PutFile(L"C:\\Vantor\\Manager.exe");
    program_.Settings.ShortcutIconFlag = 0;
    EXPECT_FALSE(MayOfferDesktopShortcut(program_)) << "not wanted by the settings";
    program_.Settings.ShortcutIconFlag = 1;
    EXPECT_TRUE(MayOfferDesktopShortcut(program_));
    MakeDesktopShortcut(program_);
    EXPECT_EQ(windows_.Shell.Shortcuts.at(L"C:\\Desktop\\message 43.lnk").Text(L"TargetPath"),
              L"C:\\Vantor\\Manager.exe");
    EXPECT_FALSE(MayOfferDesktopShortcut(program_)) << "there is one now";
}

}  // namespace
}  // namespace mip
