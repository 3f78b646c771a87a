#include "screens/GridModel.h"

#include <algorithm>
#include <stdexcept>
#include <string_view>

namespace mip {

namespace {

constexpr std::int32_t ActionActivateCell = 0;
constexpr std::int32_t ActionClearText = 12;
constexpr std::int32_t ActionClearSelection = 29;
constexpr std::int32_t MostRows = 100'000;
constexpr std::int32_t MostCols = 256;

/// The grid's own properties and what they are at first. A value of another kind is rejected.
const std::map<std::wstring, GridValue>& GridProperties() {
    static const std::map<std::wstring, GridValue> properties{
        {L"MaxRows", 0},
        {L"MaxCols", 0},
        {L"Row", 1},
        {L"Col", 1},
        {L"Row2", 1},
        {L"Col2", 1},
        {L"BlockMode", false},
        {L"Action", 0},
        {L"ColsFrozen", 0},
        {L"RowsFrozen", 0},
        {L"ReDraw", true},
        {L"EditModePermanent", false},
        {L"EditModeReplace", false},
        {L"AutoClipboard", true},
        {L"ArrowsExitEditMode", false},
        {L"RetainSelBlock", true},
        {L"Protect", true},
        {L"AllowMultiBlocks", false},
        {L"MoveActiveOnFocus", true},
        {L"AllowCellOverflow", false},
        {L"NoBeep", false},
        {L"AllowDragDrop", false},
        {L"NoBorder", false},
        {L"ProcessTab", false},
        {L"AutoSize", false},
        {L"AutoCalc", false},
        {L"AllowUserFormulas", false},
        {L"FormulaSync", false},
        {L"AllowEditOverflow", false},
        {L"ClipboardOptions", 15},
        {L"Appearance", 0},
        {L"CellNoteIndicator", 0},
        {L"TwoDigitYearMax", 2059},
        {L"ButtonDrawMode", 0},
        {L"SelectBlockOptions", 0},
        {L"OperationMode", 2},
        {L"EditEnterAction", 0},
    };
    return properties;
}

/// The properties that every cell has for itself.
const std::map<std::wstring, GridValue>& CellProperties() {
    static const std::map<std::wstring, GridValue> properties{
        {L"BackColor", 0xFFFFFF},
        {L"CellType", 1},
        {L"TypeHAlign", 0},
        {L"TypeVAlign", 0},
        {L"TypePictMaintainScale", false},
        {L"TypePictStretch", false},
        {L"TypePictPicture", std::wstring{}},
        {L"TypeComboBoxList", std::wstring{}},
        {L"TypeComboBoxCurSel", -1},
    };
    return properties;
}

[[noreturn]] void Reject(const char* what) {
    throw std::invalid_argument(what);
}

void RequireSameKind(const GridValue& known, const GridValue& given) {
    if (known.index() != given.index()) {
        Reject("value of another kind");
    }
}

std::wstring TextOf(const GridValue& value) {
    if (const auto* text = std::get_if<std::wstring>(&value)) {
        return *text;
    }
    if (const auto* number = std::get_if<std::int32_t>(&value)) {
        return std::to_wstring(*number);
    }
    if (std::holds_alternative<std::monostate>(value)) {
        return {};
    }
    Reject("cells hold texts and whole numbers");
}

/// The item at a position of a list whose items are separated by tabs; "" outside it.
std::wstring ListItem(std::wstring_view list, std::int32_t position) {
    for (; position > 0 && !list.empty(); --position) {
        const auto end = list.find(L'\t');
        list.remove_prefix(end == std::wstring_view::npos ? list.size() : end + 1);
    }
    return position < 0 ? std::wstring() : std::wstring(list.substr(0, list.find(L'\t')));
}

}  // namespace

GridModel::GridModel(std::int32_t rows, std::int32_t cols) : properties_(GridProperties()) {
    Resize(rows, cols);
}

void GridModel::SetProperty(const std::wstring& name, const GridValue& value) {
    const auto cellProperty = CellProperties().find(name);
    if (cellProperty == CellProperties().end()) {
        SetGridProperty(name, value);
    } else {
        RequireSameKind(cellProperty->second, value);
        ForSelectedCells([&](Cell& cell) {
            cell.Properties[name] = value;
            if (name == L"TypeComboBoxList") {
                cell.Properties[L"CellType"] = ComboBoxCell;
            }
        });
    }
    Changed();
}

GridValue GridModel::GetProperty(const std::wstring& name) const {
    if (CellProperties().contains(name)) {
        return CellProperty(Number(L"Col"), Number(L"Row"), name);
    }
    const auto property = properties_.find(name);
    if (property == properties_.end()) {
        Reject("unknown property");
    }
    return property->second;
}

void GridModel::SetProperty(const std::wstring& name, std::int32_t index, const GridValue& value) {
    const auto* height = std::get_if<double>(&value);
    if (name != L"RowHeight" || height == nullptr || *height < 0 || index < -1 || index > Rows()) {
        Reject("no such row height");
    }
    if (index == -1) {
        std::for_each(rows_.begin() + 1, rows_.end(), [&](Row& row) { row.Height = *height; });
    } else {
        rows_[static_cast<std::size_t>(index)].Height = *height;
    }
    Changed();
}

GridValue GridModel::GetProperty(const std::wstring& name, std::int32_t index) const {
    if (name != L"RowHeight" || index < 0) {
        Reject("no such row height");
    }
    return index <= Rows() ? RowHeight(index) : DefaultRowHeight;
}

void GridModel::SetText(std::int32_t col, std::int32_t row, const GridValue& value) {
    At(col, row).Text = TextOf(value);
    Changed();
}

std::wstring GridModel::GetText(std::int32_t col, std::int32_t row) const {
    const std::int32_t chosen = std::get<std::int32_t>(CellProperty(col, row, L"TypeComboBoxCurSel"));
    return chosen < 0 ? At(col, row).Text
                      : ListItem(std::get<std::wstring>(CellProperty(col, row, L"TypeComboBoxList")), chosen);
}

std::wstring GridModel::AllText() const {
    std::wstring text;
    for (std::int32_t row = 0; row <= Rows(); ++row) {
        for (std::int32_t col = 1; col <= Cols(); ++col) {
            text += (col == 1 ? L"" : L"\t") + GetText(col, row);
        }
        text += L"\r\n";
    }
    return text;
}

void GridModel::SetActiveRow(std::int32_t row) {
    activeRow_ = std::clamp(row, std::min(1, Rows()), Rows());
    Changed();
}

GridValue GridModel::CellProperty(std::int32_t col, std::int32_t row, const std::wstring& name) const {
    const auto& own = At(col, row).Properties;
    const auto property = own.find(name);
    return property == own.end() ? CellProperties().at(name) : property->second;
}

const GridModel::Cell& GridModel::At(std::int32_t col, std::int32_t row) const {
    if (col < 1 || col > Cols() || row < 0 || row > Rows()) {
        Reject("no such cell");
    }
    return rows_[static_cast<std::size_t>(row)].Cells[static_cast<std::size_t>(col - 1)];
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

void GridModel::SetGridProperty(const std::wstring& name, const GridValue& value) {
    const auto property = properties_.find(name);
    if (property == properties_.end()) {
        Reject("unknown property");
    }
    RequireSameKind(property->second, value);
    if (name == L"Action") {
        Act(std::get<std::int32_t>(value));
    } else if (name == L"MaxRows") {
        Resize(std::get<std::int32_t>(value), Cols());
    } else if (name == L"MaxCols") {
        Resize(Rows(), std::get<std::int32_t>(value));
    }
    property->second = value;
}

void GridModel::Resize(std::int32_t rows, std::int32_t cols) {
    if (rows < 0 || rows > MostRows || cols < 1 || cols > MostCols) {
        Reject("a grid of this size cannot be had");
    }
    rows_.resize(static_cast<std::size_t>(rows) + 1);
    for (Row& row : rows_) {
        row.Cells.resize(static_cast<std::size_t>(cols));
    }
    properties_[L"MaxRows"] = rows;
    properties_[L"MaxCols"] = cols;
    activeRow_ = std::min(activeRow_, rows);
}

void GridModel::Act(std::int32_t action) {
    switch (action) {
        case ActionActivateCell:
            SetActiveRow(Number(L"Row"));
            break;
        case ActionClearText:
            ForSelectedCells([](Cell& cell) { cell.Text.clear(); });
            break;
        case ActionClearSelection:
            activeRow_ = 0;
            break;
        default:
            Reject("unknown action");
    }
}

void GridModel::Changed() const {
    if (changed_ && std::get<bool>(properties_.at(L"ReDraw"))) {
        changed_();
    }
}

}  // namespace mip
