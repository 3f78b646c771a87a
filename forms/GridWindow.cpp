#include "forms/GridWindow.h"

#include <algorithm>

namespace mip {

const wchar_t* GridWindow::ClassName() {
    static constexpr wchar_t name[] = L"ManualInstallGrid";
    WNDCLASSW known;
    const HINSTANCE instance = GetModuleHandleW(nullptr);
    if (GetClassInfoW(instance, name, &known) == 0) {
        WNDCLASSW grid{};
        grid.lpfnWndProc = Procedure;
        grid.hInstance = instance;
        grid.hCursor = LoadCursorW(nullptr, IDC_ARROW);
        grid.lpszClassName = name;
        RegisterClassW(&grid);
    }
    return name;
}

void GridWindow::Attach(HWND window) {
    window_ = window;
    SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
    model_.OnChange([this] { Arrange(); });
    Arrange();
}

LRESULT CALLBACK GridWindow::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    auto* grid = reinterpret_cast<GridWindow*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    return grid != nullptr ? grid->Handle(message, wParam, lParam) : DefWindowProcW(window, message, wParam, lParam);
}

LRESULT GridWindow::Handle(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_PAINT:
            Paint();
            return 0;
        case WM_ERASEBKGND:
            return 1;
        case WM_SIZE:
            Arrange();
            return 0;
        case WM_SETFONT:
            font_ = reinterpret_cast<HFONT>(wParam);
            Arrange();
            return 0;
        case WM_GETFONT:
            return reinterpret_cast<LRESULT>(font_);
        case WM_GETTEXTLENGTH:
            return static_cast<LRESULT>(model_.AllText().size());
        case WM_GETTEXT:
            return GiveText(wParam, lParam);
        case WM_GETDLGCODE:
            return DLGC_WANTARROWS;
        case WM_SETFOCUS:
            if (model_.ActiveRow() == 0) {
                model_.SetActiveRow(1);
            }
            [[fallthrough]];
        case WM_KILLFOCUS:
            InvalidateRect(window_, nullptr, FALSE);
            return 0;
        case WM_KEYDOWN:
            OnKey(wParam);
            return 0;
        case WM_LBUTTONDOWN:
            SetFocus(window_);
            OnClick(static_cast<short>(HIWORD(lParam)));
            return 0;
        case WM_VSCROLL:
            Scroll(SB_VERT, LOWORD(wParam));
            return 0;
        case WM_HSCROLL:
            Scroll(SB_HORZ, LOWORD(wParam));
            return 0;
        case WM_MOUSEWHEEL:
            OnWheel(static_cast<short>(HIWORD(wParam)));
            return 0;
        default:
            return DefWindowProcW(window_, message, wParam, lParam);
    }
}

/// Brings columns, scroll bars and picture in line with the model.
void GridWindow::Arrange() {
    if (window_ == nullptr) {
        return;
    }
    FitColumns();
    const RECT client = Client();
    int width = 0;
    for (const int column : columns_) {
        width += column;
    }
    SetScrollBar(SB_HORZ, width, static_cast<int>(client.right), scrollX_);
    SetScrollBar(SB_VERT, RowTop(model_.Rows() + 1), static_cast<int>(Client().bottom) - RowPixels(0), scrollY_);
    InvalidateRect(window_, nullptr, FALSE);
}

void GridWindow::SetScrollBar(int bar, int contentSize, int pageSize, int& position) {
    position = std::clamp(position, 0, std::max(0, contentSize - pageSize));
    SCROLLINFO info{};
    info.cbSize = sizeof info;
    info.fMask = SIF_RANGE | SIF_PAGE | SIF_POS;
    info.nMax = std::max(0, contentSize - 1);
    info.nPage = static_cast<UINT>(std::max(0, pageSize));
    info.nPos = position;
    SetScrollInfo(window_, bar, &info, TRUE);
}

