#include <gtest/gtest.h>

#include "forms/Drawing.h"
#include "forms/GridWindow.h"

namespace mip {
namespace {

constexpr int Rows = 40;

/// A grid of 40 rows, of which a few fit into its window.
class GridTest : public testing::Test {
  protected:
    GridTest() {
        window_ = CreateWindowExW(0, GridWindow::ClassName(), L"", WS_POPUP | WS_VISIBLE, 10, 10, 300, 200, nullptr,
                                  nullptr, GetModuleHandleW(nullptr), nullptr);
        grid_.Attach(window_);
        SendMessageW(window_, WM_SETFONT, reinterpret_cast<WPARAM>(GetStockObject(DEFAULT_GUI_FONT)), TRUE);
        for (int row = 0; row <= Rows; ++row) {
            grid_.Model().SetText(1, row, L"row " + std::to_wstring(row));
            grid_.Model().SetText(2, row, row);
        }
    }
    ~GridTest() override { DestroyWindow(window_); }

    void Key(WPARAM key) const { SendMessageW(window_, WM_KEYDOWN, key, 1); }
    int Position(int bar) const { return GetScrollPos(window_, bar); }
    COLORREF Pixel(int x, int y) const {
        UpdateWindow(window_);
        return GetPixel(WindowDc(window_).Get(), x, y);
    }

    GridWindow grid_{Rows, 2};
    HWND window_ = nullptr;
};

TEST_F(GridTest, KeysMoveTheActiveRowAndBringItIntoView) {
    const std::tuple<WPARAM, std::int32_t, bool> steps[] = {
        {VK_DOWN, 1, false},   {VK_UP, 1, false},   {VK_DOWN, 2, false}, {VK_END, Rows, true},
        {VK_DOWN, Rows, true}, {VK_HOME, 1, false}, {VK_PRIOR, 1, false}};
    for (const auto& [key, row, scrolled] : steps) {
        Key(key);
        EXPECT_EQ(grid_.Model().ActiveRow(), row);
        EXPECT_EQ(Position(SB_VERT) > 0, scrolled);
    }
    Key(VK_NEXT);
    EXPECT_GT(grid_.Model().ActiveRow(), 3);
    EXPECT_LT(grid_.Model().ActiveRow(), 10);
}

TEST_F(GridTest, AClickChoosesTheRowUnderTheMouseAlsoAfterScrolling) {
    const auto clickAt = [this](int y) {
        SendMessageW(window_, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(20, y));
        return grid_.Model().ActiveRow();
    };
    EXPECT_EQ(clickAt(30), 1);
    EXPECT_EQ(clickAt(5), 1) << "the header is no row";
    SendMessageW(window_, WM_VSCROLL, SB_BOTTOM, 0);
    EXPECT_EQ(clickAt(195), Rows);
}

TEST_F(GridTest, WheelAndArrowsScrollWithinWhatThereIs) {
    SendMessageW(window_, WM_MOUSEWHEEL, MAKEWPARAM(0, static_cast<WORD>(-WHEEL_DELTA)), 0);
    EXPECT_GT(Position(SB_VERT), 0);
    SendMessageW(window_, WM_MOUSEWHEEL, MAKEWPARAM(0, 10 * WHEEL_DELTA), 0);
    EXPECT_EQ(Position(SB_VERT), 0);
    Key(VK_RIGHT);
    EXPECT_EQ(Position(SB_HORZ), 0);
    grid_.Model().SetText(2, 3, std::wstring(200, L'W'));
    Key(VK_RIGHT);
    EXPECT_GT(Position(SB_HORZ), 0);
}

TEST_F(GridTest, ACellsColourIsShownAndWhiteRowsAlternate) {
    ASSERT_FALSE(Colours().HighContrast) << "the tests' computer has no colours of its own";
    grid_.Model().SetProperty(L"Row", 2);
    grid_.Model().SetProperty(L"Col", 1);
    grid_.Model().SetProperty(L"BackColor", 0xFFD5AA);
    const int height = 24;
    EXPECT_EQ(Pixel(3, height + 8), Colours().Page);
    EXPECT_EQ(Pixel(3, 2 * height + 8), COLORREF{0xFFD5AA});
    EXPECT_EQ(Pixel(3, 4 * height + 8), Colours().OddRow);
}

TEST_F(GridTest, ItsWindowTextIsTheListAndReDrawHoldsItsPicture) {
    grid_.Model().SetProperty(L"MaxRows", 1);
    wchar_t text[64];
    GetWindowTextW(window_, text, 64);
    EXPECT_STREQ(text, L"row 0\t0\r\nrow 1\t1\r\n");
    UpdateWindow(window_);
    grid_.Model().SetProperty(L"ReDraw", false);
    grid_.Model().SetText(1, 1, L"changed");
    EXPECT_EQ(GetUpdateRect(window_, nullptr, FALSE), 0);
    grid_.Model().SetProperty(L"ReDraw", true);
    EXPECT_NE(GetUpdateRect(window_, nullptr, FALSE), 0);
}

}  // namespace
}  // namespace mip
