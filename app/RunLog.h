#pragma once

#include <string>

namespace mip {

class Clock;
class Files;

/// The file named by /LOG=: one UTF-8 line for each thing done, with time, step, publication and outcome, separated
/// by tabs. Without a file every call does nothing. A log that cannot be written never stops the run.
class RunLog {
  public:
    RunLog() = default;
    /// Starts the log anew; throws PlatformError when the file cannot be created.
    RunLog(Files& files, Clock& clock, std::wstring path);

    /// Adds one line at once, so that the log is complete up to the moment of a crash. Line ends and tabs inside the
    /// texts become blanks.
    void Write(const std::wstring& step, const std::wstring& publication, const std::wstring& outcome);

  private:
    Files* files_ = nullptr;
    Clock* clock_ = nullptr;
    std::wstring path_;
};

}  // namespace mip