void GridWindow::Scroll(int bar, int code) {
    SCROLLINFO info{};
    info.cbSize = sizeof info;
    info.fMask = SIF_ALL;
    GetScrollInfo(window_, bar, &info);
    const int line = bar == SB_VERT ? RowPixels(0) : Units(32);
    const int page = static_cast<int>(info.nPage);
    switch (code) {
        case SB_LINEUP:
            return ScrollTo(bar, info.nPos - line);
        case SB_LINEDOWN:
            return ScrollTo(bar, info.nPos + line);
        case SB_PAGEUP:
            return ScrollTo(bar, info.nPos - page);
        case SB_PAGEDOWN:
            return ScrollTo(bar, info.nPos + page);
        case SB_THUMBTRACK:
        case SB_THUMBPOSITION:
            return ScrollTo(bar, info.nTrackPos);
        case SB_TOP:
            return ScrollTo(bar, 0);
        case SB_BOTTOM:
            return ScrollTo(bar, info.nMax);
        default:
            return;
    }
}

void GridWindow::ScrollTo(int bar, int position) {
    int& current = bar == SB_VERT ? scrollY_ : scrollX_;
    current = position;
    Arrange();
}

void GridWindow::ShowActiveRow() {
    const std::int32_t row = model_.ActiveRow();
    const int page = static_cast<int>(Client().bottom) - RowPixels(0);
    if (row > 0) {
        scrollY_ = std::clamp(scrollY_, RowTop(row + 1) - page, RowTop(row));
        Arrange();
    }
}

void GridWindow::OnWheel(int turn) {
    wheel_ += turn;
    const int notches = wheel_ / WHEEL_DELTA;
    wheel_ -= notches * WHEEL_DELTA;
    ScrollTo(SB_VERT, scrollY_ - notches * 3 * RowPixels(0));
}

void GridWindow::OnKey(WPARAM key) {
    const std::int32_t row = model_.ActiveRow();
    const int rowsOnPage =
        std::max(1, (static_cast<int>(Client().bottom) - RowPixels(0)) / std::max(1, RowPixels(std::max(1, row))) - 1);
    switch (key) {
        case VK_UP:
            model_.SetActiveRow(row - 1);
            break;
        case VK_DOWN:
            model_.SetActiveRow(row + 1);
            break;
        case VK_PRIOR:
            model_.SetActiveRow(row - rowsOnPage);
            break;
        case VK_NEXT:
            model_.SetActiveRow(row + rowsOnPage);
            break;
        case VK_HOME:
            model_.SetActiveRow(1);
            break;
        case VK_END:
            model_.SetActiveRow(model_.Rows());
            break;
        case VK_LEFT:
            return Scroll(SB_HORZ, SB_LINELEFT);
        case VK_RIGHT:
            return Scroll(SB_HORZ, SB_LINERIGHT);
        default:
            return;
    }
    ShowActiveRow();
}

void GridWindow::OnClick(int y) {
    for (std::int32_t row = 1; row <= model_.Rows(); ++row) {
        const int top = RowPixels(0) + RowTop(row) - scrollY_;
        if (y >= std::max(top, RowPixels(0)) && y < top + RowPixels(row)) {
            model_.SetActiveRow(row);
            ShowActiveRow();
            return;
        }
    }
}

LRESULT GridWindow::GiveText(WPARAM capacity, LPARAM buffer) const {
    if (capacity == 0) {
        return 0;
    }
    const std::wstring text = model_.AllText();
    auto* target = reinterpret_cast<wchar_t*>(buffer);
    const std::size_t length = text.copy(target, capacity - 1);
    target[length] = L'\0';
    return static_cast<LRESULT>(length);
}

RECT GridWindow::Client() const {
    RECT client{};
    GetClientRect(window_, &client);
    return client;
}

int GridWindow::RowPixels(std::int32_t row) const {
    const double height = row <= model_.Rows() ? model_.RowHeight(row) : GridModel::DefaultRowHeight;
    return static_cast<int>(height * dpi_ / 72 + 0.5);
}

/// Distance of a row from the first row's top.
int GridWindow::RowTop(std::int32_t row) const {
    int top = 0;
    for (std::int32_t above = 1; above < row; ++above) {
        top += RowPixels(above);
    }
    return top;
}

}  // namespace mip
