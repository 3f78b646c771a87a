#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "screens/SpreadGrid.h"

namespace mip {

/// What a list shows: cells and properties. Row 0 is the header; the other rows have one height. For the user it is
/// read-only.
class GridModel : public SpreadGrid {
  public:
    static constexpr double DefaultRowHeight = 18;  ///< points
    static constexpr std::int32_t PictureCell = 9;
    static constexpr std::int32_t White = 0xFFFFFF;

    GridModel(std::int32_t rows, std::int32_t cols);

    /// Called after every change while ReDraw is on, and when it is turned on again.
    void OnChange(std::function<void()> changed) { changed_ = std::move(changed); }

    void SetProperty(const std::wstring& name, const GridValue& value) override;
    GridValue GetProperty(const std::wstring& name) const override;
    void SetProperty(const std::wstring& name, std::int32_t index, const GridValue& value) override;
    GridValue GetProperty(const std::wstring& name, std::int32_t index) const override;
    void SetText(std::int32_t col, std::int32_t row, const std::wstring& text) override;
    std::wstring GetText(std::int32_t col, std::int32_t row) const override;

    /// A line with a tab between columns; of the header and all rows.
    std::wstring RowText(std::int32_t row) const;
    std::wstring AllText() const;

    std::int32_t Rows() const { return Number(L"MaxRows"); }
    std::int32_t Cols() const { return Number(L"MaxCols"); }
    /// The row that was made active last; 0 when there is none.
    std::int32_t ActiveRow() const { return activeRow_; }
    double RowHeight() const { return rowHeight_; }
    /// A cell's own property, for example its BackColor.
    GridValue CellProperty(std::int32_t col, std::int32_t row, const std::wstring& name) const;

  private:
    struct Cell {
        std::wstring Text;
        std::map<std::wstring, GridValue> Properties;  ///< those that were set
    };

    std::int32_t Number(const wchar_t* name) const { return std::get<std::int32_t>(properties_.at(name)); }
    const Cell& At(std::int32_t col, std::int32_t row) const;
    Cell& At(std::int32_t col, std::int32_t row) { return const_cast<Cell&>(std::as_const(*this).At(col, row)); }
    /// Applies to the block while BlockMode is on, else to the one current cell.
    void ForSelectedCells(const std::function<void(Cell&)>& apply);
    void Resize(std::int32_t rows);
    void Act(std::int32_t action);
    void Changed() const;

    std::map<std::wstring, GridValue> properties_;  ///< those of cells as they are at first
    std::vector<std::vector<Cell>> rows_;
    double headerHeight_ = DefaultRowHeight;
    double rowHeight_ = DefaultRowHeight;
    std::int32_t activeRow_ = 0;
    std::function<void()> changed_;
};

}  // namespace mip
