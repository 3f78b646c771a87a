#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "screens/SpreadGrid.h"

namespace mip {

/// The program's grid without its window: cells, row heights and properties. Row 0 is the header. For the user it is
/// read-only; a row, never a cell, is the active one.
class GridModel final : public SpreadGrid {
  public:
    static constexpr double DefaultRowHeight = 18;  ///< points
    static constexpr std::int32_t ComboBoxCell = 8;
    static constexpr std::int32_t PictureCell = 9;

    GridModel(std::int32_t rows, std::int32_t cols);

    /// Called after every change while ReDraw is on, and when it is turned on again.
    void OnChange(std::function<void()> changed) { changed_ = std::move(changed); }

    void SetProperty(const std::wstring& name, const GridValue& value) override;
    GridValue GetProperty(const std::wstring& name) const override;
    void SetProperty(const std::wstring& name, std::int32_t index, const GridValue& value) override;
    GridValue GetProperty(const std::wstring& name, std::int32_t index) const override;
    void SetText(std::int32_t col, std::int32_t row, const GridValue& value) override;
    std::wstring GetText(std::int32_t col, std::int32_t row) const override;

    /// The header and the rows, a line for each and a tab between columns.
    std::wstring AllText() const;

    std::int32_t Rows() const { return Number(L"MaxRows"); }
    std::int32_t Cols() const { return Number(L"MaxCols"); }
    std::int32_t ActiveRow() const { return activeRow_; }
    /// Moves the active row, kept within the rows; 0 when there is none.
    void SetActiveRow(std::int32_t row);
    double RowHeight(std::int32_t row) const { return rows_.at(static_cast<std::size_t>(row)).Height; }
    /// A cell's own property, for example its BackColor.
    GridValue CellProperty(std::int32_t col, std::int32_t row, const std::wstring& name) const;

  private:
    struct Cell {
        std::wstring Text;
        std::map<std::wstring, GridValue> Properties;
    };
    struct Row {
        double Height = DefaultRowHeight;
        std::vector<Cell> Cells;
    };

    std::int32_t Number(const wchar_t* name) const { return std::get<std::int32_t>(properties_.at(name)); }
    const Cell& At(std::int32_t col, std::int32_t row) const;
    Cell& At(std::int32_t col, std::int32_t row) { return const_cast<Cell&>(std::as_const(*this).At(col, row)); }
    /// Applies to the block while BlockMode is on, else to the one current cell.
    void ForSelectedCells(const std::function<void(Cell&)>& apply);
    void SetGridProperty(const std::wstring& name, const GridValue& value);
    void Resize(std::int32_t rows, std::int32_t cols);
    void Act(std::int32_t action);
    void Changed() const;

    std::map<std::wstring, GridValue> properties_;
    std::vector<Row> rows_;
    std::int32_t activeRow_ = 0;
    std::function<void()> changed_;
};

}  // namespace mip
