#include "app/RunLog.h"

#include <algorithm>

#include "platform/Clock.h"
#include "platform/Files.h"
#include "platform/PlatformError.h"
#include "platform/Security.h"
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

RunLog::RunLog(const Platform& platform)
    : files_(platform.Files), clock_(platform.Clock), accessControl_(platform.AccessControl) {}

void RunLog::StartFile(const std::wstring& path) {
    files_.Write(path, ToUtf8(Text()));
    path_ = path;
}

void RunLog::Write(const std::wstring& step, const std::wstring& publication, const std::wstring& outcome) {
    try {
        const std::wstring time = ReplaceAll(FormatDateTime(clock_.Now()), L"/", L"-");
        lines_.push_back(time + L'\t' + OnOneLine(step) + L'\t' + OnOneLine(publication) + L'\t' + OnOneLine(outcome) +
                         L"\r\n");
        if (lines_.size() > Capacity) {
            lines_.pop_front();
        }
        if (!path_.empty()) {
            files_.Append(path_, ToUtf8(lines_.back()));
        }
    } catch (const std::exception&) {
        // The run matters more than its log.
    }
}

void RunLog::SetContext(const std::wstring& step, const std::wstring& publication) {
    step_ = step;
    publication_ = publication;
}

void RunLog::Message(std::int16_t number, const std::wstring& text) {
    Write(step_, publication_, L"message " + std::to_wstring(number) + L": " + text);
}

void RunLog::Trapped(std::string_view routine, const std::exception& error) {
    Write(step_, publication_, FromUtf8(routine) + L": " + Describe(error));
}

std::wstring RunLog::Text() const {
    std::wstring text;
    for (const std::wstring& line : lines_) {
        text += line;
    }
    return text;
}

std::wstring RunLog::Describe(const std::exception& error) const {
    std::wstring text = FromUtf8(error.what());
    const auto* fault = dynamic_cast<const PlatformError*>(&error);
    if (fault == nullptr) {
        return text;
    }
    if (!fault->Object().empty()) {
        text += L" on " + fault->Object();
    }
    try {
        const std::wstring words =
            fault->Text().empty() ? accessControl_.MessageText(fault->Code(), L"") : fault->Text();
        return words.empty() || fault->Code() == 0 ? text : text + L": " + words;
    } catch (const std::exception&) {
        return text;
    }
}

}  // namespace mip
