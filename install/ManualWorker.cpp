#include "install/ManualWorker.h"

#include "app/Program.h"

#include <algorithm>
#include <exception>
#include <stdexcept>

#include "app/Failure.h"
#include "app/ManualPlace.h"
#include "app/Messages.h"
#include "app/modFile.h"
#include "app/modSysParameter.h"
#include "catalogue/modMDB.h"
#include "install/Editions.h"
#include "app/modFolderCopy.h"
#include "app/modShell.h"
#include "install/modUnZip.h"
#include "platform/Clock.h"
#include "platform/Files.h"
#include "security/modAcl.h"
#include "text/Checked.h"
#include "text/TextTools.h"

namespace mip {

namespace {

constexpr wchar_t Yes[] = L"1";

/// The folder below which an edition's successor goes: the parent of the edition's folder, when manuals may be there;
/// "" when they may not.
std::wstring RootBeside(const Program& program, const std::wstring& edition) {
    if (!IsPlainPath(edition)) {
        return {};
    }
    for (const std::wstring& root : {GetParentFolder(edition), edition.substr(0, edition.rfind(L'\\'))}) {
        if (IsRootForManuals(program, root)) {
            return root;
        }
    }
    return {};
}

}  // namespace

ManualWorker::ManualWorker(Program& program, InstallationView& view, ProgressBars& bars, FolderQuestion& question)
    : program_(program), view_(view), bars_(bars), question_(question) {}

bool ManualWorker::InstallAllManuals() {
    Installation& run = program_.Installation;
    run.NoFolderCount = 0;
    run.MadeFolders.clear();
    run.InstallTime0 = program_.Platform.Clock.Now();
    run.InstallTime1 = run.InstallTime0 + std::chrono::seconds(1);
    run.InstallTime2 = run.InstallTime0 + std::chrono::seconds(2);

    const std::wstring lastRoot = RootBeside(program_, GetLastInstallPath(program_));
    run.InstallPath = lastRoot.empty() ? program_.Paths.InstallDir : lastRoot;

    RemoveLeftovers();
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

/// What an interrupted run has left in the temporary folder goes even when this one has nothing to install.
void ManualWorker::RemoveLeftovers() {
    const std::wstring& temporary = program_.Paths.UnZipTempPath;
    if (program_.Platform.Folders.Exists(temporary)) {
        (void)RemoveFolder(program_, temporary);
    }
}

bool ManualWorker::InstallSelected() {
    // A comparison set goes only over a folder that is the manual's own.
    const bool isWhole = Manual().InstallKind == Yes || !MayTouchFolder(program_, Manual().InstalledPath);
    const std::wstring step = isWhole ? L"install" : L"update";
    program_.Log.SetContext(step, Manual().Pub_No);
    ResetBars();
    view_.SetManual(ManualName());
    try {
        isWhole ? InstallOneManual() : CopyPlainManual();
    } catch (const std::exception& error) {
        FailWithManual(error);
        program_.Log.Write(step, Manual().Pub_No, L"failed: " + program_.Outcome.ResultMessage);
        return false;
    }
    program_.Log.Write(step, Manual().Pub_No, Manual().InstalledPath);
    return true;
}

void ManualWorker::InstallOneManual() {
    EmptyTemporaryFolder();
    ChooseRoot();
    RequireFitToReplace();
    if (!Manual().InstalledPath.empty()) {
        RemoveEditionFolder(Manual().Pub_No, Manual().InstalledPath);
    }
    Manual().InstalledPath = JoinPath(program_.Installation.InstallPath, Manual().FolderName);
    RemoveOlderEdition(program_.Installation.CurrentManual);
    PlaceManual();
    Record();
}

/// What an earlier manual or run has left takes room, and would be copied along with an archive's files.
void ManualWorker::EmptyTemporaryFolder() {
    const std::wstring& temporary = program_.Paths.UnZipTempPath;
    ClearFolder(program_, temporary);
    if (Manual().PdfForm != Yes && !IsEmptyFolder(program_.Platform, temporary)) {
        throw Failure(messages::ExtractionFailed, "the temporary folder cannot be emptied");
    }
}

/// The new edition goes beside the installed one, over it when it has the same name.
void ManualWorker::ChooseRoot() {
    const std::wstring root = RootBeside(program_, Manual().InstalledPath);
    if (root.empty()) {
        AskForRoot();
    } else {
        program_.Installation.InstallPath = root;
    }
}

/// Asks for the folder of a manual that has none yet.
void ManualWorker::AskForRoot() {
    program_.Installation.NoFolderCount = Add16(program_.Installation.NoFolderCount, 1);
    view_.SetBusyPointer(false);
    std::wstring& root = program_.Installation.InstallPath;
    const std::optional<std::wstring> chosen = question_.AskForFolder(Manual(), root);
    view_.SetBusyPointer(true);
    program_.Platform.Clock.YieldToMessages();
    root = chosen.value_or(L"");
    if (!chosen) {
        program_.Outcome.InstallCancelled = true;
        throw std::runtime_error("the question for the folder was cancelled");
    }
}

/// Everything that can be known before the first thing is removed: the publication number has editions, the drives
/// have room, and where an edition has to go, no other program has it open and the new one is whole.
void ManualWorker::RequireFitToReplace() {
    Platform& platform = program_.Platform;
    const std::wstring target = JoinPath(program_.Installation.InstallPath, Manual().FolderName);
    const std::vector<std::wstring> going = GoingFolders();
    if (!HasRoomForManual(program_, Manual(), going)) {
        throw Failure(messages::NotEnoughSpace, "the drives have no room for the manual");
    }
    for (const std::wstring& folder : going) {
        RequireNotInUse(FindFileInUse(platform, folder));
    }
    const auto isTarget = [&](const std::wstring& folder) { return ToUpper(folder) == ToUpper(target); };
    if (std::ranges::none_of(going, isTarget)) {
        RequireNotInUse(FindFileInUse(platform, target));
    }
    if (!going.empty() || platform.Folders.Exists(target)) {
        RequireWholeManual(program_, Manual());
    }
}

/// The folders of the editions that the manual replaces.
std::vector<std::wstring> ManualWorker::GoingFolders() {
    std::vector<std::wstring> going;
    const auto add = [&](const std::wstring& folder) {
        if (WhyLeftAlone(program_, folder).empty()) {
            going.push_back(folder);
        }
    };
    add(Manual().InstalledPath);
    const std::wstring baseEdition = BaseEditionOf(Manual().Pub_No);
    const MdbStatus baseStatus = baseEdition.empty() ? MdbEnd : FindInstalledRecord(program_, baseEdition);
    if (baseStatus == MdbError) {
        throw Failure(messages::DatabaseNotOpened, "the catalogue does not answer");
    }
    if (baseStatus == MdbOk) {
        add(program_.Installed.INSPath);
    }
    return going;
}

/// Gives up a manual that cannot be replaced because another program has one of its files open.
void ManualWorker::RequireNotInUse(const std::wstring& file) {
    if (!file.empty()) {
        throw Failure(messages::ManualInUse, "another program has it open: " + ToUtf8(file), ManualName());
    }
}

/// From the mark on, an edition's row counts as unusable.
void ManualWorker::MarkEdition(const std::wstring& pubNo) {
    if (!MarkForAdjustment(*program_.CatalogDb, pubNo)) {
        throw Failure(messages::DatabaseReadOnly, "the catalogue does not take the mark for adjustment");
    }
}

/// Marks an installed edition, then removes its folder.
void ManualWorker::RemoveEditionFolder(const std::wstring& pubNo, const std::wstring& folder) {
    MarkEdition(pubNo);
    if (!MayTouchFolder(program_, folder) || !program_.Platform.Folders.Exists(folder)) {
        return;
    }
    (void)RemoveFolder(program_, folder);
    if (program_.Platform.Folders.Exists(folder)) {
        program_.Log.Write(L"remove", pubNo, L"not removed whole: " + folder);
    }
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
            throw Failure(messages::DatabaseReadOnly, "the catalogue keeps the base edition's row");
        }
        program_.Log.Write(L"remove", baseEdition, L"replaced by a later edition");
        removed = true;
        status = FindInstalledRecord(program_, baseEdition);
    }
    if (status == MdbError) {
        throw Failure(messages::DatabaseNotOpened, "the catalogue does not answer");
    }
    return removed;
}

