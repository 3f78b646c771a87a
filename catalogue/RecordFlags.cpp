#include "catalogue/RecordFlags.h"

#include "app/Attempt.h"
#include "text/Checked.h"

namespace mip {

namespace {

constexpr wchar_t PdfFlag[] = L"1";
constexpr wchar_t ArchiveFlag[] = L"0";

}  // namespace

bool IsMarkedForAdjustment(FaultLog& log, const InstalledRecord& record) {
    return Attempt(log, "reading Adjust_flg", [&] { return TextToInt16(record.Adjust_flg) == 1; });
}

bool HasOwnMark(const InstalledRecord& record) {
    return record.Adjust_flg == Marked;
}

std::wstring FlagOf(ManualForm form) {
    return form == ManualForm::Pdf ? PdfFlag : ArchiveFlag;
}

ManualForm RecordedForm(const InstalledRecord& record) {
    return record.Pdf_flg == PdfFlag ? ManualForm::Pdf : ManualForm::Archive;
}

}  // namespace mip
