#pragma once

#include <cstdint>
#include <string>

#include "app/Program.h"
#include "install/InstallationView.h"
#include "install/ProgressBars.h"
#include "install/modFolderCopy.h"

namespace mip {

/// Installs the manuals that the disc catalogue marks, one after the other. Every operation traps its errors and
/// returns false; what was installed before stays installed and recorded.
///
/// Nothing that is installed is removed before its successor is known to be whole and to fit on the drives, and an
/// edition that is about to be touched is marked for adjustment first: a run that ends half way leaves a row that the
/// next run takes for unusable and installs in full.
class ManualWorker {
  public:
    ManualWorker(Program& program, InstallationView& view, ProgressBars& bars);

    bool InstallAllManuals();

  private:
    bool InstallSelected();
    bool InstallOneManual();
    bool PlaceManual();
    bool ExtractAndCopyManual();
    bool CopyPdfManual();
    bool CopyPlainManual();
    bool RemoveOlderEdition(std::int16_t manualIndex);

    bool ChooseFolder();
    bool IsFitToReplace();
    bool IsInUse(const std::wstring& file);
    void RemoveEditionFolder(const std::wstring& pubNo, const std::wstring& folder);
    bool CopyExtractedManual();
    CopyProgress CopyBarProgress();
    bool MakeManualFolder(const std::wstring& folder);
    bool Record();
    [[noreturn]] void FailWithCatalogue(const std::wstring& pubNo);
    void FailWithManual();
    void ResetBars();

    DiscCatalogueRecord& Manual() { return program_.DiscCatalogue.Records.at(Index()); }
    std::size_t Index() const { return static_cast<std::size_t>(program_.Installation.CurrentManual); }
    float ExpectedSeconds() const { return static_cast<float>(program_.Settings.ZipExtractTime); }

    Program& program_;
    InstallationView& view_;
    ProgressBars& bars_;
};

}  // namespace mip
