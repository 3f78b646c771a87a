#include "screens/forms/FormScreens.h"

#include "screens/forms/frmMain.h"
#include "screens/forms/frmMenu.h"
#include "screens/forms/frmResult.h"
#include "screens/forms/frmStartUp.h"
#include "screens/forms/frmTarm.h"
#include "screens/forms/frmTransaction.h"

namespace mip {

void FormScreens::ShowMenu() {
    Open<frmMenu>(menu_);
}

void FormScreens::ShowStartUp() {
    Open<frmStartUp>(startUp_);
}

void FormScreens::ShowInstallation() {
    if (program_.Switches.VerySilent) {
        InstallSilently(program_);
        ShowResult();
    } else {
        Open<frmMain>(main_);
    }
}

void FormScreens::ShowResult() {
    if (program_.Switches.IsQuiet()) {
        EndQuietRun(program_);
    }
    Open<frmResult>(result_);
}

void FormScreens::ShowTerms() {
    Open<frmTarm>(terms_);
}

void FormScreens::ShowTransaction() {
    if (program_.Switches.VerySilent) {
        RunTransactionSilently(program_);
    }
    Open<frmTransaction>(transaction_);
}

}  // namespace mip
