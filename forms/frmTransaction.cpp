#include "forms/frmTransaction.h"

#include "app/Messages.h"
#include "app/modSysParameter.h"
#include "forms/ControlIds.h"
#include "screens/MaintenanceScreen.h"

namespace mip {

void frmTransaction::OnLoad() {
    const std::wstring caption = GetMessageText(Program(), messages::Caption);
    SetCaption(caption);
    AddHeader(ids::lblTitle, caption, 14, true, 64);
    AddLabel(ids::L_TransactionMsg, GetMessageText(Program(), messages::Transaction), {.Points = 11, .Bold = true});
    AddLabel(ids::Label1, GetMessageText(Program(), messages::TransactionWait));
    DisableClosing();
    Finish(480);
}

int frmTransaction::Arrange(int left, int top, int width) {
    const int bottom = PlaceText(Item(ids::L_TransactionMsg), left, top, width);
    return PlaceText(Item(ids::Label1), left, bottom + Px(10), width);
}

void frmTransaction::OnShown() {
    Redraw(true);
    ShowBusy(true);
    RunMaintenance(Program());
    ShowBusy(false);
    Close();
    Flow().End();
}

}  // namespace mip
