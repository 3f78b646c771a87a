#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace mip {

/// Maximum lengths of the disc catalogue's nine values, in characters.
struct ColumnLengths {
    std::int16_t Pub_No = 0;
    std::int16_t Model_desc = 0;
    std::int16_t Model_ID = 0;
    std::int16_t Version = 0;
    std::int16_t Year = 0;
    std::int16_t Kubun = 0;
    std::int16_t Country = 0;
    std::int16_t Lang = 0;
    std::int16_t Ldup = 0;

    bool operator==(const ColumnLengths&) const = default;
};

/// What becomes of a manual of the disc.
enum class Selection {
    Undecided,
    Candidate,   ///< for installation
    UpToDate,    ///< the installed copy is as new or newer
    Superseded,  ///< a later revision is installed
};

enum class InstallKind { Undecided, Full, Differential };

/// What the result screen says of a manual.
enum class InstallState { None, New, Update, Nothing, NotImported };

enum class ManualForm { Archive, Pdf };

/// One manual folder on the disc, and what is to be done with it.
struct DiscCatalogueRecord {
    Selection InstallFlag = Selection::Undecided;

    std::wstring Pub_No;
    std::wstring Version;
    std::wstring Model_desc;
    std::wstring Model_ID;
    std::wstring Lang;
    std::wstring Ldup;
    std::wstring Year;
    std::wstring Kubun;
    std::wstring Country;

    std::int16_t OrderNo = 0;  ///< display order of the model, 0 when unknown
    mip::InstallKind InstallKind = mip::InstallKind::Undecided;
    mip::InstallState InstallState = mip::InstallState::None;
    std::wstring SourcePath;   ///< the archive, or the record folder of a PDF manual
    std::wstring ComparePath;  ///< the comparison set's folder, "" for a PDF manual
    bool DoneFlag = false;     ///< the driver's: true once handled
    ManualForm PdfForm = ManualForm::Archive;
    std::wstring InstalledPath;  ///< where an edition is installed, "" when none
    std::wstring FolderName;     ///< the record's folder below the disc root

    bool operator==(const DiscCatalogueRecord&) const = default;
};

/// The disc's manuals, numbered from 1; entry 0 stays empty.
struct DiscCatalogue {
    std::vector<DiscCatalogueRecord> Records{1};
    std::wstring CatalogueErrorCaption;
    std::wstring CatalogueErrorText;
    bool CatalogueErrorFlag = false;  ///< true after a fatal scan error

    std::int16_t LastIndex() const { return static_cast<std::int16_t>(Records.size() - 1); }
    void Clear() { *this = DiscCatalogue{}; }
};

}  // namespace mip