void ManualWorker::PlaceManual() {
    Manual().PdfForm == Yes ? CopyPdfManual() : ExtractAndCopyManual();
}

void ManualWorker::ExtractAndCopyManual() {
    bars_.Start(Bar::SevenZip, 0, ExpectedSeconds(), 0);
    view_.Repaint();
    const std::wstring& temporary = program_.Paths.UnZipTempPath;
    if (ExtractArchive(program_.Platform, Manual().SourcePath, QuotedOutputFolder(program_)) != 0) {
        throw Failure(messages::ExtractionFailed, "the archive could not be extracted");
    }
    const auto topLevelFolders = program_.Platform.Folders.List(temporary).Subfolders;
    if (topLevelFolders.empty()) {
        throw Failure(messages::ManualFailed, "the archive has no top-level folder");
    }
    Manual().InstalledPath = JoinPath(program_.Installation.InstallPath, topLevelFolders.back());
    NoteNewFolder(Manual().InstalledPath);
    MakeFolderPath(program_.Platform, Manual().InstalledPath);
    OpenNewFolder();
    CopyExtractedManual();
}

void ManualWorker::CopyExtractedManual() {
    const std::wstring& temporary = program_.Paths.UnZipTempPath;
    const std::wstring& root = program_.Installation.InstallPath;
    const std::int32_t count = CopyFolderWithProgress(program_.Platform, CopyMode::CountOnly, 0, temporary, root);
    if (count == 0 || count == -1) {
        throw Failure(messages::ManualFailed, "the archive brought no files");
    }
    bars_.SetValue(Bar::SevenZip, ExpectedSeconds());
    view_.Repaint();
    // The first half of the copy bar stands for the extraction that is done.
    bars_.Start(Bar::Copy, 0, 2 * static_cast<float>(count), static_cast<float>(count));
    bars_.Hide(Bar::SevenZip);
    view_.Repaint();
    if (CopyFolderWithProgress(program_.Platform, CopyMode::Copy, count, temporary, root, CopyBarProgress()) == -1) {
        throw Failure(messages::ManualFailed, "the extracted files could not be copied");
    }
}

