#pragma once

#include <deque>
#include <functional>
#include <vector>

#include "platform/Clock.h"
#include "platform/Computer.h"
#include "platform/MessageBoxes.h"
#include "tests/native/fakes/Faults.h"

namespace mip {

/// A clock that does not wait: a sleep moves the time on and is recorded.
class FakeClock : public Clock {
  public:
    explicit FakeClock(Faults& faults) : faults_(faults) {}

    DateTime Now() override;
    void Sleep(std::chrono::milliseconds duration) override;
    void YieldToMessages() override;

    /// 2024-05-06 07:08:09 at the start.
    std::chrono::local_time<std::chrono::milliseconds> Time;
    std::vector<std::chrono::milliseconds> Sleeps;
    int Yields = 0;
    /// Called by every yield: what the user or a timer does meanwhile.
    std::function<void()> OnYield;

  private:
    Faults& faults_;
};

enum class FakeCodePage { Latin1, Utf8 };

/// Thrown in place of the end of the process.
struct ProcessEnded {
    std::uint32_t ExitCode = 0;
};

class FakeComputer : public Computer {
  public:
    explicit FakeComputer(Faults& faults) : faults_(faults) {}

    std::wstring ProgramFolder() override;
    std::wstring UserName() override;
    std::wstring LanguageIdentifier() override;
    bool IsPreviousInstanceRunning() override;
    std::string ToSystemCodePage(const std::wstring& text) override;
    std::wstring FromSystemCodePage(const std::string& bytes) override;
    [[noreturn]] void EndProcess(std::uint32_t exitCode) override;

    std::wstring Folder = L"D:\\programs\\setup";
    std::wstring User = L"Mechanic";
    std::wstring Language = L"0409";
    bool PreviousInstance = false;
    std::wstring Temporary = L"C:\\Temp";
    FakeCodePage CodePage = FakeCodePage::Utf8;

  private:
    Faults& faults_;
};

struct ShownBox {
    std::wstring Text;
    int Style = 0;
    std::wstring Title;
    bool operator==(const ShownBox&) const = default;
};

/// Boxes are recorded and answered by `Answers` in order, then by their default button.
class FakeMessageBoxes : public MessageBoxes {
  public:
    explicit FakeMessageBoxes(Faults& faults) : faults_(faults) {}

    int Show(const std::wstring& text, int style, const std::wstring& title) override;

    std::vector<ShownBox> Shown;
    std::deque<int> Answers;

  private:
    Faults& faults_;
};

}  // namespace mip
