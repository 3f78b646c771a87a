#pragma once

#include <string>

#include "platform/Clock.h"

namespace mip {

/// One row of M_manage, fields named like the columns, with what M_type and the disk add to it.
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
    std::wstring Adjust_flg;  ///< "1" marked for adjustment
    std::wstring Memo_txt;
    std::wstring Pdf_flg;           ///< of M_type: "1" PDF, "0" archive, "" without a row there
    std::wstring InstalledPdfForm;  ///< by the files on disk: "1" PDF, "0" not

    bool operator==(const InstalledRecord&) const = default;
};

}  // namespace mip
