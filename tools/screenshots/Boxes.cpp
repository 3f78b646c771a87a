// Shows every message box of the program as the program does, and has a picture taken of each:
//     boxes.exe SYSDIR PICTURE_FOLDER [ARGUMENTS OF THE PROGRAM]
// SYSDIR has the message files. The computer around is one in memory, on which everything fails that a box tells of.

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <vector>

#include "app/Messages.h"
#include "app/modSysParameter.h"
#include "catalogue/clsMDB.h"
#include "install/modCompanion.h"
#include "platform/windows/WindowsMessageBoxes.h"
#include "screens/DirectoryScreen.h"
#include "screens/MenuScreen.h"
#include "screens/modBrowser.h"
#include "tests/native/fakes/Workshop.h"
#include "tools/screenshots/Photographer.h"

#include <shellapi.h>

namespace mip {

namespace {

/// Shows boxes and has a picture taken of each.
class PhotographedBoxes {
  public:
    explicit PhotographedBoxes(const std::wstring& folder) : photographer_(folder) {}

    void Show(const ShownBox& box) {
        caption_ = box.Title;
        shown_ = this;
        const UINT_PTR timer = SetTimer(nullptr, 0, PaintingTime, OnTimer);
        (void)WindowsMessageBoxes().Show(box.Text, box.Style, box.Title);
        KillTimer(nullptr, timer);
    }

    std::wstring Name;  ///< of the picture

  private:
    static constexpr UINT PaintingTime = 500;  // milliseconds

    static void CALLBACK OnTimer(HWND, UINT, UINT_PTR, DWORD) { shown_->TakePicture(); }

    void TakePicture() const {
        const HWND box = FindWindowW(L"#32770", caption_.c_str());
        if (box == nullptr) {
            return;
        }
        try {
            photographer_.Take(box, Name);
        } catch (const std::runtime_error& failure) {
            std::printf("boxes: %s\n", failure.what());
            ExitProcess(1);
        }
        PostMessageW(box, WM_COMMAND, GetDlgItem(box, IDNO) != nullptr ? IDNO : IDOK, 0);
    }

    static inline PhotographedBoxes* shown_ = nullptr;
    Photographer photographer_;
    std::wstring caption_;
};

/// Puts the delivered files where the program looks for them.
void PutFilesOf(const std::filesystem::path& folder, FileTree& tree) {
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        std::ifstream file(entry.path(), std::ios::binary);
        tree.PutFile(L"D:\\programs\\setup\\SysDir\\" + entry.path().filename().wstring(),
                     {std::istreambuf_iterator<char>(file), {}});
    }
}

void ShowAll(const std::wstring& sysDir, PhotographedBoxes& boxes, const std::vector<std::wstring>& arguments) {
    Workshop shop;
    PutFilesOf(sysDir, shop.Tree);
    shop.MessageBoxes.OnShow = [&](const ShownBox& box) { boxes.Show(box); };
    const auto start = [&](const std::wstring& name, std::vector<std::wstring> more) {
        boxes.Name = name;
        more.insert(more.end(), arguments.begin(), arguments.end());
        Process(shop.Platform).Start(more);
    };
    start(L"b1-switches", {L"/?"});
    start(L"b2-bad-switch", {L"/SPEED=9"});

    Process process(shop.Platform);
    process.Start(arguments);
    Program& program = process.Program;
    program.WindowTitle = GetMessageText(program, messages::Caption);
    shop.Shell.OpenResult = 2;
    boxes.Name = L"b3-guide-not-opened";
    OpenInstallationGuide(program);
    boxes.Name = L"b4-start-page-not-opened";
    ReportStartPage(program, Opening::Failed);
    DiscCatalogueRecord manual;
    boxes.Name = L"b5-no-room";
    (void)ConfirmFolder(program, manual, L"X:\\on no drive");
    boxes.Name = L"b6-cancel";
    (void)CancelFolder(program);
    boxes.Name = L"b7-companion-failed";
    (void)GoesOnWithoutCompanion(program);
}

int Run(int count, wchar_t** arguments) {
    if (count < 3) {
        std::puts("say SYSDIR PICTURE_FOLDER [ARGUMENTS]");
        return 2;
    }
    SetProcessDPIAware();
    PhotographedBoxes boxes(arguments[2]);
    ShowAll(arguments[1], boxes, {arguments + 3, arguments + count});
    return 0;
}

}  // namespace

}  // namespace mip

int WINAPI wWinMain(HINSTANCE, HINSTANCE, LPWSTR, int) {
    int count = 0;
    wchar_t** arguments = CommandLineToArgvW(GetCommandLineW(), &count);
    const int status = mip::Run(count, arguments);
    LocalFree(arguments);
    return status;
}
