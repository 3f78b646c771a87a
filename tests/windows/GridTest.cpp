#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "forms/Drawing.h"
#include "forms/GridWindow.h"
#include "screens/clsSpread.h"

namespace mip {
namespace {

constexpr int Rows = 5000;
constexpr wchar_t Picture[] = L"C:\\red.bmp";

/// A bitmap file of two pixels side by side.
constexpr char TwoRedPixels[] =
    "BM>\0\0\0\0\0\0\0\x36\0\0\0\x28\0\0\0\2\0\0\0\1\0\0\0\1\0\x18\0\0\0\0\0\x8\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0"
    "\0\0\xFF\0\0\xFF\0\0";

LRESULT CALLBACK AskGrid(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR, DWORD_PTR grid) {
    const auto answer = message == WM_NOTIFY ? reinterpret_cast<GridWindow*>(grid)->OnNotify(lParam) : std::nullopt;
    return answer ? *answer : DefSubclassProc(window, message, wParam, lParam);
}

/// Rows "row1", "row2" ... with their numbers beside them; row 3 is coloured, row 2 has a wide red picture.
class GridTest : public testing::Test, private SpreadForm {
  protected:
    GridTest() {
        std::ofstream(std::filesystem::path(Picture), std::ios::binary).write(TwoRedPixels, 62);
        SetWindowSubclass(parent_, AskGrid, 0, reinterpret_cast<DWORD_PTR>(&grid_));
        grid_.Attach(list_);
        grid_.Model().SetProperty(L"MaxRows", Rows);
        spread_.SplListingStart(*this);
        for (int row = 0; row <= Rows; ++row) {
            const std::wstring number = std::to_wstring(row);
            spread_.SpdItemRowSet(handle_, row, row == 3 ? L"0" : L"1", {L"row" + number, number});
        }
        grid_.Model().SetProperty(L"Row", 2);
        grid_.Model().SetProperty(L"CellType", GridModel::PictureCell);
        spread_.SpdItemSet(handle_, 2, 2, L"1", Picture);
        EXPECT_EQ(ListView_GetItemCount(list_), Rows);
        spread_.SplListingEnd(*this);
    }
    ~GridTest() override {
        DestroyWindow(parent_);
        std::filesystem::remove(Picture);
    }
    std::vector<SpreadGrid*> SpreadGrids() override { return {&grid_.Model()}; }

    RECT Cell(int col, int row) const {
        RECT cell{};
        ListView_GetSubItemRect(list_, row - 1, col - 1, LVIR_BOUNDS, &cell);
        return cell;
    }
    COLORREF Pixel(long x, long y) const {
        return GetPixel(WindowDc(list_).Get(), static_cast<int>(x), static_cast<int>(y));
    }

    GridWindow grid_{0, 2};
    HWND parent_ =
        CreateWindowExW(0, L"STATIC", L"", WS_POPUP | WS_VISIBLE, 10, 10, 300, 200, nullptr, nullptr, nullptr, nullptr);
    HWND list_ = CreateWindowExW(0, WC_LISTVIEWW, L"", WS_CHILD | WS_VISIBLE | GridWindow::Style, 0, 0, 300, 200,
                                 parent_, nullptr, nullptr, nullptr);
    clsSpread spread_{NoFaultLog::Instance()};
    std::int16_t handle_ = spread_.SpdIni(grid_.Model());
};

TEST_F(GridTest, ShowsColoursAndPicturesOfCells) {
    ASSERT_FALSE(Colours().HighContrast) << "the tests' computer has no colours of its own";
    UpdateWindow(list_);
    const RECT picture = Cell(2, 2);
    EXPECT_EQ(Pixel(picture.left - 2, picture.top + 4), GetSysColor(COLOR_WINDOW));
    EXPECT_EQ(Pixel(picture.left - 2, picture.bottom + 4), COLORREF{clsSpread::LightBlue});
    EXPECT_EQ(Pixel(picture.left + 12, (picture.top + picture.bottom) / 2), RGB(255, 0, 0));
    EXPECT_EQ(Pixel(picture.left + 12, picture.top + 3), GetSysColor(COLOR_WINDOW)) << "it keeps its shape";
}

TEST_F(GridTest, FindsWhatIsTyped) {
    // The list asks so for what was typed up to now; more than a letter at a time would be judged by the clock.
    LVFINDINFOW typed{};
    typed.flags = LVFI_STRING | LVFI_PARTIAL;
    typed.psz = L"Row77";
    EXPECT_EQ(SendMessageW(list_, LVM_FINDITEMW, static_cast<WPARAM>(-1), reinterpret_cast<LPARAM>(&typed)), 76);
    SendMessageW(list_, WM_CHAR, L'R', 1);
    EXPECT_EQ(grid_.SelectedText(), L"row2\t2\r\n") << "the next that begins so";
}

TEST_F(GridTest, ColumnsAreAsWideAsTheirTextsAndTheLastTakesTheRest) {
    const auto width = [this](int col) { return ListView_GetColumnWidth(list_, col); };
    RECT client{};
    for (const int dpi : {96, 144}) {
        grid_.Fit(dpi);
        GetClientRect(list_, &client);
        EXPECT_EQ(width(0) + width(1), client.right);
        EXPECT_GT(width(0), ListView_GetStringWidth(list_, L"row5000"));
        EXPECT_NEAR(Cell(1, 1).bottom - Cell(1, 1).top, 24 * dpi / 96, 2) << "18 points";
    }
    grid_.Model().SetText(1, 4000, std::wstring(100, L'W'));
    EXPECT_GT(width(0), client.right);
}

}  // namespace
}  // namespace mip
