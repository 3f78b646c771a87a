#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "platform/FaultLog.h"
#include "screens/SpreadGrid.h"

namespace mip {

/// Grids behind numeric handles: a grid is registered once and then filled, cleared and coloured by its handle. A
/// handle that is not in the table makes an operation do nothing, and so does a property that the control rejects.
class clsSpread {
  public:
    /// Stands for the default of a block's bound: the first row or column, the last row or column.
    static constexpr std::int32_t Default = -1;
    /// The background of a cell with the colour flag "0".
    static constexpr std::int32_t LightBlue = 0xFFD5AA;

    /// What a control rejects is said to `log`.
    explicit clsSpread(FaultLog& log) : log_(log) {}

    /// Registers a grid, applies the standard settings and gives its handle. The grid outlives its registration.
    std::int16_t SpdIni(SpreadGrid& grid);
    /// Frees a handle; the next grid that is registered gets it.
    void SpdRelease(std::int16_t handle);

    /// Empties a block of cells; `rows` other than Default becomes the row count.
    void SpdClear(std::int16_t handle, std::int32_t rows = Default, std::int32_t col = Default,
                  std::int32_t row = Default, std::int32_t col2 = Default, std::int32_t row2 = Default);
    /// Writes a cell. The colour flag "0" makes it light blue, any other white. A picture cell shows the picture file
    /// named by the value.
    void SpdItemSet(std::int16_t handle, std::int32_t row, std::int32_t col, const std::wstring& colourFlag,
                    const std::wstring& value);
    /// Writes columns 1, 2, 3 ... of a row.
    void SpdItemRowSet(std::int16_t handle, std::int32_t row, const std::wstring& colourFlag,
                       const std::vector<std::wstring>& values);
    std::wstring SpdItemGet(std::int16_t handle, std::int32_t row, std::int32_t col) const;
    /// Changes the row count. Rows get the height that the first row had at registration, the header keeps its own.
    void SpdMaxRowsChg(std::int16_t handle, std::int32_t rows);
    /// Makes a block of a column a drop-down list with its first item chosen.
    void SpdCmboSet(std::int16_t handle, std::int32_t col, const std::wstring& list, std::int32_t row = Default,
                    std::int32_t row2 = Default);

    /// Screens bracket a bulk fill with these two, so that every grid repaints once.
    void SplListingStart(SpreadForm& form) const;
    void SplListingEnd(SpreadForm& form) const;

  private:
    struct RegisteredGrid {
        SpreadGrid* Grid = nullptr;
        GridValue InitialRowHeight;
    };

    const RegisteredGrid* Find(std::int16_t handle) const;

    FaultLog& log_;
    std::map<std::int16_t, RegisteredGrid> grids_;  ///< by handle, from 1
};

}  // namespace mip
