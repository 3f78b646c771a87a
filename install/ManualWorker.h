#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "install/FolderQuestion.h"
#include "install/InstallationView.h"
#include "install/ProgressBars.h"
#include "app/modFolderCopy.h"

namespace mip {

struct DiscCatalogueRecord;
struct Program;

/// Installs the manuals that the disc catalogue marks, one after the other. What stops one is thrown and ends the run,
/// with its texts; what was installed before stays installed and recorded.
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
    bool InstallSelected();
    void InstallOneManual();
    void PlaceManual();
    void ExtractAndCopyManual();
    void CopyPdfManual();
    void CopyPlainManual();
    bool RemoveOlderEdition(std::int16_t manualIndex);

    void RemoveLeftovers();
    void EmptyTemporaryFolder();
    void ChooseRoot();
    void AskForRoot();
    void RequireFitToReplace();
    std::vector<std::wstring> GoingFolders();
    void RequireNotInUse(const std::wstring& file);
    void MarkEdition(const std::wstring& pubNo);
    void RemoveEditionFolder(const std::wstring& pubNo, const std::wstring& folder);
    void NoteNewFolder(const std::wstring& folder);
    void OpenNewFolder();
    void CopyExtractedManual();
    CopyProgress CopyBarProgress();
    void MakeManualFolder(const std::wstring& folder);
    void Record();
    void FailWithManual(const std::exception& error);
    void ResetBars();

    DiscCatalogueRecord& Manual();
    std::wstring ManualName();
    float ExpectedSeconds() const;

    Program& program_;
    InstallationView& view_;
    ProgressBars& bars_;
    FolderQuestion& question_;
};

}  // namespace mip
