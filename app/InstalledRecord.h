#pragma once

#include <string>

#include "app/DiscCatalogue.h"
#include "text/DateTime.h"

namespace mip {

/// One row of M_manage, fields named like the columns, with what M_type and the disk add to it. The two flags are text
/// as it stands in the tables, where other programs write, too: an upgrade carries over also what this program does not
/// know. catalogue/RecordFlags.h reads them.
struct InstalledRecord {
    std::wstring Pub_No;
    std::wstring Model_desc;
    std::wstring Model_ID;
    std::wstring Version;
    std::wstring Year;
    std::wstring Kubun;
    std::wstring Country;
    std::wstring Lang;
    std::wstring Ldup;
    std::wstring INSUser;
    DateTime INSDate{};
    std::wstring INSPath;
    std::wstring Adjust_flg;
    std::wstring Memo_txt;
    std::wstring Pdf_flg;                               ///< of M_type, "" without a row there
    ManualForm InstalledPdfForm = ManualForm::Archive;  ///< by the files on disk

    bool operator==(const InstalledRecord&) const = default;
};

}  // namespace mip
