#include <algorithm>

#include "forms/Drawing.h"
#include "forms/GridWindow.h"

namespace mip {

namespace {

constexpr int CellPadding = 10;
constexpr std::int32_t White = 0xFFFFFF;

int WidthOf(HDC dc, const std::wstring& text) {
    SIZE size{};
    GetTextExtentPoint32W(dc, text.c_str(), static_cast<int>(text.size()), &size);
    return static_cast<int>(size.cx);
}

bool Flag(const GridModel& model, std::int32_t col, std::int32_t row, const wchar_t* name) {
    return std::get<bool>(model.CellProperty(col, row, name));
}

/// The largest area of the picture's shape in the middle of the cell.
RECT KeepScale(const RECT& cell, const BITMAP& picture) {
    const long width = cell.right - cell.left;
    const long height = cell.bottom - cell.top;
    const long fitted = std::min(width, height * picture.bmWidth / std::max(1L, picture.bmHeight));
    const long fittedHeight = fitted * picture.bmHeight / std::max(1L, picture.bmWidth);
    return Area(static_cast<int>(cell.left + (width - fitted) / 2),
                static_cast<int>(cell.top + (height - fittedHeight) / 2), static_cast<int>(fitted),
                static_cast<int>(fittedHeight));
}

}  // namespace

/// Every column is as wide as its widest text. Of what is left over, the first gets two shares, every other one.
void GridWindow::FitColumns() {
    const WindowDc dc(window_);
    const SelectedObject font(dc.Get(), font_);
    columns_.assign(static_cast<std::size_t>(model_.Cols()), 0);
    int total = 0;
    for (std::int32_t col = 1; col <= model_.Cols(); ++col) {
        int& width = columns_[static_cast<std::size_t>(col - 1)];
        for (std::int32_t row = 0; row <= model_.Rows(); ++row) {
            width = std::max(width, WidthOf(dc.Get(), model_.GetText(col, row)) + 2 * Units(CellPadding));
        }
        total += width;
    }
    const int share = std::max(0, static_cast<int>(Client().right) - total) / (model_.Cols() + 1);
    for (int& width : columns_) {
        width += share;
        total += share;
    }
    columns_.front() += std::max(0, static_cast<int>(Client().right) - total);
}

void GridWindow::Paint() {
    const BufferedPaint paint(window_);
    const HDC dc = paint.Dc();
    const RECT client = Client();
    const SelectedObject font(dc, font_);
    FillArea(dc, client, Colours().Page);
    SetBkMode(dc, TRANSPARENT);
    int top = RowPixels(0) - scrollY_;
    for (std::int32_t row = 1; row <= model_.Rows() && top < client.bottom; ++row) {
        const int height = RowPixels(row);
        if (top + height > RowPixels(0)) {
            PaintRow(dc, row, top);
        }
        top += height;
    }
    PaintRow(dc, 0, 0);
}

void GridWindow::PaintRow(HDC dc, std::int32_t row, int top) {
    const Palette colours = Colours();
    const bool active = row > 0 && row == model_.ActiveRow() && GetFocus() == window_;
    const int height = RowPixels(row);
    int left = -scrollX_;
    for (std::int32_t col = 1; col <= model_.Cols(); ++col) {
        const int width = columns_[static_cast<std::size_t>(col - 1)];
        const RECT cell = Area(left, top, width, height);
        FillArea(dc, cell, active ? colours.Highlight : BackOf(col, row));
        PaintCell(dc, col, row, cell, active ? colours.HighlightText : row == 0 ? colours.Muted : colours.Text);
        left += width;
    }
    FillArea(dc, Area(0, top + height - 1, static_cast<int>(Client().right), 1), colours.Line);
}

COLORREF GridWindow::BackOf(std::int32_t col, std::int32_t row) const {
    const Palette colours = Colours();
    const auto own = std::get<std::int32_t>(model_.CellProperty(col, row, L"BackColor"));
    if (row == 0) {
        return colours.Footer;
    }
    if (own == White || colours.HighContrast) {
        return row % 2 == 0 ? colours.OddRow : colours.Page;
    }
    return static_cast<COLORREF>(own);
}

void GridWindow::PaintCell(HDC dc, std::int32_t col, std::int32_t row, const RECT& cell, COLORREF text) {
    if (std::get<std::int32_t>(model_.CellProperty(col, row, L"CellType")) == GridModel::PictureCell) {
        PaintPicture(dc, col, row, cell);
        return;
    }
    RECT inner = cell;
    inner.left += Units(CellPadding);
    inner.right -= Units(CellPadding);
    SetTextColor(dc, text);
    const std::wstring content = model_.GetText(col, row);
    DrawTextW(dc, content.c_str(), static_cast<int>(content.size()), &inner,
              DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX | DT_END_ELLIPSIS);
}

void GridWindow::PaintPicture(HDC dc, std::int32_t col, std::int32_t row, const RECT& cell) {
    const auto file = std::get<std::wstring>(model_.CellProperty(col, row, L"TypePictPicture"));
    const GdiObject bitmap(LoadImageW(nullptr, file.c_str(), IMAGE_BITMAP, 0, 0, LR_LOADFROMFILE));
    BITMAP picture{};
    if (!bitmap || GetObjectW(bitmap.Get(), sizeof picture, &picture) == 0) {
        return;
    }
    RECT target = Area(static_cast<int>(cell.left), static_cast<int>(cell.top), static_cast<int>(picture.bmWidth),
                       static_cast<int>(picture.bmHeight));
    if (Flag(model_, col, row, L"TypePictStretch")) {
        target = Flag(model_, col, row, L"TypePictMaintainScale") ? KeepScale(cell, picture) : cell;
    }
    const MemoryDc source(CreateCompatibleDC(dc));
    const SelectedObject selected(source.Get(), bitmap.Get());
    SetStretchBltMode(dc, HALFTONE);
    StretchBlt(dc, target.left, target.top, target.right - target.left, target.bottom - target.top, source.Get(), 0, 0,
               picture.bmWidth, picture.bmHeight, SRCCOPY);
}

}  // namespace mip
