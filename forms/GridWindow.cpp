#include "forms/GridWindow.h"

#include <algorithm>
#include <cwchar>
#include <utility>

#include "forms/Drawing.h"

namespace mip {

namespace {

constexpr int CellPadding = 16;

bool IsPicture(const GridModel& model, std::int32_t col, std::int32_t row) {
    return model.CellProperty(col, row, L"CellType") == GridValue(GridModel::PictureCell);
}

std::wstring PictureOf(const GridModel& model, std::int32_t col, std::int32_t row) {
    return std::get<std::wstring>(model.CellProperty(col, row, L"TypePictPicture"));
}

/// A picture file in the middle of a square, as large as its shape allows. Empty when it cannot be read.
GdiObject LoadPicture(const std::wstring& file, int size) {
    const WindowDc screen(nullptr);
    const MemoryDc target(CreateCompatibleDC(screen.Get()));
    GdiObject square(CreateCompatibleBitmap(screen.Get(), size, size));
    const SelectedObject drawn(target.Get(), square.Get());
    FillArea(target.Get(), Area(0, 0, size, size), GetSysColor(COLOR_WINDOW));

    const GdiObject bitmap(LoadImageW(nullptr, file.c_str(), IMAGE_BITMAP, 0, 0, LR_LOADFROMFILE));
    BITMAP picture{};
    if (bitmap && GetObjectW(bitmap.Get(), sizeof picture, &picture) != 0) {
        const int longer = static_cast<int>(std::max(picture.bmWidth, picture.bmHeight));
        const int width = MulDiv(size, static_cast<int>(picture.bmWidth), longer);
        const int height = MulDiv(size, static_cast<int>(picture.bmHeight), longer);
        const MemoryDc source(CreateCompatibleDC(screen.Get()));
        const SelectedObject selected(source.Get(), bitmap.Get());
        SetStretchBltMode(target.Get(), HALFTONE);
        StretchBlt(target.Get(), (size - width) / 2, (size - height) / 2, width, height, source.Get(), 0, 0,
                   picture.bmWidth, picture.bmHeight, SRCCOPY);
    }
    return square;
}

}  // namespace

void GridWindow::Attach(HWND list) {
    list_ = list;
    ListView_SetExtendedListViewStyle(
        list, LVS_EX_FULLROWSELECT | LVS_EX_DOUBLEBUFFER | LVS_EX_INFOTIP | LVS_EX_LABELTIP | LVS_EX_SUBITEMIMAGES);
    model_.OnChange([this] { Update(); });
    Update();
}

void GridWindow::Fit(int dpi) {
    if (std::exchange(dpi_, dpi) != dpi) {
        Update();
    }
    RECT client{};
    GetClientRect(list_, &client);
    int rest = static_cast<int>(client.right);
    for (int col = 0; const int width : widths_) {
        const bool isLast = col + 1 == model_.Cols();
        ListView_SetColumnWidth(list_, col++, isLast ? std::max(width, rest) : width);
        rest -= width;
    }
}

std::optional<LRESULT> GridWindow::OnNotify(LPARAM notification) const {
    const auto& head = *reinterpret_cast<const NMHDR*>(notification);
    if (head.hwndFrom != list_) {
        return {};
    }
    switch (head.code) {
        case LVN_GETDISPINFOW:
            GiveItem(reinterpret_cast<NMLVDISPINFOW*>(notification)->item);
            return 0;
        case LVN_ODFINDITEMW:
            return Find(*reinterpret_cast<const NMLVFINDITEMW*>(notification));
        case NM_CUSTOMDRAW:
            return Colour(*reinterpret_cast<NMLVCUSTOMDRAW*>(notification));
        case LVN_KEYDOWN:
            if (reinterpret_cast<const NMLVKEYDOWN*>(notification)->wVKey == 'A' && GetKeyState(VK_CONTROL) < 0) {
                ListView_SetItemState(list_, -1, LVIS_SELECTED, LVIS_SELECTED);
            }
            return 0;
        default:
            return {};
    }
}

std::wstring GridWindow::SelectedText() const {
    std::wstring text;
    for (int item = -1; (item = ListView_GetNextItem(list_, item, LVNI_SELECTED)) >= 0;) {
        text += model_.RowText(item + 1);
    }
    return text;
}

/// Brings the list in line with the model. The keyboard starts in the active row, or else in the first one.
void GridWindow::Update() {
    while (ListView_DeleteColumn(list_, 0) != FALSE) {
    }
    for (std::int32_t col = 1; col <= model_.Cols(); ++col) {
        std::wstring title = model_.GetText(col, 0);
        LVCOLUMNW column{};
        column.mask = LVCF_TEXT | LVCF_SUBITEM;
        column.pszText = title.data();
        column.iSubItem = col - 1;
        SendMessageW(list_, LVM_INSERTCOLUMNW, static_cast<WPARAM>(col - 1), reinterpret_cast<LPARAM>(&column));
    }
    Measure();
    MakePictures();
    ListView_SetItemCountEx(list_, model_.Rows(), 0);
    const UINT state = LVIS_FOCUSED | (model_.ActiveRow() > 0 ? LVIS_SELECTED : 0U);
    ListView_SetItemState(list_, -1, 0, LVIS_SELECTED);
    ListView_SetItemState(list_, std::max(0, model_.ActiveRow() - 1), state, state);
    Fit(dpi_);
}

/// What the columns need, and which pictures there are.
void GridWindow::Measure() {
    const WindowDc dc(list_);
    const SelectedObject font(dc.Get(), reinterpret_cast<HGDIOBJ>(SendMessageW(list_, WM_GETFONT, 0, 0)));
    widths_.assign(static_cast<std::size_t>(model_.Cols()), RowPixels());
    pictures_.clear();
    for (std::int32_t row = 0; row <= model_.Rows(); ++row) {
        for (std::int32_t col = 1; col <= model_.Cols(); ++col) {
            if (IsPicture(model_, col, row)) {
                pictures_.push_back(PictureOf(model_, col, row));
            }
            const std::wstring text = model_.GetText(col, row);
            SIZE size{};
            GetTextExtentPoint32W(dc.Get(), text.c_str(), static_cast<int>(text.size()), &size);
            int& width = widths_[static_cast<std::size_t>(col - 1)];
            width = std::max(width, static_cast<int>(size.cx) + 2 * MulDiv(CellPadding, dpi_, 96));
        }
    }
    std::ranges::sort(pictures_);
    pictures_.erase(std::ranges::unique(pictures_).begin(), pictures_.end());
}

/// The images' height is the rows' height, in a list without pictures too.
void GridWindow::MakePictures() {
    const int size = RowPixels();
    const HIMAGELIST images = ImageList_Create(pictures_.empty() ? 1 : size, size, ILC_COLOR32, 0, 1);
    for (const std::wstring& file : pictures_) {
        ImageList_Add(images, static_cast<HBITMAP>(LoadPicture(file, size).Get()), nullptr);
    }
    ImageList_Destroy(ListView_SetImageList(list_, images, LVSIL_SMALL));
}

void GridWindow::GiveItem(LVITEMW& item) const {
    const std::int32_t col = item.iSubItem + 1;
    const std::int32_t row = item.iItem + 1;
    if (row > model_.Rows() || col > model_.Cols()) {
        return;
    }
    const bool isPicture = IsPicture(model_, col, row);
    if ((item.mask & LVIF_TEXT) != 0) {
        lstrcpynW(item.pszText, isPicture ? L"" : model_.GetText(col, row).c_str(), item.cchTextMax);
    }
    if ((item.mask & LVIF_IMAGE) != 0) {
        const auto file = std::ranges::lower_bound(pictures_, PictureOf(model_, col, row));
        item.iImage = isPicture ? static_cast<int>(file - pictures_.begin()) : I_IMAGENONE;
    }
}

/// A cell's own colour, but for chosen rows and in the user's high contrast.
LRESULT GridWindow::Colour(NMLVCUSTOMDRAW& drawing) const {
    const auto item = static_cast<int>(drawing.nmcd.dwItemSpec);
    const auto back = [&](int col) {
        const auto own = std::get<std::int32_t>(model_.CellProperty(col + 1, item + 1, L"BackColor"));
        return own == GridModel::White ? GetSysColor(COLOR_WINDOW) : static_cast<COLORREF>(own);
    };
    switch (drawing.nmcd.dwDrawStage) {
        case CDDS_PREPAINT:
            return Colours().HighContrast ? CDRF_DODEFAULT : CDRF_NOTIFYITEMDRAW;
        case CDDS_ITEMPREPAINT:
            if (item >= model_.Rows() || ListView_GetItemState(list_, item, LVIS_SELECTED) != 0) {
                return CDRF_DODEFAULT;
            }
            FillArea(drawing.nmcd.hdc, drawing.nmcd.rc, back(0));  // also the edges that no cell covers
            return CDRF_NOTIFYSUBITEMDRAW;
        case CDDS_ITEMPREPAINT | CDDS_SUBITEM:
            drawing.clrTextBk = back(drawing.iSubItem);
            drawing.clrText =
                drawing.clrTextBk == GetSysColor(COLOR_WINDOW) ? GetSysColor(COLOR_WINDOWTEXT) : Colours().Text;
            return CDRF_DODEFAULT;
        default:
            return CDRF_DODEFAULT;
    }
}

/// The list's own search for what the user types: the row whose first text starts so, or -1.
LRESULT GridWindow::Find(const NMLVFINDITEMW& search) const {
    const bool isText = (search.lvfi.flags & (LVFI_STRING | LVFI_PARTIAL)) != 0;
    for (int look = 0; isText && look < model_.Rows(); ++look) {
        const int item = (std::max(0, search.iStart) + look) % model_.Rows();
        if (_wcsnicmp(model_.GetText(1, item + 1).c_str(), search.lvfi.psz, std::wcslen(search.lvfi.psz)) == 0) {
            return item;
        }
    }
    return -1;
}

}  // namespace mip
