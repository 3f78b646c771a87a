#include "forms/frmMenu.h"

#include <algorithm>

#include "app/Messages.h"
#include "app/modSysParameter.h"
#include "forms/ControlIds.h"
#include "platform/ScopeGuard.h"
#include "screens/MenuScreen.h"
#include "screens/modBrowser.h"

namespace mip {

namespace {

constexpr std::initializer_list<int> MenuButtons{ids::cmdDispManual, ids::cmdStartInstall, ids::cmdBrowseManual};

Glyph GlyphOf(int button) {
    return button == ids::cmdDispManual     ? Glyph::Guide
           : button == ids::cmdStartInstall ? Glyph::Install
                                            : Glyph::Browse;
}

}  // namespace

void frmMenu::OnLoad() {
    const std::wstring caption = GetMessageText(Program(), messages::MenuCaption);
    SetCaption(caption);
    AddHeader(ids::lblTitle, caption, 22, true, 96);
    AddMenuButton(ids::cmdDispManual, messages::MenuGuide);
    AddMenuButton(ids::cmdStartInstall, messages::MenuInstall);
    AddMenuButton(ids::cmdBrowseManual, messages::MenuBrowse);
    AddLabel(ids::L_Notice, GetMessageText(Program(), messages::OpeningStartPage), {.Colour = &Palette::Muted});
    ShowItem(ids::L_Notice, false);
    Finish(560);
    SendMessageW(Window(), DM_SETDEFID, ids::cmdStartInstall, 0);
    SetFocus(Item(ids::cmdStartInstall));
}

void frmMenu::AddMenuButton(int id, std::int16_t message) {
    AddControl(L"BUTTON", id, GetMessageText(Program(), message), WS_TABSTOP | BS_PUSHBUTTON | BS_MULTILINE,
               {.Points = 18});
}

/// The buttons are of one height, which the longest text decides.
int frmMenu::Arrange(int left, int top, int width) {
    RECT room{Px(84), Px(12), Px(16), Px(12)};  // beside the sign
    int height = Px(76);
    for (const int id : MenuButtons) {
        SendMessageW(Item(id), BCM_SETTEXTMARGIN, 0, reinterpret_cast<LPARAM>(&room));
        const int textWidth = width - static_cast<int>(room.left + room.right);
        height = std::max(height, TextHeight(Item(id), textWidth) + static_cast<int>(room.top + room.bottom));
    }
    for (const int id : MenuButtons) {
        Place(Item(id), left, top, width, height);
        top += height + Px(12);
    }
    PlaceText(Item(ids::L_Notice), left, top, width);
    return top;
}

void frmMenu::OnCommand(int control, int notification) {
    if (notification != BN_CLICKED || browsing_) {
        return;
    }
    switch (control) {
        case ids::cmdDispManual:
            OpenInstallationGuide(Program());
            break;
        case ids::cmdStartInstall:
            Flow().StartInstallation();
            Close();
            break;
        case ids::cmdBrowseManual:
            Browse();
            break;
        default:
            break;
    }
}

/// A browser may take its time to load the page. Meanwhile the menu can do nothing but end the wait.
void frmMenu::Browse() {
    stopped_ = false;
    ShowBrowsing(true);
    const ScopeGuard done([this] { ShowBrowsing(false); });
    const Opening opening = ShowDiscIndex(Program().Platform, Program().Paths, [this] { return stopped_; });
    ShowBrowsing(false);
    ReportStartPage(Program(), opening);
}

void frmMenu::ShowBrowsing(bool browsing) {
    if (browsing == browsing_) {
        return;
    }
    browsing_ = browsing;
    ShowBusy(browsing);
    ShowItem(ids::L_Notice, browsing);
    for (const int id : MenuButtons) {
        EnableWindow(Item(id), browsing ? FALSE : TRUE);
    }
    // Without a control to be in, the focus is the window's own, where Esc still arrives.
    SetFocus(browsing ? Window() : Item(ids::cmdBrowseManual));
    Redraw(true);
}

void frmMenu::OnClose() {
    if (browsing_) {
        stopped_ = true;
        return;
    }
    Flow().CloseMenu();
    Close();
}

std::optional<LRESULT> frmMenu::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_NOTIFY) {
        const auto& header = *reinterpret_cast<const NMHDR*>(lParam);
        if (header.code == static_cast<UINT>(NM_CUSTOMDRAW)) {
            const auto& draw = *reinterpret_cast<const NMCUSTOMDRAW*>(lParam);
            if (draw.dwDrawStage == CDDS_PREERASE) {
                DrawMenuButton(draw);
                return CDRF_SKIPDEFAULT;
            }
        }
        return CDRF_DODEFAULT;
    }
    return Form::OnMessage(message, wParam, lParam);
}

/// A card with a sign and a text; it lights up under the mouse, and its frame is strong with the focus.
void frmMenu::DrawMenuButton(const NMCUSTOMDRAW& draw) const {
    const Palette colours = Colours();
    const HWND button = draw.hdr.hwndFrom;
    const bool pointedAt = (draw.uItemState & (CDIS_HOT | CDIS_SELECTED)) != 0;
    const bool enabled = (draw.uItemState & CDIS_DISABLED) == 0;
    const bool focused = (draw.uItemState & CDIS_FOCUS) != 0;
    FillArea(draw.hdc, draw.rc, colours.Page);
    FillRounded(draw.hdc, draw.rc, Px(6), pointedAt ? colours.CardHot : colours.Card,
                pointedAt || focused ? colours.Accent : colours.Line);
    if (focused) {
        FillRounded(draw.hdc, Shrunk(draw.rc, 1), Px(5), pointedAt ? colours.CardHot : colours.Card, colours.Accent);
    }

    const int height = draw.rc.bottom - draw.rc.top;
    const int disc = Px(48);
    const RECT discArea = Area(draw.rc.left + Px(16), draw.rc.top + (height - disc) / 2, disc, disc);
    FillCircle(draw.hdc, discArea, enabled ? colours.Accent : colours.Muted);
    DrawGlyph(draw.hdc, Shrunk(discArea, Px(11)), GlyphOf(static_cast<int>(draw.hdr.idFrom)),
              colours.HighContrast ? colours.Page : colours.HeaderText);

    RECT room{};
    SendMessageW(button, BCM_GETTEXTMARGIN, 0, reinterpret_cast<LPARAM>(&room));
    RECT textArea{draw.rc.left + room.left, 0, draw.rc.right - room.right, draw.rc.bottom};
    textArea.top = (height - TextHeight(button, static_cast<int>(textArea.right - textArea.left))) / 2;
    const SelectedObject font(draw.hdc, reinterpret_cast<HGDIOBJ>(SendMessageW(button, WM_GETFONT, 0, 0)));
    SetBkMode(draw.hdc, TRANSPARENT);
    SetTextColor(draw.hdc, enabled ? colours.Text : colours.HighContrast ? GetSysColor(COLOR_GRAYTEXT) : colours.Muted);
    const bool cuesHidden = (SendMessageW(button, WM_QUERYUISTATE, 0, 0) & UISF_HIDEACCEL) != 0;
    DrawTextW(draw.hdc, TextOf(button).c_str(), -1, &textArea, DT_WORDBREAK | (cuesHidden ? DT_HIDEPREFIX : 0U));
}

}  // namespace mip
