// Setup of the sample link program. It works only with its argument "1", as the disc's program gives it.
#include "samples/setups/SampleSetup.h"

#include <windows.h>

#include <exception>
#include <string_view>

int WINAPI wWinMain(HINSTANCE, HINSTANCE, wchar_t* arguments, int) {
    if (std::wstring_view(arguments) != L"1") {
        return 2;
    }
    try {
        const std::wstring folder = mip::KorvexFolder(L"Link");
        return mip::RunLoggedSetup(folder, [&folder] {
            const std::string settings = "[LINK]\r\nVersion=" SAMPLE_VERSION "\r\nOpen=VBrowser.exe\r\n";
            mip::WriteTextFile(folder + L"\\ManualLink.ini", settings);
        });
    } catch (const std::exception&) {
        return 1;
    }
}
