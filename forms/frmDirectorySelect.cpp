#include "forms/frmDirectorySelect.h"

#include <shlobj.h>

#include "forms/ControlIds.h"
#include "platform/windows/Handle.h"

namespace mip {

namespace {

constexpr TextStyle OnCard{.Background = &Palette::Card};

int CALLBACK SelectStartFolder(HWND browser, UINT message, LPARAM, LPARAM start) {
    if (message == BFFM_INITIALIZED) {
        SendMessageW(browser, BFFM_SETSELECTIONW, TRUE, start);
    }
    return 0;
}

}  // namespace

void frmDirectorySelect::OnLoad() {
    texts_ = LoadDirectoryScreen(Program(), manual_);
    SetCaption(texts_.Caption);
    AddHeader(ids::lblTitle, texts_.Caption, 14, true, 64);
    AddLabel(ids::L_Name, texts_.Name, {.Points = 12, .Bold = true});
    for (int line = 0; line < 3; ++line) {
        AddLabel(ids::L_Msg + line, texts_.Instructions[static_cast<std::size_t>(line)]);
    }
    AddLabel(ids::Frame1, texts_.Frame, {.Colour = &Palette::Muted});
    AddLabel(ids::L_InstalPath, ProposedFolder(Program().Switches, proposal_),
             {.Points = 10, .Background = &Palette::Card}, SS_PATHELLIPSIS);
    AddControl(L"BUTTON", ids::B_CHANGE, texts_.Change, WS_TABSTOP | BS_PUSHBUTTON, OnCard);
    AddFooterButton(ids::B_OK, texts_.Ok, true);
    AddFooterButton(ids::B_Cancel, texts_.Cancel, false);
    Finish(560);
}

void frmDirectorySelect::OnShown() {
    SetFocus(Item(ids::B_OK));
}

int frmDirectorySelect::Arrange(int left, int top, int width) {
    top = PlaceText(Item(ids::L_Name), left, top, width) + Px(12);
    for (int line = 0; line < 3; ++line) {
        top = PlaceText(Item(ids::L_Msg + line), left, top, width) + Px(6);
    }
    const HWND frameLabel = Item(ids::Frame1);
    const SIZE label = TextSize(frameLabel);
    top += Px(12);
    Place(frameLabel, left + Px(8), top, static_cast<int>(label.cx), static_cast<int>(label.cy));
    frame1_ = Area(left, top + static_cast<int>(label.cy) / 2, width, Px(68));

    const HWND change = Item(ids::B_CHANGE);
    const int changeWidth = ButtonWidth(change);
    Place(change, frame1_.right - Px(16) - changeWidth, frame1_.top + Px(20), changeWidth, Px(28));
    PlaceFolder(left + Px(16), width - changeWidth - Px(48));
    return frame1_.bottom;
}

/// Two lines, for a folder far down; of one still longer the middle is left out.
void frmDirectorySelect::PlaceFolder(int left, int width) {
    const HWND path = Item(ids::L_InstalPath);
    const LONG style = GetWindowLongW(path, GWL_STYLE) & ~SS_ELLIPSISMASK;
    SetWindowLongW(path, GWL_STYLE, style | SS_EDITCONTROL);
    int height = TextHeight(path, width);
    if (height > Px(40)) {
        SetWindowLongW(path, GWL_STYLE, (style & ~SS_EDITCONTROL) | SS_PATHELLIPSIS);
        height = static_cast<int>(TextSize(path).cy);
    }
    Place(path, left, frame1_.top + (Px(68) - height) / 2, width, height);
}

void frmDirectorySelect::Paint(HDC dc, const Palette& colours) {
    FillRounded(dc, frame1_, Px(4), colours.Card, colours.Line);
}

void frmDirectorySelect::OnCommand(int control, int notification) {
    if (notification != BN_CLICKED) {
        return;
    }
    switch (control) {
        case ids::B_CHANGE:
            Change();
            break;
        case ids::B_OK:
            Confirm();
            break;
        case ids::B_Cancel:
            Cancel();
            break;
        default:
            break;
    }
}

void frmDirectorySelect::Change() {
    const std::wstring shown = ShownFolder();
    const std::wstring chosen = ChooseInstallFolder(Window(), texts_.FolderQuestion, shown);
    SetItemText(ids::L_InstalPath, ChangedFolder(shown, chosen));
    ArrangeAgain();
}

void frmDirectorySelect::Confirm() {
    const std::wstring folder = ShownFolder();
    if (ConfirmFolder(Program(), manual_, folder)) {
        chosen_ = folder;
        Close();
    }
}

void frmDirectorySelect::Cancel() {
    if (CancelFolder(Program())) {
        Close();
    }
}

std::wstring frmDirectorySelect::ShownFolder() const {
    wchar_t folder[MAX_PATH * 4];
    const UINT length = GetDlgItemTextW(Window(), ids::L_InstalPath, folder, MAX_PATH * 4);
    return {folder, length};
}

std::wstring ChooseInstallFolder(HWND owner, const std::wstring& title, const std::wstring& start) {
    BROWSEINFOW browse{};
    browse.hwndOwner = owner;
    browse.lpszTitle = title.c_str();
    browse.ulFlags = BIF_RETURNONLYFSDIRS | BIF_NEWDIALOGSTYLE;
    browse.lpfn = SelectStartFolder;
    browse.lParam = reinterpret_cast<LPARAM>(start.c_str());
    const ItemList chosen(SHBrowseForFolderW(&browse));
    wchar_t folder[MAX_PATH]{};
    if (!chosen || SHGetPathFromIDListW(chosen.Get(), folder) == 0) {
        return {};
    }
    return folder;
}

}  // namespace mip
