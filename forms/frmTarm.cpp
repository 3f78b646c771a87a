#include "forms/frmTarm.h"

#include "app/Messages.h"
#include "app/modSysParameter.h"
#include "forms/ControlIds.h"

namespace mip {

void frmTarm::OnLoad() {
    const std::wstring caption = GetMessageText(Program(), messages::Caption);
    SetCaption(caption);
    AddHeader(ids::lblTitle, caption, 14, true, 64);
    AddLabel(ids::L_TarmMsg, GetMessageText(Program(), messages::Closing),
             {.Points = Program().Identity.LanguageCode == L"11" ? 11 : 10});
    AddFooterButton(ids::B_OK, GetMessageText(Program(), messages::Ok), true);
    Finish(480);
    SetFocus(Item(ids::B_OK));
}

int frmTarm::Arrange(int left, int top, int width) {
    return PlaceText(Item(ids::L_TarmMsg), left, top, width);
}

void frmTarm::OnCommand(int control, int notification) {
    if (control == ids::B_OK && notification == BN_CLICKED) {
        End();
    }
}

void frmTarm::End() {
    if (BeginsToEnd()) {
        Flow().End();
    }
}

}  // namespace mip
