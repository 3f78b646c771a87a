#include "install/ManualWorker.h"

#include <algorithm>
#include <exception>
#include <stdexcept>

#include "app/Attempt.h"
#include "app/Failure.h"
#include "app/ManualPlace.h"
#include "app/Messages.h"
#include "app/Program.h"
#include "app/modFile.h"
#include "app/modFolderCopy.h"
#include "app/modShell.h"
#include "app/modSysParameter.h"
#include "catalogue/modMDB.h"
#include "install/Preflight.h"
#include "install/modUnZip.h"
#include "platform/Clock.h"
#include "platform/Files.h"
#include "security/modAcl.h"
#include "text/Checked.h"
#include "text/TextTools.h"

namespace mip {

namespace {

std::wstring NameOf(const DiscCatalogueRecord& manual) {
    return manual.Model_desc + L"  " + manual.Pub_No;
}

/// "Manual 2 of 5", by the candidates of the disc.
std::wstring ShowPosition(const Program& program, const DiscCatalogueRecord& manual, ProgressBars& bars) {
    const auto& records = program.DiscCatalogue.Records;
    const auto count = [&](auto first, auto last) {
        return static_cast<int>(std::count_if(
            first, last, [](const DiscCatalogueRecord& each) { return each.InstallFlag == Selection::Candidate; }));
    };
    const auto current = std::ranges::find_if(records, [&](const auto& each) { return &each == &manual; });
    const int number = count(records.begin(), current) + 1;
    const int all = count(records.begin(), records.end());
    bars.BeginManual(number, all);
    const std::wstring text = GetMessageText(program, messages::ManualOfManuals);
    return ReplaceAll(ReplaceAll(text, L"@1", std::to_wstring(number)), L"@2", std::to_wstring(all));
}

/// The folder below which an edition's successor goes: the parent of the edition's folder, when manuals may be there;
/// "" when they may not.
std::wstring RootBeside(const Program& program, const std::wstring& edition) {
    if (!IsPlainPath(edition)) {
        return {};
    }
    for (const std::wstring& root : {GetParentFolder(edition), edition.substr(0, edition.rfind(L'\\'))}) {
        if (IsRootForManuals(program.Platform, program.Paths, root)) {
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

    const std::wstring lastRoot = RootBeside(program_, GetLastInstallPath(*program_.CatalogDb));
    run.InstallPath = lastRoot.empty() ? program_.Paths.InstallDir : lastRoot;

    RemoveLeftovers();
    bool succeeded = true;
    for (run.CurrentManual = 1; run.CurrentManual <= program_.DiscCatalogue.LastIndex();
         run.CurrentManual = Add16(run.CurrentManual, 1)) {
        auto& manual = program_.DiscCatalogue.Records.at(static_cast<std::size_t>(run.CurrentManual));
        if (manual.InstallFlag == Selection::Candidate && !InstallSelected(manual)) {
            succeeded = false;
            break;
        }
        manual.DoneFlag = true;
    }
    view_.SetManual(L"", L"");
    ResetBars();
    return succeeded;
}

/// What an interrupted run has left in the temporary folder goes even when this one has nothing to install.
void ManualWorker::RemoveLeftovers() {
    (void)RemoveFolder(program_.Platform, program_.Paths, program_.Paths.UnZipTempPath);
}

bool ManualWorker::InstallSelected(DiscCatalogueRecord& manual) {
    // A comparison set goes only over a folder that is the manual's own.
    const bool isWhole = manual.InstallKind == InstallKind::Full || !MayTouchFolder(program_, manual.InstalledPath);
    const std::wstring step = isWhole ? L"install" : L"update";
    program_.Log.SetContext(step, manual.Pub_No);
    ResetBars();
    view_.SetManual(NameOf(manual), ShowPosition(program_, manual, bars_));
    try {
        isWhole ? InstallOneManual(manual) : CopyPlainManual(manual);
    } catch (const std::exception& error) {
        FailWithManual(error);
        program_.Log.Write(step, manual.Pub_No, L"failed: " + program_.Outcome.ResultMessage);
        return false;
    }
    program_.Log.Write(step, manual.Pub_No, manual.InstalledPath);
    return true;
}

/// The whole manual, in place of the editions that it replaces.
void ManualWorker::InstallOneManual(DiscCatalogueRecord& manual) {
    EmptyTemporaryFolder(manual);
    ChooseRoot(manual);
    const ManualFacts facts = LookAtManual(program_, manual, program_.Installation.InstallPath);
    CarryOut(PlanManual(manual, facts), manual);
}

/// A differential installation: the comparison set's files go over those of the installed edition.
void ManualWorker::CopyPlainManual(DiscCatalogueRecord& manual) {
    PauseSeconds(program_.Platform.Clock, 1);
    CarryOut(PlanManual(manual, LookAtDifferences(program_.Platform, manual)), manual);
}

/// What an earlier manual or run has left takes room, and would be copied along with an archive's files.
void ManualWorker::EmptyTemporaryFolder(const DiscCatalogueRecord& manual) {
    const bool isEmpty = ClearFolder(program_.Platform, program_.Paths, program_.Paths.UnZipTempPath);
    if (!isEmpty && manual.PdfForm != ManualForm::Pdf) {
        throw Failure(messages::ExtractionFailed, "the temporary folder cannot be emptied");
    }
}

/// The new edition goes beside the installed one, over it when it has the same name.
void ManualWorker::ChooseRoot(const DiscCatalogueRecord& manual) {
    const std::wstring root = RootBeside(program_, manual.InstalledPath);
    if (root.empty()) {
        AskForRoot(manual);
    } else {
        program_.Installation.InstallPath = root;
    }
}

/// Asks for the folder of a manual that has none yet.
void ManualWorker::AskForRoot(const DiscCatalogueRecord& manual) {
    Installation& run = program_.Installation;
    run.NoFolderCount = Add16(run.NoFolderCount, 1);
    view_.SetBusyPointer(false);
    const std::optional<std::wstring> chosen = question_.AskForFolder(manual, run.InstallPath);
    view_.SetBusyPointer(true);
    program_.Platform.Clock.YieldToMessages();
    run.InstallPath = chosen.value_or(L"");
    if (run.InstallPath.empty()) {
        program_.Outcome.InstallCancelled = true;
        throw std::runtime_error("the question for the folder was cancelled");
    }
}

void ManualWorker::CarryOut(const ManualPlan& plan, DiscCatalogueRecord& manual) {
    if (plan.Refusal != 0) {
        throw Failure(plan.Refusal, plan.Reason);
    }
    for (const ManualStep& step : plan.Steps) {
        Do(step, manual);
    }
}

void ManualWorker::Do(const ManualStep& step, DiscCatalogueRecord& manual) {
    Platform& platform = program_.Platform;
    switch (step.What) {
        case Act::RequireUnused:
            return RequireNotInUse(manual, FindFileInUse(platform, step.Folder));
        case Act::RequireWhole:
            return RequireWholeManual(program_, manual);
        case Act::RequireReplaceable:
            return RequireNotInUse(manual, FindFileInUse(platform, manual.ComparePath, step.Folder));
        case Act::RequireReadable:
            return RequireReadableFolder(platform, manual.ComparePath);
        case Act::Mark:
            return Mark(step.PubNo);
        case Act::Remove:
            return RemoveEdition(step.PubNo, step.Folder);
        case Act::LeaveAlone:
            return program_.Log.Write(L"left alone", step.PubNo,
                                      step.Folder + L": " + WhyLeftAlone(program_, step.Folder));
        case Act::RemoveRows:
            return RemoveOlderEdition(step.PubNo);
        case Act::Extract:
            return ExtractManual(manual);
        case Act::CopyPdf:
            manual.InstalledPath = step.Folder;
            return CopyPdfManual(manual);
        case Act::CopyDifferences:
            return CopyDifferences(manual.ComparePath, step);
        case Act::Record:
            return Record(manual);
    }
}

/// Gives up a manual that cannot be replaced because another program has one of its files open.
void ManualWorker::RequireNotInUse(const DiscCatalogueRecord& manual, const std::wstring& file) {
    if (!file.empty()) {
        throw Failure(messages::ManualInUse, "another program has it open: " + ToUtf8(file), NameOf(manual));
    }
}

/// From the mark on, an edition's row counts as unusable.
void ManualWorker::Mark(const std::wstring& pubNo) {
    if (!MarkForAdjustment(*program_.CatalogDb, pubNo)) {
        throw Failure(messages::DatabaseReadOnly, "the catalogue does not take the mark for adjustment");
    }
}

/// Removes an edition's folder. What has become of it since the plan was made is asked once more, and said to the log.
void ManualWorker::RemoveEdition(const std::wstring& pubNo, const std::wstring& folder) {
    if (!MayTouchFolder(program_, folder) || !program_.Platform.Folders.Exists(folder)) {
        return;
    }
    (void)RemoveFolder(program_.Platform, program_.Paths, folder);
    if (program_.Platform.Folders.Exists(folder)) {
        program_.Log.Write(L"remove", pubNo, L"not removed whole: " + folder);
    }
}

/// Removes the rows of the base edition, whose folder has gone. Throws when the catalogue keeps them: both editions
/// beside each other would never be put right.
void ManualWorker::RemoveOlderEdition(const std::wstring& pubNo) {
    if (!RemoveInstalledManual(*program_.CatalogDb, pubNo)) {
        throw Failure(messages::DatabaseReadOnly, "the catalogue keeps the base edition's row");
    }
    program_.Log.Write(L"remove", pubNo, L"replaced by a later edition");
}

void ManualWorker::ExtractManual(DiscCatalogueRecord& manual) {
    bars_.Start(Bar::SevenZip, 0, ExpectedSeconds(), 0);
    view_.Repaint();
    const std::wstring& temporary = program_.Paths.UnZipTempPath;
    if (ExtractArchive(program_.Platform, manual.SourcePath, QuotedOutputFolder(program_.Paths)) != 0) {
        throw Failure(messages::ExtractionFailed, "the archive could not be extracted");
    }
    const FolderListing extracted = program_.Platform.Folders.List(temporary);
    if (extracted.Subfolders.empty()) {
        throw Failure(messages::ManualFailed, "the archive has no top-level folder");
    }
    const std::int32_t count = CountFiles(program_.Platform, temporary);
    if (count <= 0) {
        throw Failure(messages::ManualFailed, "the archive brought no files");
    }
    manual.InstalledPath = JoinPath(program_.Installation.InstallPath, extracted.Subfolders.back());
    NoteNewFolder(manual.InstalledPath);
    bars_.SetValue(Bar::SevenZip, ExpectedSeconds());
    view_.Repaint();
    // The first half of the copy bar stands for the extraction that is done.
    const CopyProgress progress = CopyBarProgress();
    bars_.Start(Bar::Copy, 0, 2 * static_cast<float>(count), static_cast<float>(count));
    bars_.Hide(Bar::SevenZip);
    view_.Repaint();
    const bool isOneFolder = extracted == FolderListing{{LastComponent(manual.InstalledPath)}, {}, {}};
    if (isOneFolder && MoveIntoPlace(manual.InstalledPath)) {
        progress(2 * count);
    } else {
        CopyExtractedManual(manual.InstalledPath, count, progress);
    }
}

/// Renames the unpacked folder, so that the manual appears whole or not at all. Its files still have the access entries
/// of the temporary folder; opening it gives them those of their new place. False when something is there already, when
/// the place is on another drive, and when it is refused for longer than a virus scanner looks at new files.
bool ManualWorker::MoveIntoPlace(const std::wstring& folder) {
    constexpr int Attempts = 3;
    Platform& platform = program_.Platform;
    if (platform.Folders.Exists(folder) || !CanMoveIntoPlace(program_, folder)) {
        return false;
    }
    MakeFolderPath(platform, program_.Installation.InstallPath);
    const std::wstring unpacked = JoinPath(program_.Paths.UnZipTempPath, LastComponent(folder));
    const auto move = [&] { platform.Folders.Move(unpacked, folder); };
    for (int attempt = 1; !Attempt(platform.FaultLog, "moving the manual into its place", move); ++attempt) {
        if (attempt == Attempts) {
            return false;
        }
        PauseSeconds(platform.Clock, 1);
    }
    OpenNewFolder(folder);
    return true;
}

void ManualWorker::CopyExtractedManual(const std::wstring& folder, std::int32_t count, const CopyProgress& progress) {
    MakeFolderPath(program_.Platform, folder);
    OpenNewFolder(folder);
    if (CopyFolderWithProgress(program_.Platform, CopyMode::Copy, count, program_.Paths.UnZipTempPath,
                               program_.Installation.InstallPath, progress) == -1) {
        throw Failure(messages::ManualFailed, "the extracted files could not be copied");
    }
}

void ManualWorker::CopyPdfManual(const DiscCatalogueRecord& manual) {
    bars_.Start(Bar::Pdf, 0, ExpectedSeconds(), 1);
    view_.Repaint();
    const std::wstring& folder = manual.InstalledPath;
    NoteNewFolder(folder);
    MakeManualFolder(GetParentFolder(folder));
    MakeManualFolder(folder);
    OpenNewFolder(folder);
    const auto repaint = [this](std::int32_t) { view_.Repaint(); };
    if (CopyFolderWithProgress(program_.Platform, CopyMode::Copy, 0, manual.SourcePath, folder, repaint) == -1) {
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
void ManualWorker::OpenNewFolder(const std::wstring& folder) {
    if (IsNtfsVolume(program_.Platform, folder) && MayTouchFolder(program_, folder)) {
        // The result screen's button tries again.
        (void)GrantModifyToUsers(program_.Platform, program_.Identity, folder);
    }
}

void ManualWorker::CopyDifferences(const std::wstring& source, const ManualStep& step) {
    Platform& platform = program_.Platform;
    bars_.Start(Bar::Copy, 0, static_cast<float>(step.Files), 0);
    view_.Repaint();
    PauseSeconds(platform.Clock, 1);
    if (CopyFolderWithProgress(platform, CopyMode::Copy, 0, source, step.Folder, CopyBarProgress()) == -1) {
        throw Failure(messages::ManualFailed, "the comparison set could not be copied");
    }
    PauseSeconds(platform.Clock, 2);
}

CopyProgress ManualWorker::CopyBarProgress() {
    return [this](std::int32_t fileDone) {
        bars_.SetValue(Bar::Copy, static_cast<float>(fileDone));
        view_.Repaint();
    };
}

/// Records the manual as installed once its files are on the drive. When the catalogue database's file is gone, the
/// first result text only asks what to do now and the second keeps what it had.
void ManualWorker::Record(const DiscCatalogueRecord& manual) {
    program_.Platform.Volumes.Flush(manual.InstalledPath);
    if (!program_.Platform.Files.Exists(program_.Paths.MdbPath)) {
        program_.Outcome.ResultMessage = GetMessageText(program_, messages::WhatNow);
        throw std::runtime_error("the catalogue database's file is gone");
    }
    if (!RegisterInstalledManual(program_, manual, manual.InstalledPath, manual.InstallState)) {
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

float ManualWorker::ExpectedSeconds() const {
    return static_cast<float>(program_.Settings.ZipExtractTime);
}

void ManualWorker::ResetBars() {
    bars_.HideAll();
    view_.Repaint();
}

}  // namespace mip
