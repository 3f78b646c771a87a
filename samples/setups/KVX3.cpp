// Stand-in of the diagnostic program, whose presence lets manuals be installed.
#include "samples/setups/SampleWindow.h"

#include <windows.h>

int WINAPI wWinMain(HINSTANCE, HINSTANCE, wchar_t*, int) {
    return mip::ShowSampleWindow({L"KorvexDiagnosis", L"Korvex", L"Korvex vehicle diagnosis",
                                  L"This sample stands for the diagnostic program that the manuals belong to."});
}
