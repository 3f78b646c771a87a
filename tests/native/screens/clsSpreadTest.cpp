#include <gtest/gtest.h>

#include <stdexcept>

#include "screens/ClsEvent.h"
#include "screens/GridModel.h"
#include "screens/clsSpread.h"
#include "text/TextTools.h"

namespace mip {
namespace {

/// Writes down the properties that it is given.
struct RecordingGrid : GridModel {
    using GridModel::GridModel;
    void SetProperty(const std::wstring& name, const GridValue& value) override {
        const auto* number = std::get_if<std::int32_t>(&value);
        const auto* text = std::get_if<std::wstring>(&value);
        const int other = number != nullptr ? *number : int{value == GridValue(true)};
        Given += name + L"=" + (text != nullptr ? *text : std::to_wstring(other)) + L" ";
        GridModel::SetProperty(name, value);
    }
    std::wstring Given;
};

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
    EXPECT_EQ(handle_, 1);
    EXPECT_EQ(spread_.SpdIni(second), 2);
    spread_.SpdRelease(1);
    EXPECT_EQ(spread_.SpdIni(third), 1);
    EXPECT_EQ(spread_.SpdIni(grid_), 3);
}

TEST_F(SpreadTest, TheGridIsGivenItsPropertiesByNameAndInOrder) {
    RecordingGrid grid(2, 2);
    const std::int16_t handle = spread_.SpdIni(grid);
    spread_.SpdItemSet(handle, 2, 1, L"0", L"x");
    grid.GridModel::SetProperty(L"CellType", GridModel::PictureCell);
    spread_.SpdItemSet(handle, 2, 1, L"00", L"a.bmp");
    spread_.SpdClear(handle, 1);
    spread_.SpdCmboSet(handle, 2, L"one");
    EXPECT_EQ(faults_.Count, 0) << "it knows them all";
    EXPECT_EQ(grid.Given,
              L"EditModePermanent=0 EditModeReplace=0 AutoClipboard=1 ArrowsExitEditMode=0 RetainSelBlock=1 "
              L"Protect=1 AllowMultiBlocks=0 MoveActiveOnFocus=1 AllowCellOverflow=0 NoBeep=0 AllowDragDrop=0 "
              L"NoBorder=0 ProcessTab=0 AutoSize=0 AutoCalc=0 AllowUserFormulas=0 FormulaSync=0 AllowEditOverflow=0 "
              L"ClipboardOptions=15 Appearance=0 CellNoteIndicator=0 TwoDigitYearMax=2059 ButtonDrawMode=0 "
              L"SelectBlockOptions=0 OperationMode=2 EditEnterAction=0 Row=2 Col=1 BackColor=16766378 Row=2 Col=1 "
              L"BackColor=16777215 TypeHAlign=0 TypeVAlign=0 TypePictMaintainScale=1 TypePictStretch=1 "
              L"TypePictPicture=a.bmp Row=1 Col=1 Row2=2 Col2=2 ColsFrozen=0 RowsFrozen=0 BlockMode=1 Action=29 "
              L"Action=12 BlockMode=0 MaxRows=1 Row=1 Row2=1 BlockMode=1 Action=0 BlockMode=0 ReDraw=0 Col=2 Row=1 "
              L"Col2=2 Row2=1 BlockMode=1 TypeComboBoxList=one BlockMode=0 TypeComboBoxCurSel=0 ReDraw=1 ");
}

TEST_F(SpreadTest, ClearingABlockLeavesTheRest) {
    for (const auto& [rows, col, row, col2, row2, expected] : {std::tuple{-1, -1, -1, -1, -1, L"||/||/||"},
                                                               {-1, 2, 2, -1, -1, L"a|b|c/a||/a||"},
                                                               {-1, 2, 2, 2, 2, L"a|b|c/a||c/a|b|c"},
                                                               {1, -1, -1, -1, -1, L"||"},
                                                               {0, -1, -1, -1, -1, L""}}) {
        GridModel grid(3, 3);
        const std::int16_t handle = spread_.SpdIni(grid);
        Fill(spread_, handle);
        spread_.SpdClear(handle, rows, col, row, col2, row2);
        EXPECT_EQ(Texts(grid), expected);
        EXPECT_EQ(grid.ActiveRow(), grid.Rows() > 0 ? 1 : 0);
    }
}

TEST_F(SpreadTest, NewRowsTakeTheFirstRowsHeightAtRegistrationAndTheHeaderKeepsItsOwn) {
    grid_.SetProperty(L"RowHeight", 0, 30.0);
    grid_.SetProperty(L"RowHeight", 1, 50.0);
    grid_.SetProperty(L"Row", 3);
    grid_.SetProperty(L"Action", 0);
    spread_.SpdMaxRowsChg(handle_, 2);
    EXPECT_EQ(grid_.ActiveRow(), 2);
    grid_.SetProperty(L"Action", 29);
    EXPECT_EQ(grid_.ActiveRow(), 0);
    spread_.SpdMaxRowsChg(handle_, 4);
    EXPECT_EQ(Texts(grid_), L"a|b|c/a|b|c/||/||") << "a row that was gone comes back empty";
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
    EXPECT_EQ(Texts(grid_), L"a|one|c/a|b|c/a|b|c");
    for (const auto& [chosen, text] : {std::pair{1, L"two"}, {2, L""}, {-1, L"b"}}) {
        grid_.SetProperty(L"TypeComboBoxCurSel", chosen);
        EXPECT_EQ(spread_.SpdItemGet(handle_, 1, 2), text);
    }
}

TEST(GridModelTest, RejectsWhatItDoesNotKnow) {
    GridModel grid(2, 2);
    const auto rejects = [&grid](const auto&... given) {
        try {
            grid.SetProperty(given...);
            return false;
        } catch (const std::invalid_argument&) {
            return true;
        }
    };
    EXPECT_TRUE(rejects(L"Colour", 1) && rejects(L"MaxRows", L"two") && rejects(L"MaxRows", -1) &&
                rejects(L"MaxRows", 100'001) && rejects(L"MaxCols", 2) && rejects(L"Action", 77));
    EXPECT_TRUE(rejects(L"Height", 1, 10.0) && rejects(L"RowHeight", 1, 10) && rejects(L"RowHeight", 1, -0.5) &&
                rejects(L"RowHeight", -2, 10.0) && rejects(L"RowHeight", 3, 10.0));
    for (const auto& [col, row] : {std::pair{0, 1}, {3, 1}, {1, -1}, {1, 3}}) {
        EXPECT_THROW(grid.SetText(col, row, L"x"), std::invalid_argument) << col << row;
    }
    EXPECT_THROW(grid.GetProperty(L"Colour"), std::invalid_argument);
    EXPECT_THROW(grid.GetProperty(L"Height", 1), std::invalid_argument);
    EXPECT_FALSE(rejects(L"RowHeight", 2, 0.0) || rejects(L"MaxRows", 100'000)) << "just possible";
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
