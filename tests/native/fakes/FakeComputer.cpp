#include "tests/native/fakes/FakeComputer.h"

#include "text/TextTools.h"

namespace mip {

DateTime FakeClock::Now() {
    faults_.CheckPower();
    return std::chrono::floor<std::chrono::seconds>(Time);
}

void FakeClock::Sleep(std::chrono::milliseconds duration) {
    faults_.CheckPower();
    Sleeps.push_back(duration);
    Time += duration;
}

void FakeClock::YieldToMessages() {
    faults_.CheckPower();
    ++Yields;
    if (OnYield) {
        OnYield();
    }
}

std::wstring FakeComputer::ProgramFolder() {
    faults_.CheckPower();
    return Folder;
}

std::wstring FakeComputer::UserName() {
    faults_.Check("Computer.UserName", L"");
    return User;
}

std::wstring FakeComputer::LanguageIdentifier() {
    faults_.Check("Computer.LanguageIdentifier", L"");
    return Language;
}

bool FakeComputer::IsPreviousInstanceRunning() {
    faults_.CheckPower();
    return PreviousInstance;
}

std::string FakeComputer::ToSystemCodePage(const std::wstring& text) {
    if (CodePage == FakeCodePage::Utf8) {
        return ToUtf8(text);
    }
    std::string bytes;
    for (const wchar_t c : text) {
        bytes += static_cast<std::uint32_t>(c) <= 0xFF ? static_cast<char>(c) : '?';
    }
    return bytes;
}

std::wstring FakeComputer::FromSystemCodePage(const std::string& bytes) {
    if (CodePage == FakeCodePage::Utf8) {
        return FromUtf8(bytes);
    }
    std::wstring text;
    for (const char c : bytes) {
        text += static_cast<wchar_t>(static_cast<unsigned char>(c));
    }
    return text;
}

void FakeComputer::EndProcess(std::uint32_t exitCode) {
    faults_.CheckPower();
    throw ProcessEnded{exitCode};
}

int FakeMessageBoxes::Show(const std::wstring& text, int style, const std::wstring& title) {
    faults_.CheckPower();
    Shown.push_back({text, style, title.empty() ? L"Manual Install Program" : title});
    if (!Answers.empty()) {
        const int answer = Answers.front();
        Answers.pop_front();
        return answer;
    }
    if ((style & boxes::YesNo) == 0) {
        return boxes::AnswerOk;
    }
    return (style & boxes::SecondButtonDefault) != 0 ? boxes::AnswerNo : boxes::AnswerYes;
}

}  // namespace mip
