#include <exception>
#include <string>
#include <vector>

#include "screens/forms/WindowsHeader.h"

#include "app/ExitCode.h"
#include "app/modMain.h"
#include "platform/archive/EmbeddedArchives.h"
#include "platform/sqlite/SqliteEngine.h"
#include "platform/windows/AdoEngine.h"
#include "platform/windows/ComApartment.h"
#include "platform/windows/ProcessHardening.h"
#include "platform/windows/WindowsAccessControl.h"
#include "platform/windows/WindowsAccountNames.h"
#include "platform/windows/WindowsArchiveSystem.h"
#include "platform/windows/WindowsArchives.h"
#include "platform/windows/WindowsBrowsers.h"
#include "platform/windows/WindowsClock.h"
#include "platform/windows/WindowsComputer.h"
#include "platform/windows/WindowsFileVersions.h"
#include "platform/windows/WindowsFiles.h"
#include "platform/windows/WindowsMessageBoxes.h"
#include "platform/windows/WindowsProcesses.h"
#include "platform/windows/WindowsProfileFiles.h"
#include "platform/windows/WindowsRegistry.h"
#include "platform/windows/WindowsShell.h"
#include "platform/windows/WindowsVolumes.h"
#include "screens/forms/FormScreens.h"
#include "text/Arguments.h"
#include "text/TextTools.h"

namespace mip {

namespace {

/// The real computer, and the program's state upon it.
class Application {
  public:
    Application() = default;
    Application(const Application&) = delete;
    Application& operator=(const Application&) = delete;

    mip::Program& Program() { return program_; }

  private:
    WindowsComputer computer_{L"ManualInstall"};
    WindowsClock clock_;
    WindowsFiles files_;
    WindowsFolders folders_;
    WindowsVolumes volumes_;
    WindowsFileVersions fileVersions_;
    WindowsProfileFiles profileFiles_;
    WindowsRegistry registry_;
    WindowsProcesses processes_;
    WindowsAccountNames accountNames_;
    WindowsAccessControl accessControl_;
    WindowsShell shell_;
    WindowsBrowsers browsers_;
    WindowsArchiveSystem archiveSystem_;
    EmbeddedArchives embeddedArchives_{archiveSystem_, clock_};
    WindowsArchives archives_{computer_, embeddedArchives_};
    AdoEngine jetEngine_;
    SqliteEngine sqliteEngine_;
    WindowsMessageBoxes boxes_;
    Platform platform_{files_,     folders_,  volumes_,   fileVersions_, profileFiles_,  registry_,
                       processes_, clock_,    computer_,  accountNames_, accessControl_, shell_,
                       browsers_,  archives_, jetEngine_, sqliteEngine_, boxes_};
    mip::Program program_{platform_};
};

std::vector<std::wstring> Arguments() {
    std::vector<std::wstring> arguments = SplitArguments(GetCommandLineW());
    if (!arguments.empty()) {
        arguments.erase(arguments.begin());  // the program itself
    }
    return arguments;
}

void InitControls() {
    INITCOMMONCONTROLSEX controls{sizeof controls, ICC_STANDARD_CLASSES | ICC_PROGRESS_CLASS | ICC_WIN95_CLASSES};
    InitCommonControlsEx(&controls);
}

/// A fault that no routine foresaw: said, logged, and the process ends with a failure.
int EndAfter(Program& program, const std::exception& fault) {
    const std::wstring text = L"Unexpected error: " + FromUtf8(fault.what());
    program.Log.Write(L"end", L"", text);
    program.Platform.MessageBoxes.Show(text, boxes::Exclamation, program.WindowTitle);
    return static_cast<int>(ExitCode::FailedPartWay);
}

int Run() {
    // First in, last out: the program's database may be an automation object.
    const ComApartment apartment;
    Application application;
    InitControls();
    Program& program = application.Program();
    FormScreens screens(program);
    try {
        Main(program, screens, Arguments());
        screens.Host().Run();
    } catch (const std::exception& fault) {
        return EndAfter(program, fault);
    }
    return static_cast<int>(program.Outcome.ExitCode);
}

}  // namespace

}  // namespace mip

int WINAPI wWinMain(HINSTANCE, HINSTANCE, LPWSTR, int) {
    mip::HardenProcess();
    return mip::Run();
}
