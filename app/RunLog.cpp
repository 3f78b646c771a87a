#include "app/RunLog.h"

#include <algorithm>
#include <utility>

#include "platform/Clock.h"
#include "platform/Files.h"
#include "text/DateText.h"
#include "text/TextTools.h"

namespace mip {
namespace {

std::wstring OnOneLine(std::wstring text) {
    std::replace_if(
        text.begin(), text.end(), [](wchar_t character) { return character < L' '; }, L' ');
    return text;
}

}  // namespace

RunLog::RunLog(Files& files, Clock& clock, std::wstring path) : files_(&files), clock_(&clock), path_(std::move(path)) {
    files_->Write(path_, "");
}

void RunLog::Write(const std::wstring& step, const std::wstring& publication, const std::wstring& outcome) {
    if (files_ == nullptr) {
        return;
    }
    try {
        const std::wstring time = ReplaceAll(FormatDateTime(clock_->Now()), L"/", L"-");
        files_->Append(path_, ToUtf8(time + L'\t' + OnOneLine(step) + L'\t' + OnOneLine(publication) + L'\t' +
                                     OnOneLine(outcome) + L"\r\n"));
    } catch (const std::exception&) {
        // The run matters more than its log.
    }
}

}  // namespace mip
