#include <windows.h>

#include <exception>

#include "platform/archive/EmbeddedArchives.h"
#include "platform/windows/WindowsArchiveSystem.h"
#include "platform/windows/WindowsClock.h"
#include "platform/windows/WindowsComputer.h"
#include "text/Arguments.h"

namespace {

/// Quotes every path for the embedded extractor, which does the work: blanks split only this library's arguments.
void Run(const std::vector<std::wstring>& arguments) {
    mip::WindowsArchiveSystem system;
    mip::WindowsClock clock;
    mip::EmbeddedArchives archives(system, clock);
    const auto quoted = [](const std::wstring& path) { return L" \"" + path + L"\""; };
    if (arguments.size() == 3 && arguments[0] == L"t" && arguments[1] == L"-hide") {
        archives.Test(L"x -aoa" + quoted(arguments[2]) + L" .");
    } else if (arguments.size() != 5 || arguments[0] != L"x" ||
               archives.SevenZip(L"x -aoa" + quoted(arguments[3]) + quoted(arguments[4]),
                                 mip::NoFaultLog::Instance()) != 0) {
        throw std::exception();
    }
}

}  // namespace

/// Leaves in the environment how it was called.
extern "C" int WINAPI SevenZip(HWND owner, LPCSTR commandLine, LPSTR output, DWORD outputSize) {
    const std::string call = std::string(owner ? "with a window: " : "") + commandLine + " > " +
                             (output ? "\"" + std::string(output) + "\"" : "nowhere") + " of " +
                             std::to_string(outputSize);
    SetEnvironmentVariableA("SEVENZIP_CALL", call.c_str());
    try {
        Run(mip::SplitArguments(mip::WindowsComputer(L"archive library").FromSystemCodePage(commandLine)));
        return 0;
    } catch (const std::exception&) {
        return 0x00008020;
    }
}
