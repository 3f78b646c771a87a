#include <exception>
#include <string>
#include <vector>

#include "forms/WindowsHeader.h"

#include "app/Program.h"
#include "forms/FormScreens.h"
#include "platform/windows/ComApartment.h"
#include "platform/windows/ProcessHardening.h"
#include "startup/modMain.h"
#include "startup/windows/WindowsPlatform.h"
#include "text/Arguments.h"
#include "text/TextTools.h"

namespace mip {

namespace {

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
    const WindowsPlatform computer(L"ManualInstall");
    Program program(computer.Platform());
    FormScreens screens(program, EndProgram);
    InitControls();
    try {
        Main(program, screens.Host().Flow(), Arguments());
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
