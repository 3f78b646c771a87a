#pragma once

#include <deque>
#include <functional>
#include <vector>

#include "platform/Clock.h"
#include "platform/Computer.h"
#include "platform/MessageBoxes.h"
#include "tests/native/fakes/Faults.h"
#include "text/TextTools.h"

namespace mip {

/// A clock that does not wait: a sleep moves the time on and is recorded.
class FakeClock : public Clock, private Counted {
  public:
    using Counted::Counted;

    DateTime Now() override {
        faults_.CheckPower();
        return std::chrono::floor<std::chrono::seconds>(Time);
    }
    void Sleep(std::chrono::milliseconds duration) override {
        faults_.CheckPower();
        Sleeps.push_back(duration);
        Time += duration;
    }
    void YieldToMessages() override {
        faults_.CheckPower();
        ++Yields;
        if (OnYield) {
            OnYield();
        }
    }

    /// 2024-05-06 07:08:09 at the start.
    std::chrono::local_time<std::chrono::milliseconds> Time =
        std::chrono::local_days{std::chrono::year{2024} / 5 / 6} + std::chrono::seconds{(7 * 60 + 8) * 60 + 9};
    std::vector<std::chrono::milliseconds> Sleeps;
    int Yields = 0;
    /// Called by every yield: what the user or a timer does meanwhile.
    std::function<void()> OnYield;
};

enum class FakeCodePage { Latin1, Utf8 };

/// Thrown in place of the end of the process.
struct ProcessEnded {
    std::uint32_t ExitCode = 0;
};

class FakeComputer : public Computer, private Counted {
  public:
    using Counted::Counted;

    std::wstring ProgramFolder() override { return Sure(Folder); }
    std::wstring UserName() override {
        faults_.Check("Computer.UserName", L"");
        return User;
    }
    std::wstring LanguageIdentifier() override {
        faults_.Check("Computer.LanguageIdentifier", L"");
        return Language;
    }
    bool IsPreviousInstanceRunning() override { return Sure(PreviousInstance); }
    void ShowPreviousInstance() override { ++PreviousInstanceShown; }
    void StayAwake(bool awake) noexcept override { Awake = awake; }
    std::string ToSystemCodePage(const std::wstring& text) override {
        if (CodePage == FakeCodePage::Utf8) {
            return ToUtf8(text);
        }
        std::string bytes;
        for (const wchar_t c : text) {
            bytes += static_cast<std::uint32_t>(c) <= 0xFF ? static_cast<char>(c) : '?';
        }
        return bytes;
    }
    std::wstring FromSystemCodePage(const std::string& bytes) override {
        if (CodePage == FakeCodePage::Utf8) {
            return FromUtf8(bytes);
        }
        std::wstring text;
        for (const char c : bytes) {
            text += static_cast<wchar_t>(static_cast<unsigned char>(c));
        }
        return text;
    }
    [[noreturn]] void EndProcess(std::uint32_t exitCode) override {
        faults_.CheckPower();
        throw ProcessEnded{exitCode};
    }

    std::wstring Folder = L"D:\\programs\\setup";
    std::wstring User = L"Mechanic";
    std::wstring Language = L"0409";
    bool PreviousInstance = false;
    int PreviousInstanceShown = 0;
    bool Awake = false;
    std::wstring Temporary = L"C:\\Temp";
    FakeCodePage CodePage = FakeCodePage::Utf8;

  private:
    template <typename T>
    const T& Sure(const T& answer) {
        faults_.CheckPower();
        return answer;
    }
};

struct ShownBox {
    std::wstring Text;
    int Style = 0;
    std::wstring Title;
    bool operator==(const ShownBox&) const = default;
};

/// Boxes are recorded and answered by `Answers` in order, then by their default button.
class FakeMessageBoxes : public MessageBoxes, private Counted {
  public:
    using Counted::Counted;

    int Show(const std::wstring& text, int style, const std::wstring& title) override {
        faults_.CheckPower();
        Shown.push_back({text, style, title.empty() ? L"Manual Install Program" : title});
        if (OnShow) {
            OnShow(Shown.back());
        }
        if (!Answers.empty()) {
            const int answer = Answers.front();
            Answers.pop_front();
            return answer;
        }
        const int yesOrNo = (style & boxes::SecondButtonDefault) != 0 ? boxes::AnswerNo : boxes::AnswerYes;
        return (style & boxes::YesNo) == 0 ? boxes::AnswerOk : yesOrNo;
    }

    std::vector<ShownBox> Shown;
    std::deque<int> Answers;
    std::function<void(const ShownBox&)> OnShow;
};

}  // namespace mip
