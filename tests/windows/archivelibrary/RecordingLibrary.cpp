#include "tests/windows/archivelibrary/RecordingLibrary.h"

#include <windows.h>

#include <cstring>

namespace {

mip::RecordedCall lastCall{};

}  // namespace

extern "C" int WINAPI SevenZip(HWND owner, LPCSTR commandLine, LPSTR output, DWORD outputSize) {
    ++lastCall.Count;
    lastCall.Owner = owner;
    strncpy(lastCall.CommandLine, commandLine, sizeof lastCall.CommandLine - 1);
    lastCall.OutputLength = output ? static_cast<int>(strlen(output)) : -1;
    lastCall.OutputSize = outputSize;
    return mip::RecordedResult;
}

extern "C" const mip::RecordedCall* LastCall() {
    return &lastCall;
}
