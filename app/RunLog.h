#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>

#include "platform/FaultLog.h"
#include "platform/Platform.h"

namespace mip {

/// What was done, one line each with time, step, publication and outcome, separated by tabs. The last lines are kept in
/// memory; the file named by /LOG=, if any, gets every line as UTF-8 at once, so that it is complete up to the moment
/// of a crash. Nothing but StartFile ever throws: a log that cannot be written never stops the run.
class RunLog final : public FaultLog {
  public:
    /// Lines that are kept.
    static constexpr std::size_t Capacity = 5000;

    explicit RunLog(const Platform& platform);

    /// Starts the file anew; throws PlatformError when it cannot be created.
    void StartFile(const std::wstring& path);

    /// Adds one line. Line ends and tabs inside the texts become blanks.
    void Write(const std::wstring& step, const std::wstring& publication, const std::wstring& outcome);
    /// The step and the publication of the lines that follow without one of their own.
    void SetContext(const std::wstring& step, const std::wstring& publication = {});
    /// Adds a line with the number and the text of a message that the user gets.
    void Message(std::int16_t number, const std::wstring& text);
    /// Adds a line with what was being done, the failed operation and its code, its object, and the system's text.
    void Trapped(std::string_view routine, const std::exception& error) override;

    /// The kept lines, each with CR and LF.
    std::wstring Text() const;

  private:
    std::wstring Describe(const std::exception& error) const;

    Files& files_;
    Clock& clock_;
    AccessControl& accessControl_;
    std::wstring path_;
    std::wstring step_ = L"start-up";
    std::wstring publication_;
    std::deque<std::wstring> lines_;
};

}  // namespace mip
