#include "tests/windows/archivelibrary/RecordingLibrary.h"

#include <windows.h>

#include <cstring>
#include <exception>

#include "platform/archive/EmbeddedArchives.h"
#include "platform/windows/WindowsArchiveSystem.h"
#include "platform/windows/WindowsClock.h"
#include "platform/windows/WindowsComputer.h"
#include "text/Arguments.h"

namespace {

mip::RecordedCall lastCall{};

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

extern "C" int WINAPI SevenZip(HWND owner, LPCSTR commandLine, LPSTR output, DWORD outputSize) {
    ++lastCall.Count;
    lastCall.Owner = owner;
    strncpy(lastCall.CommandLine, commandLine, sizeof lastCall.CommandLine - 1);
    lastCall.OutputLength = output ? static_cast<int>(strlen(output)) : -1;
    lastCall.OutputSize = outputSize;
    try {
        Run(mip::SplitArguments(mip::WindowsComputer(L"archive library").FromSystemCodePage(commandLine)));
        return 0;
    } catch (const std::exception&) {
        return mip::LibraryFailure;
    }
}

extern "C" const mip::RecordedCall* LastCall() {
    return &lastCall;
}
