#include "install/ManualWorker.h"

#include <algorithm>
#include <exception>
#include <vector>

#include "app/Messages.h"
#include "app/modFile.h"
#include "app/modSysParameter.h"
#include "catalogue/modMDB.h"
#include "install/Editions.h"
#include "install/modFolderCopy.h"
#include "install/modShell.h"
#include "install/modUnZip.h"
#include "platform/Clock.h"
#include "platform/Files.h"
#include "platform/PlatformError.h"
#include "text/Checked.h"

namespace mip {

namespace {

constexpr wchar_t Yes[] = L"1";

}  // namespace

ManualWorker::ManualWorker(Program& program, InstallationView& view, ProgressBars& bars)
    : program_(program), view_(view), bars_(bars) {}

bool ManualWorker::InstallAllManuals() {
    Installation& run = program_.Installation;
    run.NoFolderCount = 0;
    run.InstallTime0 = program_.Platform.Clock.Now();
    run.InstallTime1 = run.InstallTime0 + std::chrono::seconds(1);
    run.InstallTime2 = run.InstallTime0 + std::chrono::seconds(2);

    const std::wstring lastPath = GetLastInstallPath(program_);
    run.InstallPath = lastPath.empty() ? program_.Paths.InstallDir : GetParentFolder(lastPath);

    bool succeeded = true;
    for (run.CurrentManual = 1; run.CurrentManual <= program_.DiscCatalogue.LastIndex();
         run.CurrentManual = Add16(run.CurrentManual, 1)) {
        if (Manual().InstallFlag == Yes && !InstallSelected()) {
            succeeded = false;
            break;
        }
        Manual().DoneFlag = Yes;
    }
    view_.SetManual(L"");
    ResetBars();
    return succeeded;
}

bool ManualWorker::InstallSelected() {
    ResetBars();
    view_.SetManual(Manual().Model_desc + L"  " + Manual().Pub_No);
    bool installed = false;
    try {
        installed = Manual().InstallKind == Yes ? InstallOneManual() : CopyPlainManual();
    } catch (const std::exception&) {
        installed = false;
    }
    if (!installed) {
        FailWithManual();
    }
    program_.Log.Write(Manual().InstallKind == Yes ? L"install" : L"update", Manual().Pub_No,
                       installed ? Manual().InstalledPath : L"failed: " + program_.Outcome.ResultMessage);
    return installed;
}

bool ManualWorker::InstallOneManual() {
    const bool editionIsInstalled = !Manual().InstalledPath.empty();
    if (editionIsInstalled) {
        program_.Installation.InstallPath = GetParentFolder(Manual().InstalledPath);
        if (!IsFitToReplace()) {
            return false;
        }
        RemoveEditionFolder(Manual().Pub_No, Manual().InstalledPath);
    } else if (!ChooseFolder() || !IsFitToReplace()) {
        return false;
    }
    Manual().InstalledPath = JoinPath(program_.Installation.InstallPath, Manual().FolderName);
    RemoveOlderEdition(program_.Installation.CurrentManual);
    return PlaceManual() && Record();
}

/// Asks for the folder of a manual that has none yet. False when the user cancels.
bool ManualWorker::ChooseFolder() {
    program_.Installation.NoFolderCount = Add16(program_.Installation.NoFolderCount, 1);
    view_.SetBusyPointer(false);
    view_.AskForFolder();
    view_.SetBusyPointer(true);
    program_.Platform.Clock.YieldToMessages();
    if (program_.Installation.InstallPath.empty()) {
        program_.Outcome.InstallCancelled = true;
        return false;
    }
    return true;
}

/// Everything that can be known before the first thing is removed: the publication number has editions, the drives
/// have room, and where an edition has to go, no other program has it open and the new one is whole.
bool ManualWorker::IsFitToReplace() {
    const std::wstring baseEdition = BaseEditionOf(Manual().Pub_No);
    if (!HasRoomForManual(program_, Manual())) {
        FailRun(program_, messages::NotEnoughSpace);
        return false;
    }
    const MdbStatus baseStatus = baseEdition.empty() ? MdbEnd : FindInstalledRecord(program_, baseEdition);
    if (baseStatus == MdbError) {
        FailRun(program_, messages::DatabaseReadOnly);
        return false;
    }
    std::vector<std::wstring> replaced;
    if (!Manual().InstalledPath.empty()) {
        replaced.push_back(Manual().InstalledPath);
    }
    if (baseStatus == MdbOk) {
        replaced.push_back(program_.Installed.INSPath);
    }
    const auto inUse = [&](const std::wstring& folder) { return IsInUse(FindFileInUse(program_.Platform, folder)); };
    if (std::ranges::any_of(replaced, inUse)) {
        return false;
    }
    if (!replaced.empty() && !IsManualWhole(program_, Manual())) {
        FailRun(program_, Manual().PdfForm == Yes ? messages::ManualFailed : messages::ExtractionFailed);
        return false;
    }
    return true;
}

/// Says in the log which file keeps the manual from being replaced.
bool ManualWorker::IsInUse(const std::wstring& file) {
    if (!file.empty()) {
        program_.Log.Write(L"in use", Manual().Pub_No, file);
    }
    return !file.empty();
}

/// Marks an installed edition for adjustment, then removes its folder: from the mark on, its row counts as unusable.
void ManualWorker::RemoveEditionFolder(const std::wstring& pubNo, const std::wstring& folder) {
    if (!MarkForAdjustment(*program_.CatalogDb, pubNo)) {
        FailWithCatalogue(pubNo);
    }
    (void)RemoveFolder(program_, folder);
}

/// Removes the base edition of a later one, folder first, then its row. True when a row was removed. Throws when the
/// catalogue does not answer or keeps the row: both editions beside each other would never be put right.
bool ManualWorker::RemoveOlderEdition(std::int16_t manualIndex) {
    const auto& manual = program_.DiscCatalogue.Records.at(static_cast<std::size_t>(manualIndex));
    const std::wstring baseEdition = BaseEditionOf(manual.Pub_No);
    if (baseEdition.empty()) {
        return false;
    }
    bool removed = false;
    MdbStatus status = FindInstalledRecord(program_, baseEdition);
    while (status == MdbOk) {
        RemoveEditionFolder(baseEdition, program_.Installed.INSPath);
        if (!RemoveInstalledManual(*program_.CatalogDb, baseEdition)) {
            FailWithCatalogue(baseEdition);
        }
        program_.Log.Write(L"remove", baseEdition, L"replaced by a later edition");
        removed = true;
        status = FindInstalledRecord(program_, baseEdition);
    }
    if (status == MdbError) {
        FailWithCatalogue(baseEdition);
    }
    return removed;
}

bool ManualWorker::PlaceManual() {
    return Manual().PdfForm == Yes ? CopyPdfManual() : ExtractAndCopyManual();
}

bool ManualWorker::ExtractAndCopyManual() {
    bars_.Start(Bar::SevenZip, 0, ExpectedSeconds(), 0);
    view_.Repaint();
    const std::wstring& temporary = program_.Paths.UnZipTempPath;
    ClearFolder(program_, temporary);
    if (ExtractArchive(program_.Platform, Manual().SourcePath, L"\"" + temporary + L"\\\"") != 0) {
        FailRun(program_, messages::ExtractionFailed);
        return false;
    }
    const auto topLevelFolders = program_.Platform.Folders.List(temporary).Subfolders;
    if (topLevelFolders.empty()) {
        return false;
    }
    Manual().InstalledPath = JoinPath(program_.Installation.InstallPath, topLevelFolders.back());
    return CopyExtractedManual();
}

bool ManualWorker::CopyExtractedManual() {
    const std::wstring& temporary = program_.Paths.UnZipTempPath;
    const std::wstring& root = program_.Installation.InstallPath;
    const std::int32_t count = CopyFolderWithProgress(program_.Platform, CopyMode::CountOnly, 0, temporary, root);
    if (count == 0 || count == -1) {
        return false;
    }
    bars_.SetValue(Bar::SevenZip, ExpectedSeconds());
    view_.Repaint();
    // The first half of the copy bar stands for the extraction that is done.
    bars_.Start(Bar::Copy, 0, 2 * static_cast<float>(count), static_cast<float>(count));
    bars_.Hide(Bar::SevenZip);
    view_.Repaint();
    const std::int32_t result =
        CopyFolderWithProgress(program_.Platform, CopyMode::Copy, count, temporary, root, CopyBarProgress());
    return result != -1;
}

bool ManualWorker::CopyPdfManual() {
    bars_.Start(Bar::Pdf, 0, ExpectedSeconds(), 1);
    view_.Repaint();
    const std::wstring& folder = Manual().InstalledPath;
    if (!MakeManualFolder(GetParentFolder(folder)) || !MakeManualFolder(folder)) {
        return false;
    }
    const auto repaint = [this](std::int32_t) { view_.Repaint(); };
    if (CopyFolderWithProgress(program_.Platform, CopyMode::Copy, 0, Manual().SourcePath, folder, repaint) == -1) {
        return false;
    }
    bars_.SetValue(Bar::Pdf, ExpectedSeconds());
    view_.Repaint();
    PauseSeconds(program_.Platform.Clock, 2);
    return true;
}

bool ManualWorker::MakeManualFolder(const std::wstring& folder) {
    return program_.Platform.Folders.Exists(folder) || MakeFolder(program_.Platform, folder);
}

/// A differential installation: the comparison set's files go over those of the installed edition.
bool ManualWorker::CopyPlainManual() {
    Clock& clock = program_.Platform.Clock;
    PauseSeconds(clock, 1);
    const std::wstring& source = Manual().ComparePath;
    const std::wstring target = JoinPath(Manual().InstalledPath, L"contents");
    const std::int32_t count = CopyFolderWithProgress(program_.Platform, CopyMode::CountOnly, 0, source, target);
    if (count == 0 || count == -1 || IsInUse(FindFileInUse(program_.Platform, source, target))) {
        return false;
    }
    if (!MarkForAdjustment(*program_.CatalogDb, Manual().Pub_No)) {
        FailRun(program_, messages::DatabaseReadOnly);
        return false;
    }
    bars_.Start(Bar::Copy, 0, static_cast<float>(count), 0);
    view_.Repaint();
    PauseSeconds(clock, 1);
    if (CopyFolderWithProgress(program_.Platform, CopyMode::Copy, 0, source, target, CopyBarProgress()) == -1) {
        return false;
    }
    PauseSeconds(clock, 2);
    return Record();
}

CopyProgress ManualWorker::CopyBarProgress() {
    return [this](std::int32_t fileDone) {
        bars_.SetValue(Bar::Copy, static_cast<float>(fileDone));
        view_.Repaint();
    };
}

/// Records the manual as installed. When the catalogue database's file is gone, message 24 takes the place of 67 in
/// the first result text and the second keeps what it had.
bool ManualWorker::Record() {
    if (!program_.Platform.Files.Exists(program_.Paths.MdbPath)) {
        program_.Outcome.ResultMessage = GetMessageText(program_, messages::DatabaseReadOnly);
        program_.Outcome.ResultMessage = GetMessageText(program_, messages::WhatNow);
        return false;
    }
    if (!RegisterInstalledManual(program_, Manual(), Manual().InstalledPath, Manual().InstallState)) {
        FailRun(program_, messages::DatabaseReadOnly);
        return false;
    }
    ++program_.Outcome.ManualsRecorded;
    return true;
}

/// Gives the manual up because the catalogue does not take a change.
void ManualWorker::FailWithCatalogue(const std::wstring& pubNo) {
    FailRun(program_, messages::DatabaseReadOnly);
    throw PlatformError("catalogue change", pubNo, 0);
}

/// The texts of a failed manual, unless the failure left texts of its own.
void ManualWorker::FailWithManual() {
    if (program_.Outcome.ResultMessage.empty()) {
        FailRun(program_, messages::ManualFailed);
    }
}

void ManualWorker::ResetBars() {
    bars_.HideAll();
    view_.Repaint();
}

}  // namespace mip
