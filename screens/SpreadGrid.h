#pragma once

#include <cstdint>
#include <string>
#include <variant>
#include <vector>

namespace mip {

/// A property's value.
using GridValue = std::variant<std::monostate, bool, std::int32_t, double, std::wstring>;

/// A grid control whose properties are set by name at run time. A name, an index or a value that the control does not
/// take throws std::invalid_argument.
class SpreadGrid {
  public:
    virtual ~SpreadGrid() = default;

    virtual void SetProperty(const std::wstring& name, const GridValue& value) = 0;
    virtual GridValue GetProperty(const std::wstring& name) const = 0;
    /// `RowHeight` is the one property with an index: a row, -1 for all data rows, 0 for the header row.
    virtual void SetProperty(const std::wstring& name, std::int32_t index, const GridValue& value) = 0;
    virtual GridValue GetProperty(const std::wstring& name, std::int32_t index) const = 0;
    virtual void SetText(std::int32_t col, std::int32_t row, const std::wstring& text) = 0;
    /// "" for an empty cell.
    virtual std::wstring GetText(std::int32_t col, std::int32_t row) const = 0;
};

/// A screen with grids on it.
class SpreadForm {
  public:
    virtual ~SpreadForm() = default;
    virtual std::vector<SpreadGrid*> SpreadGrids() = 0;
};

}  // namespace mip
