#pragma once

#include <string>

#include "app/InstalledRecord.h"
#include "platform/FaultLog.h"

namespace mip {

/// Adjust_flg of a manual that is whole, and of one that is to be installed anew or removed.
inline constexpr wchar_t NotMarked[] = L"0";
inline constexpr wchar_t Marked[] = L"1";

/// The mark read as a number: other programs write it, too. What is no number is no mark, and is said to `log`.
bool IsMarkedForAdjustment(FaultLog& log, const InstalledRecord& record);
/// The mark just as this program writes it: a row is deleted for that one only.
bool HasOwnMark(const InstalledRecord& record);

/// Pdf_flg of a form.
std::wstring FlagOf(ManualForm form);
/// The form that M_type gives the manual; an archive for what is not known.
ManualForm RecordedForm(const InstalledRecord& record);

}  // namespace mip
