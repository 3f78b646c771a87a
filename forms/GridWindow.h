#pragma once

#include <vector>

#include "forms/WindowsHeader.h"

#include "screens/GridModel.h"

namespace mip {

/// The window of a grid: a read-only list with a header, scrolled and used by mouse and keyboard. Its window text is
/// the list itself, a line for each row and a tab between columns.
class GridWindow {
  public:
    GridWindow(std::int32_t rows, std::int32_t cols) : model_(rows, cols) {}
    GridWindow(const GridWindow&) = delete;
    GridWindow& operator=(const GridWindow&) = delete;

    /// The name of the window class; registered when it is first asked for.
    static const wchar_t* ClassName();
    /// Takes over a window of that class, which must not outlive this object.
    void Attach(HWND window);
    GridModel& Model() { return model_; }
    void SetDpi(int dpi) { dpi_ = dpi; }

  private:
    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    LRESULT Handle(UINT message, WPARAM wParam, LPARAM lParam);

    void Paint();
    void PaintRow(HDC dc, std::int32_t row, int top);
    void PaintCell(HDC dc, std::int32_t col, std::int32_t row, const RECT& cell, COLORREF text);
    void PaintPicture(HDC dc, std::int32_t col, std::int32_t row, const RECT& cell);
    COLORREF BackOf(std::int32_t col, std::int32_t row) const;

    void Arrange();
    void FitColumns();
    void SetScrollBar(int bar, int contentSize, int pageSize, int& position);
    void Scroll(int bar, int code);
    void ScrollTo(int bar, int position);
    void ShowActiveRow();

    void OnWheel(int turn);
    void OnKey(WPARAM key);
    void OnClick(int y);
    LRESULT GiveText(WPARAM capacity, LPARAM buffer) const;

    RECT Client() const;
    int RowPixels(std::int32_t row) const;
    int RowTop(std::int32_t row) const;
    int Units(int units) const { return MulDiv(units, dpi_, 96); }

    GridModel model_;
    HWND window_ = nullptr;
    HFONT font_ = nullptr;
    int dpi_ = 96;
    std::vector<int> columns_;
    int scrollX_ = 0;
    int scrollY_ = 0;
    int wheel_ = 0;
};

}  // namespace mip
