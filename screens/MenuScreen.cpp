#include "screens/MenuScreen.h"

#include "app/Messages.h"
#include "app/Program.h"
#include "app/modSysParameter.h"
#include "platform/MessageBoxes.h"
#include "platform/Shell.h"

namespace mip {

namespace {

constexpr std::intptr_t LowestSuccess = 32;

}  // namespace

void OpenInstallationGuide(const Program& program) {
    // The disc root ends in a backslash already; the shell takes the doubled one.
    const std::wstring page = program.Paths.DiscRootPath + L"\\install.html";
    if (program.Platform.Shell.OpenDocument(L"Open", page, showCommands::Maximised) < LowestSuccess) {
        program.Platform.MessageBoxes.Show(GetMessageText(program, messages::GuideNotOpened), boxes::Exclamation,
                                           program.WindowTitle);
    }
}

}  // namespace mip
