#include "screens/MenuScreen.h"

#include "app/Messages.h"
#include "app/Program.h"
#include "app/modSysParameter.h"
#include "platform/MessageBoxes.h"
#include "platform/Shell.h"
#include "screens/modBrowser.h"

namespace mip {

namespace {

void ShowBox(const Program& program, std::int16_t message) {
    program.Platform.MessageBoxes.Show(GetMessageText(program, message), boxes::Exclamation, program.WindowTitle);
}

}  // namespace

void OpenInstallationGuide(const Program& program) {
    // The disc root ends in a backslash already; the shell takes the doubled one.
    const std::wstring page = program.Paths.DiscRootPath + L"\\install.html";
    if (program.Platform.Shell.OpenDocument(L"Open", page, showCommands::Maximised) < showCommands::LowestSuccess) {
        ShowBox(program, messages::GuideNotOpened);
    }
}

void ReportStartPage(const Program& program, Opening opening) {
    if (opening == Opening::Failed) {
        ShowBox(program, messages::StartPageNotOpened);
    }
}

}  // namespace mip
