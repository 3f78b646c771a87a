#include "screens/DirectoryScreen.h"

#include <cmath>
#include <exception>

#include "app/Failure.h"
#include "app/Messages.h"
#include "app/Program.h"
#include "app/modFile.h"
#include "app/modPdf.h"
#include "app/modSysParameter.h"
#include "platform/FaultLog.h"
#include "platform/Files.h"
#include "platform/MessageBoxes.h"
#include "text/Checked.h"
#include "text/TextTools.h"

namespace mip {

namespace {

constexpr double ArchiveManualBytes = 150'000'000;
constexpr double ProgramDriveReserve = 350'000'000;
constexpr wchar_t PdfStep[] = L"10000000";

bool Fits(Platform& platform, const Paths& paths, const DiscCatalogueRecord& manual, const std::wstring& folder) {
    return GetUsableFreeSpace(platform, paths, folder) >= RequiredBytes(platform, paths, manual);
}

}  // namespace

DirectoryTexts LoadDirectoryScreen(const Program& program, const DiscCatalogueRecord& manual) {
    const auto message = [&](std::int16_t number) { return GetMessageText(program, number); };

    DirectoryTexts texts;
    texts.Caption = message(messages::Caption);
    texts.Name = manual.Model_desc + L" (Ver." + manual.Version + L")";
    texts.Instructions = {
        ReplaceAll(message(messages::WhichNewManual), L"@", std::to_wstring(program.Installation.NoFolderCount)),
        message(messages::FolderInstructions1), message(messages::FolderInstructions2)};
    texts.Change = message(messages::ChangeFolder);
    texts.Ok = message(messages::Ok);
    texts.Cancel = message(messages::Cancel);
    texts.Frame = L"  " + message(messages::FolderFrame) + L"  ";
    texts.FolderQuestion = message(messages::ChooseFolder);
    return texts;
}

std::wstring ProposedFolder(const Switches& switches, const std::wstring& proposal) {
    const std::wstring& given = switches.Directory;
    return given.empty() ? proposal : TrimFolderPath(given);
}

std::wstring ChangedFolder(const std::wstring& shown, const std::wstring& chosen) {
    return chosen.empty() ? shown : TrimFolderPath(chosen);
}

bool ConfirmFolder(const Program& program, const DiscCatalogueRecord& manual, const std::wstring& folder) {
    if (Fits(program.Platform, program.Paths, manual, folder)) {
        return true;
    }
    program.Platform.MessageBoxes.Show(GetMessageText(program, messages::NotEnoughSpace), boxes::Information,
                                       program.WindowTitle);
    return false;
}

bool CancelFolder(Program& program) {
    const int answer = program.Platform.MessageBoxes.Show(GetMessageText(program, messages::ReallyCancel),
                                                          boxes::Exclamation | boxes::YesNo, program.WindowTitle);
    if (answer != boxes::AnswerYes) {
        return false;
    }
    FailRun(program, messages::Cancelled);
    return true;
}

std::wstring ChooseFolderUnasked(const Program& program, const DiscCatalogueRecord& manual,
                                 const std::wstring& proposal) {
    std::wstring folder = ProposedFolder(program.Switches, proposal);
    if (!Fits(program.Platform, program.Paths, manual, folder)) {
        throw Failure(messages::NotEnoughSpace, "the folder's drive has no room for the manual");
    }
    return folder;
}

std::wstring PdfSourcePath(const Paths& paths, const DiscCatalogueRecord& entry) {
    return GetRootedManualPdfPath(paths, entry.FolderName, entry.Pub_No);
}

double RequiredBytes(Platform& platform, const Paths& paths, const DiscCatalogueRecord& entry) {
    if (entry.PdfForm == ManualForm::Archive) {
        return ArchiveManualBytes;
    }
    return RoundUpToTenMillion(GetFileSize(platform, PdfSourcePath(paths, entry)), PdfStep);
}

double GetUsableFreeSpace(Platform& platform, const Paths& paths, const std::wstring& path) {
    Volumes& volumes = platform.Volumes;
    try {
        const std::wstring drive = volumes.DriveName(path);
        if (drive.empty()) {
            return 0;
        }
        const bool holdsPrograms = ToUpper(drive) == ToUpper(volumes.DriveName(paths.ProgramFilesDir));
        return volumes.FreeBytes(drive + L"\\") - (holdsPrograms ? ProgramDriveReserve : 0);
    } catch (const std::exception& error) {
        platform.FaultLog.Trapped("asking for free space", error);
        return 0;
    }
}

double GetFileSize(Platform& platform, const std::wstring& path) {
    try {
        return platform.Files.Exists(path) ? static_cast<double>(platform.Files.Status(path).Size) : 0;
    } catch (const std::exception& error) {
        platform.FaultLog.Trapped("asking for a file's size", error);
        return 0;
    }
}

double RoundUpToTenMillion(double size, const std::wstring& step) {
    const double unit = std::pow(10.0, static_cast<double>(step.size() - 1));
    return std::floor(size / unit) * unit + TextToInt32(step);
}

}  // namespace mip
