#include "screens/GridModel.h"

#include <algorithm>
#include <stdexcept>
#include <string_view>

namespace mip {

namespace {

using Properties = std::map<std::wstring, GridValue>;

constexpr std::int32_t ActionActivateCell = 0;
constexpr std::int32_t ActionClearText = 12;
constexpr std::int32_t ActionClearSelection = 29;
constexpr std::int32_t MostRows = 100'000;

/// The names that are known, by the kind of their values. Most are taken and change nothing: keys, edges and edit modes
/// are those of the system's list.
constexpr const wchar_t* Switches[] = {
    L"BlockMode",      L"EditModePermanent", L"EditModeReplace",  L"AutoClipboard",     L"ArrowsExitEditMode",
    L"RetainSelBlock", L"Protect",           L"AllowMultiBlocks", L"MoveActiveOnFocus", L"AllowCellOverflow",
    L"NoBeep",         L"AllowDragDrop",     L"NoBorder",         L"ProcessTab",        L"AutoSize",
    L"AutoCalc",       L"AllowUserFormulas", L"FormulaSync",      L"AllowEditOverflow", L"TypePictMaintainScale",
    L"TypePictStretch"};
constexpr const wchar_t* Numbers[] = {L"MaxRows", L"MaxCols", L"Row",      L"Col",        L"Row2",
                                      L"Col2",    L"Action",  L"CellType", L"TypeHAlign", L"TypeVAlign"};
constexpr const wchar_t* NumberSettings[] = {
    L"ColsFrozen",      L"RowsFrozen",     L"ClipboardOptions",   L"Appearance",    L"CellNoteIndicator",
    L"TwoDigitYearMax", L"ButtonDrawMode", L"SelectBlockOptions", L"OperationMode", L"EditEnterAction"};

Properties FirstProperties() {
    Properties properties{{L"ReDraw", true},
                          {L"BackColor", GridModel::White},
                          {L"TypeComboBoxCurSel", -1},
                          {L"TypeComboBoxList", std::wstring()},
                          {L"TypePictPicture", std::wstring()}};
    for (const wchar_t* name : Switches) {
        properties[name] = false;
    }
    for (const wchar_t* name : Numbers) {
        properties[name] = 0;
    }
    for (const wchar_t* name : NumberSettings) {
        properties[name] = 0;
    }
    return properties;
}

/// Every cell has these for itself.
bool IsOfCell(const std::wstring& name) {
    return name.starts_with(L"Type") || name == L"BackColor" || name == L"CellType";
}

[[noreturn]] void Reject(const char* what) {
    throw std::invalid_argument(what);
}

/// The item at a position of a list whose items are separated by tabs; "" outside it.
std::wstring ListItem(std::wstring_view list, std::int32_t position) {
    for (; position > 0; --position) {
        const auto end = list.find(L'\t');
        list.remove_prefix(end == std::wstring_view::npos ? list.size() : end + 1);
    }
    return std::wstring(list.substr(0, list.find(L'\t')));
}

}  // namespace

GridModel::GridModel(std::int32_t rows, std::int32_t cols) : properties_(FirstProperties()) {
    properties_[L"MaxCols"] = cols;
    Resize(rows);
}

void GridModel::SetProperty(const std::wstring& name, const GridValue& value) {
    const auto known = properties_.find(name);
    if (known == properties_.end() || known->second.index() != value.index() || name == L"MaxCols") {
        Reject("unknown property, or a value of another kind");
    }
    if (IsOfCell(name)) {
        ForSelectedCells([&](Cell& cell) { cell.Properties[name] = value; });
    } else if (name == L"Action") {
        Act(std::get<std::int32_t>(value));
    } else if (name == L"MaxRows") {
        Resize(std::get<std::int32_t>(value));
    } else {
        known->second = value;
    }
    Changed();
}

GridValue GridModel::GetProperty(const std::wstring& name) const {
    if (!properties_.contains(name)) {
        Reject("unknown property");
    }
    return IsOfCell(name) ? CellProperty(Number(L"Col"), Number(L"Row"), name) : properties_.at(name);
}

void GridModel::SetProperty(const std::wstring& name, std::int32_t index, const GridValue& value) {
    const auto* height = std::get_if<double>(&value);
    if (name != L"RowHeight" || height == nullptr || *height < 0 || index < -1 || index > Rows()) {
        Reject("no such row height");
    }
    (index == 0 ? headerHeight_ : rowHeight_) = *height;
    Changed();
}

GridValue GridModel::GetProperty(const std::wstring& name, std::int32_t index) const {
    if (name != L"RowHeight" || index < 0) {
        Reject("no such row height");
    }
    return index == 0 ? headerHeight_ : rowHeight_;
}

void GridModel::SetText(std::int32_t col, std::int32_t row, const std::wstring& text) {
    At(col, row).Text = text;
    Changed();
}

std::wstring GridModel::GetText(std::int32_t col, std::int32_t row) const {
    const auto chosen = std::get<std::int32_t>(CellProperty(col, row, L"TypeComboBoxCurSel"));
    return chosen < 0 ? At(col, row).Text
                      : ListItem(std::get<std::wstring>(CellProperty(col, row, L"TypeComboBoxList")), chosen);
}

std::wstring GridModel::RowText(std::int32_t row) const {
    std::wstring text;
    for (std::int32_t col = 1; col <= Cols(); ++col) {
        text += (col == 1 ? L"" : L"\t") + GetText(col, row);
    }
    return text + L"\r\n";
}

std::wstring GridModel::AllText() const {
    std::wstring text;
    for (std::int32_t row = 0; row <= Rows(); ++row) {
        text += RowText(row);
    }
    return text;
}

GridValue GridModel::CellProperty(std::int32_t col, std::int32_t row, const std::wstring& name) const {
    const Properties& own = At(col, row).Properties;
    const auto property = own.find(name);
    return property == own.end() ? properties_.at(name) : property->second;
}

const GridModel::Cell& GridModel::At(std::int32_t col, std::int32_t row) const {
    if (col < 1 || col > Cols() || row < 0 || row > Rows()) {
        Reject("no such cell");
    }
    return rows_[static_cast<std::size_t>(row)][static_cast<std::size_t>(col - 1)];
}

void GridModel::ForSelectedCells(const std::function<void(Cell&)>& apply) {
    const bool block = std::get<bool>(properties_.at(L"BlockMode"));
    const std::int32_t lastRow = Number(block ? L"Row2" : L"Row");
    const std::int32_t lastCol = Number(block ? L"Col2" : L"Col");
    for (std::int32_t row = Number(L"Row"); row <= lastRow; ++row) {
        for (std::int32_t col = Number(L"Col"); col <= lastCol; ++col) {
            apply(At(col, row));
        }
    }
}

void GridModel::Resize(std::int32_t rows) {
    if (rows < 0 || rows > MostRows) {
        Reject("a grid of this size cannot be had");
    }
    rows_.resize(static_cast<std::size_t>(rows) + 1, std::vector<Cell>(static_cast<std::size_t>(Cols())));
    properties_[L"MaxRows"] = rows;
    activeRow_ = std::min(activeRow_, rows);
}

void GridModel::Act(std::int32_t action) {
    if (action == ActionActivateCell) {
        activeRow_ = std::clamp(Number(L"Row"), std::min(1, Rows()), Rows());
    } else if (action == ActionClearText) {
        ForSelectedCells([](Cell& cell) { cell.Text.clear(); });
    } else if (action == ActionClearSelection) {
        activeRow_ = 0;
    } else {
        Reject("unknown action");
    }
}

void GridModel::Changed() const {
    if (changed_ && std::get<bool>(properties_.at(L"ReDraw"))) {
        changed_();
    }
}

}  // namespace mip
