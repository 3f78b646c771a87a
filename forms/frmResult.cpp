#include "forms/frmResult.h"

#include <algorithm>

#include "app/Messages.h"
#include "app/modSysParameter.h"
#include "forms/Clipboard.h"
#include "forms/ControlIds.h"

namespace mip {

namespace {

/// Enter in a control that is not a button moves on to the next one.
LRESULT CALLBACK MoveOnWithEnter(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR, DWORD_PTR) {
    const auto* pending = reinterpret_cast<const MSG*>(lParam);
    if (message == WM_GETDLGCODE && pending != nullptr && pending->message == WM_KEYDOWN &&
        pending->wParam == VK_RETURN) {
        return DLGC_WANTALLKEYS;
    }
    if (message == WM_KEYDOWN && wParam == VK_RETURN) {
        PostMessageW(GetParent(window), WM_NEXTDLGCTL, 0, FALSE);
        return 0;
    }
    if (message == WM_CHAR && wParam < VK_SPACE) {
        return 0;
    }
    return DefSubclassProc(window, message, wParam, lParam);
}

LRESULT CALLBACK CopyWithCtrlC(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR, DWORD_PTR) {
    if (message == WM_KEYDOWN && wParam == 'C' && GetKeyState(VK_CONTROL) < 0) {
        SendMessageW(GetParent(window), WM_COPY, static_cast<WPARAM>(GetDlgCtrlID(window)), 0);
        return 0;
    }
    return DefSubclassProc(window, message, wParam, lParam);
}

}  // namespace

void frmResult::OnLoad() {
    const std::wstring caption = GetMessageText(Program(), messages::Caption);
    SetCaption(caption);
    AddHeader(ids::lblTitle, caption, 14, true, 64);
    AddOutcome();
    AddGrid();
    AddLegend();
    AddShortcutChoice();
    AddFooterButton(ids::B_OK, GetMessageText(Program(), messages::Ok), true);
    for (const int control : {ids::vaSpread, ids::C_Shortcut, ids::B_OK}) {
        SetWindowSubclass(Item(control), CopyWithCtrlC, 1, 0);
    }
    AllowResizing();
    Finish(720);
}

void frmResult::AddOutcome() {
    outcome_ = GetOutcomeTexts(Program());
    const auto tint = outcome_.Succeeded ? &Palette::SuccessTint : &Palette::FailureTint;
    AddLabel(ids::L_NormalMsg, L"", {.Points = 12, .Bold = true});
    AddLabel(ids::L_ErrorMsg + 1, outcome_.Message, {.Points = 12, .Bold = true, .Background = tint});
    AddLabel(ids::L_ErrorMsg + 2, outcome_.SubMessage, {.Background = tint});
    ShowItem(ids::L_NormalMsg, false);
}

void frmResult::AddGrid() {
    // A screen reader takes a list's name from the label before it, also from a hidden one.
    const std::wstring name = GetMessageText(Program(), messages::ListName);
    AddLabel(ids::L_List, name);
    ShowItem(ids::L_List, false);
    const HWND list = AddControl(WC_LISTVIEWW, ids::vaSpread, name, GridWindow::Style);
    SetWindowSubclass(list, MoveOnWithEnter, 0, 0);
    grid_.Attach(list);
    if (!ResultList(Program(), *this, grid_.Model()).Load()) {
        Flow().FailResult();
    }
    ShowItem(ids::vaSpread, HasRows());
}

void frmResult::AddLegend() {
    hasLegend_ = std::ranges::any_of(Program().DiscCatalogue.Records, [this](const DiscCatalogueRecord& manual) {
        return IsInstalledInFailedRun(Program().Outcome, manual);
    });
    if (hasLegend_) {
        AddLabel(ids::L_Legend, GetMessageText(Program(), messages::Legend), {.Colour = &Palette::Muted});
    }
}

void frmResult::AddShortcutChoice() {
    if (MayOfferDesktopShortcut(Program())) {
        const HWND choice = AddControl(L"BUTTON", ids::C_Shortcut, GetMessageText(Program(), messages::DesktopShortcut),
                                       WS_TABSTOP | BS_AUTOCHECKBOX, {.Background = &Palette::Footer});
        SetWindowSubclass(choice, MoveOnWithEnter, 0, 0);
        SetFooterControl(choice);
    }
}

void frmResult::OnShown() {
    SetFocus(Item(ids::B_OK));
}

int frmResult::Arrange(int left, int top, int width) {
    const int textLeft = left + Px(72);
    const int textWidth = width - Px(72 + 16);
    int bottom = PlaceText(Item(ids::L_ErrorMsg + 1), textLeft, top + Px(14), textWidth);
    if (!outcome_.SubMessage.empty()) {
        bottom = PlaceText(Item(ids::L_ErrorMsg + 2), textLeft, bottom + Px(6), textWidth);
    }
    bottom += Px(14);
    strip_ = Area(left, top, width, std::max(bottom - top, Px(68)));
    Place(Item(ids::L_NormalMsg), left, top, width, strip_.bottom - strip_.top);
    if (!HasRows()) {
        return strip_.bottom;
    }

    const int gridTop = strip_.bottom + Px(16);
    const int gridHeight = FlexibleHeight(246, 120);
    Place(Item(ids::vaSpread), left, gridTop, width, gridHeight);
    grid_.Fit(Dpi());
    bottom = gridTop + gridHeight;
    ShowItem(ids::L_Legend, ShowsLegend());
    if (ShowsLegend()) {
        legend_ = Area(left, bottom + Px(10), Px(14), Px(14));
        PlaceText(Item(ids::L_Legend), left + Px(22), legend_.top, width - Px(22));
        bottom = legend_.bottom;
    }
    return bottom;
}

void frmResult::Paint(HDC dc, const Palette& colours) {
    if (IsWindowVisible(Item(ids::L_ErrorMsg + 1)) != 0) {
        const COLORREF colour = outcome_.Succeeded ? colours.Success : colours.Failure;
        FillArea(dc, strip_, outcome_.Succeeded ? colours.SuccessTint : colours.FailureTint);
        FillArea(dc, Area(strip_.left, strip_.top, Px(4), strip_.bottom - strip_.top), colour);
        const RECT disc =
            Area(strip_.left + Px(20), strip_.top + (strip_.bottom - strip_.top - Px(36)) / 2, Px(36), Px(36));
        FillCircle(dc, disc, colour);
        DrawGlyph(dc, Shrunk(disc, Px(4)), outcome_.Succeeded ? Glyph::Check : Glyph::Exclamation,
                  colours.HighContrast ? colours.Page : colours.HeaderText);
    }
    if (ShowsLegend()) {
        FillRounded(dc, legend_, Px(2), clsSpread::LightBlue, colours.Line);
    }
}

void frmResult::OnCommand(int control, int notification) {
    if (control == ids::B_OK && notification == BN_CLICKED) {
        End();
    }
}

std::optional<LRESULT> frmResult::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_NOTIFY:
            return grid_.OnNotify(lParam);
        case WM_COPY:
            Copy(static_cast<int>(wParam));
            return 0;
        case WM_SYSCOLORCHANGE:
            SendMessageW(Item(ids::vaSpread), message, wParam, lParam);
            ArrangeAgain();
            return 0;
        default:
            return Form::OnMessage(message, wParam, lParam);
    }
}

/// The chosen rows, or all that the screen has to say.
void frmResult::Copy(int control) {
    const std::wstring rows = control == ids::vaSpread ? grid_.SelectedText() : L"";
    PutOnClipboard(Window(), rows.empty() ? TextToCopy(Program(), grid_.Model()) : rows);
}

void frmResult::End() {
    if (!BeginsToEnd()) {
        return;
    }
    ShowBusy(true);
    if (IsDlgButtonChecked(Window(), ids::C_Shortcut) == BST_CHECKED) {
        MakeDesktopShortcut(Program());
    }
    SetItemText(ids::L_NormalMsg, GetMessageText(Program(), messages::PleaseWait));
    for (const int line : {1, 2}) {
        SetItemText(ids::L_ErrorMsg + line, L"");
        ShowItem(ids::L_ErrorMsg + line, false);
    }
    ShowItem(ids::L_NormalMsg, true);
    EnableWindow(Item(ids::B_OK), FALSE);
    Redraw(true);
    Flow().CloseResult();
    ShowBusy(false);
    Close();
}

}  // namespace mip
