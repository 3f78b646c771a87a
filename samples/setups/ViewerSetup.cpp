// Setup of the sample viewer: installs VBrowser.exe and records its folder.
#include "samples/setups/SampleSetup.h"

#include <windows.h>

#include <exception>

int WINAPI wWinMain(HINSTANCE, HINSTANCE, wchar_t*, int) {
    try {
        std::wstring folder = mip::ReadMachineText(mip::ViewerKey, L"InstallDir");
        if (folder.empty()) {
            folder = mip::KorvexFolder(L"View");
        }
        return mip::RunLoggedSetup(folder, [&folder] {
            mip::InstallFile(L"VBrowser.exe", folder);
            mip::WriteMachineText(mip::ViewerKey, L"InstallDir", folder);
        });
    } catch (const std::exception&) {
        return 1;
    }
}
