#include <gtest/gtest.h>

#include <stdexcept>

#include "screens/ClsEvent.h"
#include "screens/GridModel.h"
#include "screens/clsSpread.h"
#include "text/TextTools.h"

namespace mip {
namespace {

constexpr std::int32_t LightBlue = 0xFFD5AA;
constexpr std::int32_t White = 0xFFFFFF;

class SpreadTest : public testing::Test {
  protected:
    SpreadTest() { Fill(spread_, handle_); }

    static void Fill(clsSpread& spread, std::int16_t handle) {
        for (std::int32_t row = 1; row <= 3; ++row) {
            spread.SpdItemRowSet(handle, row, L"1", {L"a", L"b", L"c"});
        }
    }
    /// All data cells, rows separated by "/".
    static std::wstring Texts(const GridModel& grid) {
        std::wstring texts;
        for (std::int32_t row = 1; row <= grid.Rows(); ++row) {
            texts += (row > 1 ? L"/" : L"") + ReplaceAll(ReplaceAll(grid.RowText(row), L"\r\n", L""), L"\t", L"|");
        }
        return texts;
    }
    struct CountedFaults : FaultLog {
        void Trapped(std::string_view, const std::exception&) override { ++Count; }
        int Count = 0;
    } faults_;
    GridModel grid_{3, 3};
    clsSpread spread_{faults_};
    std::int16_t handle_ = spread_.SpdIni(grid_);
};

TEST_F(SpreadTest, HandlesCountFromOneAndAFreedOneIsReused) {
    GridModel second(1, 1);
    GridModel third(1, 1);
    EXPECT_EQ(grid_.GetProperty(L"OperationMode"), GridValue(2)) << "read-only by rows";
    EXPECT_EQ(faults_.Count, 0) << "it knows all that it is set to";
    EXPECT_EQ(handle_, 1);
    EXPECT_EQ(spread_.SpdIni(second), 2);
    spread_.SpdRelease(1);
    EXPECT_EQ(spread_.SpdIni(third), 1);
    EXPECT_EQ(spread_.SpdIni(grid_), 3);
}

TEST_F(SpreadTest, ClearingABlockLeavesTheRest) {
    const struct {
        std::int32_t Rows, Col, Row, Col2, Row2;
        const wchar_t* Expected;
    } cases[] = {{-1, -1, -1, -1, -1, L"||/||/||"},
                 {-1, 2, 2, -1, -1, L"a|b|c/a||/a||"},
                 {-1, 2, 2, 2, 2, L"a|b|c/a||c/a|b|c"},
                 {1, -1, -1, -1, -1, L"||"},
                 {0, -1, -1, -1, -1, L""}};
    for (const auto& c : cases) {
        GridModel grid(3, 3);
        const std::int16_t handle = spread_.SpdIni(grid);
        Fill(spread_, handle);
        spread_.SpdClear(handle, c.Rows, c.Col, c.Row, c.Col2, c.Row2);
        EXPECT_EQ(Texts(grid), c.Expected);
        EXPECT_EQ(grid.ActiveRow(), grid.Rows() > 0 ? 1 : 0);
        EXPECT_EQ(grid.GetProperty(L"BlockMode"), GridValue(false));
    }
}

TEST_F(SpreadTest, OnlyTheFlagZeroColoursACell) {
    for (const auto& [flag, colour] :
         {std::pair<std::wstring, std::int32_t>{L"0", LightBlue}, {L"1", White}, {L"", White}, {L"00", White}}) {
        spread_.SpdItemSet(handle_, 2, 2, flag, L"x");
        EXPECT_EQ(grid_.CellProperty(2, 2, L"BackColor"), GridValue(colour));
        EXPECT_EQ(spread_.SpdItemGet(handle_, 2, 2), L"x");
        EXPECT_EQ(grid_.CellProperty(1, 2, L"BackColor"), GridValue(White));
    }
}

TEST_F(SpreadTest, NewRowsTakeTheFirstRowsHeightAtRegistrationAndTheHeaderKeepsItsOwn) {
    grid_.SetProperty(L"RowHeight", 0, 30.0);
    grid_.SetProperty(L"RowHeight", 1, 50.0);
    spread_.SpdMaxRowsChg(handle_, 5);
    EXPECT_EQ(grid_.Rows(), 5);
    EXPECT_EQ(grid_.GetProperty(L"RowHeight", 0), GridValue(30.0));
    EXPECT_EQ(grid_.RowHeight(), GridModel::DefaultRowHeight);
}

TEST_F(SpreadTest, UnknownHandlesAndWhatTheGridRejectsDoNothing) {
    for (const std::int16_t handle : {handle_, std::int16_t{0}, std::int16_t{-1}, std::int16_t{99}}) {
        EXPECT_NO_THROW({
            spread_.SpdClear(handle, 1, 9, 1, 9);
            spread_.SpdItemRowSet(handle, 9, L"0", {L"x"});
            spread_.SpdMaxRowsChg(handle, -1);
            spread_.SpdCmboSet(handle, 9, L"x");
            EXPECT_EQ(spread_.SpdItemGet(handle, 1, 9), L"");
        });
    }
    EXPECT_EQ(Texts(grid_), L"a|b|c/a|b|c/a|b|c");
}

TEST_F(SpreadTest, ADropDownListShowsItsFirstItemAndIsDrawnOnce) {
    int drawn = 0;
    grid_.OnChange([&drawn] { ++drawn; });
    spread_.SpdCmboSet(handle_, 2, L"one\ttwo");
    EXPECT_EQ(drawn, 1);
    EXPECT_EQ(spread_.SpdItemGet(handle_, 1, 2), L"one");
}

TEST(GridModelTest, RejectsWhatItDoesNotKnow) {
    GridModel grid(2, 2);
    EXPECT_THROW(grid.SetProperty(L"Colour", 1), std::invalid_argument);
    EXPECT_THROW(grid.SetProperty(L"MaxRows", L"two"), std::invalid_argument);
    EXPECT_THROW(grid.SetProperty(L"MaxRows", -1), std::invalid_argument);
    EXPECT_THROW(grid.SetProperty(L"Action", 77), std::invalid_argument);
    EXPECT_THROW(grid.SetProperty(L"RowHeight", 3, 10.0), std::invalid_argument);
    EXPECT_THROW(grid.SetText(3, 1, L"x"), std::invalid_argument);
    EXPECT_EQ(grid.Rows(), 2);
}

TEST(ClsEventTest, ListenersHearInOrderAndGetCopies) {
    ClsEvent event;
    event.EventSend(1);
    std::vector<std::wstring> heard;
    event.Listen([&](EventValue value) {
        std::get<std::wstring>(value) += L" changed";
        heard.push_back(L"first " + std::get<std::wstring>(value));
    });
    event.Listen([&](EventValue value) { heard.push_back(L"second " + std::get<std::wstring>(value)); });
    const EventValue sent = L"text";
    event.EventSend(sent);
    EXPECT_EQ(heard, (std::vector<std::wstring>{L"first text changed", L"second text"}));
    EXPECT_EQ(sent, EventValue(L"text"));
}

}  // namespace
}  // namespace mip
