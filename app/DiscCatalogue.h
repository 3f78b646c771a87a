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

/// One manual folder on the disc, and what is to be done with it. Flags are text, "1" for yes and "0" for no.
struct DiscCatalogueRecord {
    std::wstring InstallFlag;  ///< "1" candidate, "0" the installed copy is as new or newer, "9" superseded

    std::wstring Pub_No;
    std::wstring Version;
    std::wstring Model_desc;
    std::wstring Model_ID;
    std::wstring Lang;
    std::wstring Ldup;
    std::wstring Year;
    std::wstring Kubun;
    std::wstring Country;

    std::int16_t OrderNo = 0;    ///< display order of the model, 0 when unknown
    std::wstring InstallKind;    ///< "" undecided, "1" full, "2" differential
    std::wstring InstallState;   ///< "1" new, "2" update, "3" nothing to install
    std::wstring SourcePath;     ///< the archive, or the record folder of a PDF manual
    std::wstring ComparePath;    ///< the comparison set's folder, "" for a PDF manual
    std::wstring DoneFlag;       ///< the driver's: "1" once handled
    std::wstring PdfForm;        ///< "1" PDF manual, "0" archive
    std::wstring InstalledPath;  ///< where an edition is installed, "" when none
    std::wstring FolderName;     ///< the record's folder below the disc root

    bool operator==(const DiscCatalogueRecord&) const = default;
};

/// The disc's manuals, numbered from 1; entry 0 stays empty.
struct DiscCatalogue {
    std::vector<DiscCatalogueRecord> Records{1};
    std::wstring CatalogueErrorCaption;
    std::wstring CatalogueErrorText;
    std::int16_t CatalogueErrorFlag = 0;  ///< -1 after a fatal scan error

    std::int16_t LastIndex() const { return static_cast<std::int16_t>(Records.size() - 1); }
    void Clear() { *this = DiscCatalogue{}; }
};

}  // namespace mip