void ManualWorker::CopyPdfManual() {
    bars_.Start(Bar::Pdf, 0, ExpectedSeconds(), 1);
    view_.Repaint();
    const std::wstring& folder = Manual().InstalledPath;
    NoteNewFolder(folder);
    MakeManualFolder(GetParentFolder(folder));
    MakeManualFolder(folder);
    OpenNewFolder();
    const auto repaint = [this](std::int32_t) { view_.Repaint(); };
    if (CopyFolderWithProgress(program_.Platform, CopyMode::Copy, 0, Manual().SourcePath, folder, repaint) == -1) {
        throw Failure(messages::ManualFailed, "the files could not be copied");
    }
    bars_.SetValue(Bar::Pdf, ExpectedSeconds());
    view_.Repaint();
    PauseSeconds(program_.Platform.Clock, 2);
}

void ManualWorker::MakeManualFolder(const std::wstring& folder) {
    if (!program_.Platform.Folders.Exists(folder) && !MakeFolder(program_.Platform, folder)) {
        throw Failure(messages::ManualFailed, "the manual's folder cannot be made");
    }
}

/// What the run makes itself is a place for a manual from the start.
void ManualWorker::NoteNewFolder(const std::wstring& folder) {
    Folders& folders = program_.Platform.Folders;
    if (folders.IsLink(folder)) {
        throw Failure(messages::ManualFailed, "the manual's folder is a link: " + ToUtf8(folder));
    }
    if (!folders.Exists(folder)) {
        program_.Installation.MadeFolders.push_back(folder);
    }
}

