#include "screens/MaintenanceScreen.h"

#include <exception>
#include <vector>

#include "app/ExitCode.h"
#include "app/ManualPlace.h"
#include "app/Program.h"
#include "app/modFile.h"
#include "app/modPdf.h"
#include "app/modShell.h"
#include "catalogue/RecordFlags.h"
#include "catalogue/modMDB.h"
#include "platform/Clock.h"
#include "platform/Files.h"

namespace mip {

namespace {

bool AreFilesPresent(Platform& platform, const InstalledRecord& manual) {
    if (RecordedForm(manual) == ManualForm::Pdf) {
        return ManualPdfExists(platform, manual.INSPath, manual.Pub_No);
    }
    return platform.Folders.Exists(JoinPath(manual.INSPath, L"contents")) &&
           platform.Files.Exists(JoinPath(manual.INSPath, L"index.html"));
}

/// All installed manuals; false when they could not be read to the end. The list is read before a row is changed.
bool ReadInstalledList(Program& program, std::vector<InstalledRecord>& manuals) {
    InstalledRows rows = OpenInstalledList(program, InstalledListSlot);
    for (const InstalledRecord& manual : rows) {
        manuals.push_back(manual);
    }
    return rows.ReachedEnd();
}

bool CleanUpMissing(clsMDB& database, RunLog& log, const InstalledRecord& manual) {
    const bool marked = HasOwnMark(manual);
    const bool changed =
        marked ? RemoveInstalledManual(database, manual.Pub_No) : MarkForAdjustment(database, manual.Pub_No);
    log.Write(L"check", manual.Pub_No, !changed ? L"failed" : marked ? L"row removed" : L"marked");
    return changed;
}

ExitCode RemoveAsked(Program& program) {
    const std::wstring& pubNo = program.Switches.Remove;
    const Lookup manual = FindInstalledRecord(program, pubNo);
    if (!manual.Found()) {
        program.Log.Write(L"remove", pubNo, manual.Failed() ? L"catalogue not readable" : L"not installed");
        return ExitCode::CouldNotStart;
    }
    const bool removed = RemoveOneManual(program, manual.Record.INSPath, pubNo);
    program.Log.Write(L"remove", pubNo, removed ? L"done" : L"failed");
    return removed ? ExitCode::Done : ExitCode::FailedPartWay;
}

ExitCode RunMode(Program& program) {
    try {
        if (!program.Switches.Remove.empty()) {
            return RemoveAsked(program);
        }
        return CheckInstalledManuals(program) ? ExitCode::Done : ExitCode::FailedPartWay;
    } catch (const std::exception& error) {
        program.Log.Trapped("the maintenance run", error);
        return ExitCode::FailedPartWay;
    }
}

}  // namespace

void RunMaintenance(Program& program) {
    PauseSeconds(program.Platform.Clock, 1);
    program.Outcome.ExitCode = RunMode(program);
    PauseSeconds(program.Platform.Clock, 1);
}

bool CheckInstalledManuals(Program& program) {
    std::vector<InstalledRecord> manuals;
    bool succeeded = ReadInstalledList(program, manuals);
    for (const InstalledRecord& manual : manuals) {
        if (!AreFilesPresent(program.Platform, manual)) {
            succeeded = CleanUpMissing(*program.CatalogDb, program.Log, manual) && succeeded;
        }
    }
    return succeeded;
}

bool RemoveOneManual(Program& program, const std::wstring& folder, const std::wstring& pubNo) {
    if (MayTouchFolder(program, folder)) {
        RunAndWait(program.Platform, L"\"" + program.Paths.RmDirBatPath + L"\" \"" + folder + L"\"");
    }
    return RemoveInstalledManual(*program.CatalogDb, pubNo);
}

}  // namespace mip
