// Stand-in of the manual manager. While it runs, manuals must not be installed.
#include "samples/setups/SampleWindow.h"

#include <windows.h>

int WINAPI wWinMain(HINSTANCE, HINSTANCE, wchar_t*, int) {
    return mip::ShowSampleWindow({L"VantorManualManager", L"Vantor Manual Manager", L"Vantor Manual Manager",
                                  L"Version 2.1.7\n\nThis sample stands for the program that lists and opens the "
                                  L"installed manuals. Close it before you install manuals."});
}
