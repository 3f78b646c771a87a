// Setup of the sample manual manager: puts ManualManager.exe and its PDF manuals into the folder of the
// manual library.
#include "samples/setups/SampleSetup.h"

#include <windows.h>

#include <exception>

int WINAPI wWinMain(HINSTANCE, HINSTANCE, wchar_t*, int) {
    try {
        const std::wstring folder = mip::ReadMachineText(mip::ManualLinkKey, L"InstallDir");
        if (folder.empty()) {
            return 2;
        }
        // This setup leaves no log. The one failure that its caller can see is that the setup is gone.
        if (!mip::OrderedFailure().empty()) {
            mip::MoveSetupAside();
            return 1;
        }
        mip::CreateFolderTree(folder);
        mip::InstallFile(L"ManualManager.exe", folder);
        mip::InstallFile(L"ManualManager_EN.pdf", folder);
        mip::InstallFile(L"ManualManager_JP.pdf", folder);
        return 0;
    } catch (const std::exception&) {
        return 1;
    }
}