/// Opens a new manual's folder to local users while it is empty: its files inherit that, and no run that ends early
/// leaves a recorded manual that they cannot use.
void ManualWorker::OpenNewFolder() {
    const std::wstring& folder = Manual().InstalledPath;
    if (IsNtfsVolume(program_.Platform, folder) && MayTouchFolder(program_, folder)) {
        // The result screen's button tries again.
        (void)GrantModifyToUsers(program_, folder);
    }
}

/// A differential installation: the comparison set's files go over those of the installed edition.
void ManualWorker::CopyPlainManual() {
    Platform& platform = program_.Platform;
    PauseSeconds(platform.Clock, 1);
    const std::wstring& source = Manual().ComparePath;
    const std::wstring target = JoinPath(Manual().InstalledPath, L"contents");
    const std::int32_t count = CopyFolderWithProgress(platform, CopyMode::CountOnly, 0, source, target);
    if (count == 0 || count == -1) {
        throw Failure(messages::ManualFailed, "the comparison set has no files");
    }
    if (!HasRoomForCopy(platform, source, target)) {
        throw Failure(messages::NotEnoughSpace, "the drive has no room for the comparison set");
    }
    RequireNotInUse(FindFileInUse(platform, source, target));
    RequireReadableFolder(platform, source);
    MarkEdition(Manual().Pub_No);
    bars_.Start(Bar::Copy, 0, static_cast<float>(count), 0);
    view_.Repaint();
    PauseSeconds(platform.Clock, 1);
    if (CopyFolderWithProgress(platform, CopyMode::Copy, 0, source, target, CopyBarProgress()) == -1) {
        throw Failure(messages::ManualFailed, "the comparison set could not be copied");
    }
    PauseSeconds(platform.Clock, 2);
    Record();
}

CopyProgress ManualWorker::CopyBarProgress() {
    return [this](std::int32_t fileDone) {
        bars_.SetValue(Bar::Copy, static_cast<float>(fileDone));
        view_.Repaint();
    };
}

/// Records the manual as installed once its files are on the drive. When the catalogue database's file is gone, message
/// 24 takes the place of 67 in the first result text and the second keeps what it had.
void ManualWorker::Record() {
    program_.Platform.Volumes.Flush(Manual().InstalledPath);
    if (!program_.Platform.Files.Exists(program_.Paths.MdbPath)) {
        program_.Outcome.ResultMessage = GetMessageText(program_, messages::DatabaseReadOnly);
        program_.Outcome.ResultMessage = GetMessageText(program_, messages::WhatNow);
        throw std::runtime_error("the catalogue database's file is gone");
    }
    if (!RegisterInstalledManual(program_, Manual(), Manual().InstalledPath, Manual().InstallState)) {
        throw Failure(messages::DatabaseReadOnly, "the catalogue does not take the manual");
    }
    ++program_.Outcome.ManualsRecorded;
}

/// The texts of a failed manual: those of the failure, or those that were set where it happened.
void ManualWorker::FailWithManual(const std::exception& error) {
    const bool hasTexts = !program_.Outcome.ResultMessage.empty() && dynamic_cast<const Failure*>(&error) == nullptr;
    if (hasTexts) {
        program_.Log.Trapped("installing the manual", error);
    } else {
        FailRun(program_, messages::ManualFailed, "installing the manual", error);
    }
}

DiscCatalogueRecord& ManualWorker::Manual() {
    return program_.DiscCatalogue.Records.at(static_cast<std::size_t>(program_.Installation.CurrentManual));
}

std::wstring ManualWorker::ManualName() {
    return Manual().Model_desc + L"  " + Manual().Pub_No;
}

float ManualWorker::ExpectedSeconds() const {
    return static_cast<float>(program_.Settings.ZipExtractTime);
}

void ManualWorker::ResetBars() {
    bars_.HideAll();
    view_.Repaint();
}

}  // namespace mip
