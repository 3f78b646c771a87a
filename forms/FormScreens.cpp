#include "forms/FormScreens.h"

#include "forms/frmDirectorySelect.h"
#include "forms/frmMain.h"
#include "forms/frmMenu.h"
#include "forms/frmResult.h"
#include "forms/frmStartUp.h"
#include "forms/frmTarm.h"
#include "forms/frmTransaction.h"
#include "startup/modMain.h"

namespace mip {

void FormScreens::ShowMenu() {
    Open<frmMenu>(menu_);
}

void FormScreens::ShowAgreement() {
    Open<frmStartUp>(agreement_);
}

void FormScreens::ShowInstallation() {
    Open<frmMain>(installation_);
}

void FormScreens::ShowResult() {
    Open<frmResult>(result_);
}

void FormScreens::ShowClosing() {
    Open<frmTarm>(closing_);
}

void FormScreens::ShowMaintenance() {
    Open<frmTransaction>(maintenance_);
}

void FormScreens::ShowStartPage() {
    OpenDiscIndex(host_.Program());
}

std::optional<std::wstring> FormScreens::AskForFolder(const DiscCatalogueRecord& manual, const std::wstring& proposal) {
    frmDirectorySelect form(host_, manual, proposal);
    form.RunModal(installation_->Window());
    return form.Chosen();
}

}  // namespace mip
