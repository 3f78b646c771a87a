#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "app/modFolderCopy.h"
#include "install/FolderQuestion.h"
#include "install/InstallationView.h"
#include "install/ManualPlan.h"
#include "install/ProgressBars.h"

namespace mip {

struct DiscCatalogueRecord;
struct Program;

/// Installs the manuals that the disc catalogue marks, one after the other: looks at everything that matters, plans,
/// and carries the plan out. What stops a manual ends the run, with its texts; what was installed before stays
/// installed and recorded.
///
/// Nothing that is installed is removed before its successor is known to be whole and to fit on the drives, and an
/// edition that is about to be touched is marked for adjustment first: a run that ends half way leaves a row that the
/// next run takes for unusable and installs in full. A row counts as usable again only when the manual's files are on
/// the drive. A folder that is no place for a manual is left alone, whatever row names it.
class ManualWorker {
  public:
    ManualWorker(Program& program, InstallationView& view, ProgressBars& bars, FolderQuestion& question);

    bool InstallAllManuals();

  private:
    bool InstallSelected(DiscCatalogueRecord& manual);
    void InstallOneManual(DiscCatalogueRecord& manual);
    void CopyPlainManual(DiscCatalogueRecord& manual);

    void RemoveLeftovers();
    void EmptyTemporaryFolder(const DiscCatalogueRecord& manual);
    void ChooseRoot(const DiscCatalogueRecord& manual);
    void AskForRoot(const DiscCatalogueRecord& manual);

    void CarryOut(const ManualPlan& plan, DiscCatalogueRecord& manual);
    void Do(const ManualStep& step, DiscCatalogueRecord& manual);
    static void RequireNotInUse(const DiscCatalogueRecord& manual, const std::wstring& file);
    void Mark(const std::wstring& pubNo);
    void RemoveEdition(const std::wstring& pubNo, const std::wstring& folder);
    void RemoveOlderEdition(const std::wstring& pubNo);
    void ExtractManual(DiscCatalogueRecord& manual);
    bool MoveIntoPlace(const std::wstring& folder);
    void CopyExtractedManual(const std::wstring& folder, std::int32_t count, const CopyProgress& progress);
    void CopyPdfManual(const DiscCatalogueRecord& manual);
    void CopyDifferences(const std::wstring& source, const ManualStep& step);
    void MakeManualFolder(const std::wstring& folder);
    void NoteNewFolder(const std::wstring& folder);
    void OpenNewFolder(const std::wstring& folder);
    void Record(const DiscCatalogueRecord& manual);

    void FailWithManual(const std::exception& error);
    void ResetBars();
    CopyProgress CopyBarProgress();
    float ExpectedSeconds() const;

    Program& program_;
    InstallationView& view_;
    ProgressBars& bars_;
    FolderQuestion& question_;
};

}  // namespace mip
