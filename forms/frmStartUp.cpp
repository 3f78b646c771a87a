#include "forms/frmStartUp.h"

#include <algorithm>

#include "app/Messages.h"
#include "app/modSysParameter.h"
#include "forms/ControlIds.h"
#include "screens/AgreementScreen.h"

namespace mip {

namespace {

constexpr TextStyle OnCard{.Background = &Palette::Card};

/// In a dialog a text box would take Enter and Esc for itself; here they are the dialog's. Letters stay with the box,
/// where they do nothing: without Alt none of them is meant for a button.
LRESULT CALLBACK LeaveKeysToDialog(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR, DWORD_PTR) {
    return message == WM_GETDLGCODE ? DLGC_WANTARROWS | DLGC_WANTCHARS
                                    : DefSubclassProc(window, message, wParam, lParam);
}

bool IsArrow(WPARAM key) {
    return key == VK_UP || key == VK_DOWN || key == VK_LEFT || key == VK_RIGHT;
}

/// An arrow key chooses the other option. The dialog itself would move the focus alone.
LRESULT CALLBACK ChooseByArrow(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR, DWORD_PTR other) {
    const auto* pending = reinterpret_cast<const MSG*>(lParam);
    if (message == WM_GETDLGCODE && pending != nullptr && pending->message == WM_KEYDOWN && IsArrow(pending->wParam)) {
        return DLGC_WANTARROWS;
    }
    if (message == WM_KEYDOWN && IsArrow(wParam)) {
        const HWND option = GetDlgItem(GetParent(window), static_cast<int>(other));
        SetFocus(option);
        SendMessageW(option, BM_CLICK, 0, 0);
        return 0;
    }
    return DefSubclassProc(window, message, wParam, lParam);
}

}  // namespace

void frmStartUp::OnLoad() {
    const std::wstring caption = GetMessageText(Program(), messages::Caption);
    SetCaption(caption);
    AddHeader(ids::lblTitle, caption, 14, true, 64);

    const HWND contract = AddControl(L"EDIT", ids::T_CONTRACT, LoadAgreementText(Program()),
                                     WS_TABSTOP | WS_BORDER | WS_VSCROLL | ES_MULTILINE | ES_READONLY | ES_AUTOVSCROLL);
    SetWindowSubclass(contract, LeaveKeysToDialog, 0, 0);
    AddOption(1, messages::Agree);
    AddOption(2, messages::DoNotAgree);
    EnableWindow(AddFooterButton(ids::B_OK, GetMessageText(Program(), messages::Ok), true), FALSE);
    Finish(600);
    SetFocus(contract);
}

void frmStartUp::AddOption(int index, std::int16_t message) {
    const DWORD group = index == 1 ? WS_GROUP | WS_TABSTOP : 0U;
    const HWND option = AddControl(L"BUTTON", ids::O_Value + index, GetMessageText(Program(), message),
                                   group | BS_AUTORADIOBUTTON | BS_MULTILINE, OnCard);
    // The choice is made by the user, not by the focus that passes.
    SendMessageW(option, BM_SETDONTCLICK, TRUE, 0);
    SetWindowSubclass(option, ChooseByArrow, 0, static_cast<DWORD_PTR>(ids::O_Value + 3 - index));
}

int frmStartUp::Arrange(int left, int top, int width) {
    const HWND contract = Item(ids::T_CONTRACT);
    const int contractHeight = FlexibleHeight(236, 96);
    Place(contract, left, top, width, contractHeight);
    RECT text{};
    GetClientRect(contract, &text);
    text = {text.left + Px(12), text.top + Px(10), text.right - Px(12), text.bottom - Px(6)};
    SendMessageW(contract, EM_SETRECT, 0, reinterpret_cast<LPARAM>(&text));
    top += contractHeight + Px(14);

    frame1_ = Area(left, top, width, Px(10));
    for (const int index : {1, 2}) {
        const HWND option = Item(ids::O_Value + index);
        const int height = std::max(TextHeight(option, width - Px(32 + 24)) + Px(2), Px(26));
        Place(option, left + Px(16), frame1_.bottom, width - Px(32), height);
        frame1_.bottom += height;
    }
    frame1_.bottom += Px(10);
    return frame1_.bottom;
}

void frmStartUp::Paint(HDC dc, const Palette& colours) {
    FillRounded(dc, frame1_, Px(4), colours.Card, colours.Line);
}

void frmStartUp::OnCommand(int control, int notification) {
    if (notification != BN_CLICKED) {
        return;
    }
    switch (control) {
        case ids::O_Value + 1:
        case ids::O_Value + 2:
            EnableWindow(Item(ids::B_OK), TRUE);
            break;
        case ids::B_OK:
            Flow().AnswerAgreement(IsDlgButtonChecked(Window(), ids::O_Value + 1) == BST_CHECKED);
            Close();
            break;
        default:
            break;
    }
}

void frmStartUp::OnClose() {
    Flow().AnswerAgreement(false);
    Close();
}

}  // namespace mip
