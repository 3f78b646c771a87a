#include "screens/clsSpread.h"

#include <utility>

#include "app/Attempt.h"

namespace mip {

namespace {

constexpr std::int32_t White = 0xFFFFFF;
constexpr std::int32_t PictureCell = 9;

/// The grid control's action codes.
constexpr std::int32_t ActionActivateCell = 0;
constexpr std::int32_t ActionClearText = 12;
constexpr std::int32_t ActionClearSelection = 29;

/// What every grid of the program is set to.
const std::vector<std::pair<const wchar_t*, GridValue>> StandardSettings{
    {L"EditModePermanent", false}, {L"EditModeReplace", false},
    {L"AutoClipboard", true},      {L"ArrowsExitEditMode", false},
    {L"RetainSelBlock", true},     {L"Protect", true},
    {L"AllowMultiBlocks", false},  {L"MoveActiveOnFocus", true},
    {L"AllowCellOverflow", false}, {L"NoBeep", false},
    {L"AllowDragDrop", false},     {L"NoBorder", false},
    {L"ProcessTab", false},        {L"AutoSize", false},
    {L"AutoCalc", false},          {L"AllowUserFormulas", false},
    {L"FormulaSync", false},       {L"AllowEditOverflow", false},
    {L"ClipboardOptions", 15},     {L"Appearance", 0},
    {L"CellNoteIndicator", 0},     {L"TwoDigitYearMax", 2059},
    {L"ButtonDrawMode", 0},        {L"SelectBlockOptions", 0},
    {L"OperationMode", 2},         {L"EditEnterAction", 0},
};

/// A control that rejects something never stops the screen: the operation ends where it is.
template <typename Operation>
void Operate(FaultLog& log, Operation operation) {
    (void)Attempt(log, "working on the list", operation);
}

std::int32_t Number(const SpreadGrid& grid, const wchar_t* name) {
    return std::get<std::int32_t>(grid.GetProperty(name));
}

void SetPicture(SpreadGrid& grid, const std::wstring& file) {
    grid.SetProperty(L"TypeHAlign", 0);
    grid.SetProperty(L"TypeVAlign", 0);
    grid.SetProperty(L"TypePictMaintainScale", true);
    grid.SetProperty(L"TypePictStretch", true);
    grid.SetProperty(L"TypePictPicture", file);
}

void SetReDraw(FaultLog& log, SpreadForm& form, bool reDraw) {
    for (SpreadGrid* grid : form.SpreadGrids()) {
        Operate(log, [&] { grid->SetProperty(L"ReDraw", reDraw); });
    }
}

}  // namespace

std::int16_t clsSpread::SpdIni(SpreadGrid& grid) {
    std::int16_t handle = 1;
    while (grids_.contains(handle)) {
        ++handle;
    }
    RegisteredGrid& registered = grids_[handle];
    registered.Grid = &grid;
    Operate(log_, [&] {
        registered.InitialRowHeight = grid.GetProperty(L"RowHeight", 1);
        for (const auto& [name, value] : StandardSettings) {
            grid.SetProperty(name, value);
        }
    });
    return handle;
}

void clsSpread::SpdRelease(std::int16_t handle) {
    grids_.erase(handle);
}

void clsSpread::SpdClear(std::int16_t handle, std::int32_t rows, std::int32_t col, std::int32_t row, std::int32_t col2,
                         std::int32_t row2) {
    const RegisteredGrid* registered = Find(handle);
    if (registered == nullptr) {
        return;
    }
    SpreadGrid& grid = *registered->Grid;
    Operate(log_, [&] {
        grid.SetProperty(L"Row", row == Default ? 1 : row);
        grid.SetProperty(L"Col", col == Default ? 1 : col);
        grid.SetProperty(L"Row2", row2 < 0 ? Number(grid, L"MaxRows") : row2);
        grid.SetProperty(L"Col2", col2 == Default ? Number(grid, L"MaxCols") : col2);
        grid.SetProperty(L"ColsFrozen", 0);
        grid.SetProperty(L"RowsFrozen", 0);
        grid.SetProperty(L"BlockMode", true);
        grid.SetProperty(L"Action", ActionClearSelection);
        grid.SetProperty(L"Action", ActionClearText);
        grid.SetProperty(L"BlockMode", false);
        if (rows != Default) {
            grid.SetProperty(L"MaxRows", rows);
        }
        if (Number(grid, L"MaxRows") > 0) {
            grid.SetProperty(L"Row", 1);
            grid.SetProperty(L"Row2", 1);
            grid.SetProperty(L"BlockMode", true);
            grid.SetProperty(L"Action", ActionActivateCell);
            grid.SetProperty(L"BlockMode", false);
        }
    });
}

void clsSpread::SpdItemSet(std::int16_t handle, std::int32_t row, std::int32_t col, const std::wstring& colourFlag,
                           const std::wstring& value) {
    const RegisteredGrid* registered = Find(handle);
    if (registered == nullptr) {
        return;
    }
    SpreadGrid& grid = *registered->Grid;
    Operate(log_, [&] {
        grid.SetProperty(L"Row", row);
        grid.SetProperty(L"Col", col);
        grid.SetProperty(L"BackColor", colourFlag == L"0" ? LightBlue : White);
        if (Number(grid, L"CellType") == PictureCell) {
            SetPicture(grid, value);
        } else {
            grid.SetText(col, row, value);
        }
    });
}

void clsSpread::SpdItemRowSet(std::int16_t handle, std::int32_t row, const std::wstring& colourFlag,
                              const std::vector<std::wstring>& values) {
    std::int32_t col = 0;
    for (const std::wstring& value : values) {
        SpdItemSet(handle, row, ++col, colourFlag, value);
    }
}

std::wstring clsSpread::SpdItemGet(std::int16_t handle, std::int32_t row, std::int32_t col) const {
    std::wstring text;
    if (const RegisteredGrid* registered = Find(handle)) {
        Operate(log_, [&] { text = registered->Grid->GetText(col, row); });
    }
    return text;
}

void clsSpread::SpdMaxRowsChg(std::int16_t handle, std::int32_t rows) {
    const RegisteredGrid* registered = Find(handle);
    if (registered == nullptr) {
        return;
    }
    SpreadGrid& grid = *registered->Grid;
    Operate(log_, [&] {
        const GridValue headerHeight = grid.GetProperty(L"RowHeight", 0);
        grid.SetProperty(L"MaxRows", rows);
        grid.SetProperty(L"RowHeight", -1, registered->InitialRowHeight);
        grid.SetProperty(L"RowHeight", 0, headerHeight);
    });
}

void clsSpread::SpdCmboSet(std::int16_t handle, std::int32_t col, const std::wstring& list, std::int32_t row,
                           std::int32_t row2) {
    const RegisteredGrid* registered = Find(handle);
    if (registered == nullptr) {
        return;
    }
    SpreadGrid& grid = *registered->Grid;
    Operate(log_, [&] {
        grid.SetProperty(L"ReDraw", false);
        grid.SetProperty(L"Col", col);
        grid.SetProperty(L"Row", row == Default ? 1 : row);
        grid.SetProperty(L"Col2", col);
        grid.SetProperty(L"Row2", row2 == Default ? Number(grid, L"MaxRows") : row2);
        grid.SetProperty(L"BlockMode", true);
        grid.SetProperty(L"TypeComboBoxList", list);
        grid.SetProperty(L"BlockMode", false);
        grid.SetProperty(L"TypeComboBoxCurSel", 0);
        grid.SetProperty(L"ReDraw", true);
    });
}

void clsSpread::SplListingStart(SpreadForm& form) const {
    SetReDraw(log_, form, false);
}

void clsSpread::SplListingEnd(SpreadForm& form) const {
    SetReDraw(log_, form, true);
}

const clsSpread::RegisteredGrid* clsSpread::Find(std::int16_t handle) const {
    const auto found = grids_.find(handle);
    return found == grids_.end() ? nullptr : &found->second;
}

}  // namespace mip
