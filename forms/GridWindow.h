#pragma once

#include <optional>
#include <string>
#include <vector>

#include "forms/WindowsHeader.h"

#include <commctrl.h>

#include "screens/GridModel.h"

namespace mip {

/// A grid as the system's list view: read-only, used by whole rows, read by screen readers as a list with a header. The
/// texts stay in the model, and the list asks for those that it shows.
class GridWindow {
  public:
    static constexpr DWORD Style =
        WS_BORDER | WS_TABSTOP | LVS_REPORT | LVS_OWNERDATA | LVS_SHOWSELALWAYS | LVS_NOSORTHEADER;

    GridWindow(std::int32_t rows, std::int32_t cols) : model_(rows, cols) {}
    GridWindow(const GridWindow&) = delete;
    GridWindow& operator=(const GridWindow&) = delete;

    /// Takes over a list view of that style.
    void Attach(HWND list);
    GridModel& Model() { return model_; }
    /// Makes the columns as wide as their texts, for the list's font and size; the last one takes the rest.
    void Fit(int dpi);
    /// The answer to a WM_NOTIFY of the parent; nothing when it is not the list's, or left to the system.
    std::optional<LRESULT> OnNotify(LPARAM notification) const;
    /// The chosen rows, a line for each and a tab between columns.
    std::wstring SelectedText() const;

  private:
    void Update();
    void Measure();
    void MakePictures();
    void GiveItem(LVITEMW& item) const;
    LRESULT Colour(NMLVCUSTOMDRAW& drawing) const;
    LRESULT Find(const NMLVFINDITEMW& search) const;
    int RowPixels() const { return MulDiv(static_cast<int>(model_.RowHeight() * 100), dpi_, 7200); }

    GridModel model_;
    HWND list_ = nullptr;
    int dpi_ = 96;
    std::vector<int> widths_;
    std::vector<std::wstring> pictures_;  ///< the files of the list's images
};

}  // namespace mip
