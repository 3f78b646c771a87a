#pragma once

#include "platform/Archives.h"

namespace mip {

class ArchiveSystem;
class Clock;

/// The archive library's stand-in: extracts ZIP files (stored and deflated entries, ZIP64). An archive with a hostile
/// or doubtful entry is refused as a whole before anything is written, and nothing is ever written outside the output
/// folder. The message loop is served while it works.
class EmbeddedArchives : public Archives {
  public:
    EmbeddedArchives(ArchiveSystem& system, Clock& clock) : system_(system), clock_(clock) {}

    /// Results: 0 done, 2 failed, 7 the command line is not one that this extractor knows.
    std::int32_t SevenZip(const std::wstring& commandLine, FaultLog& log) override;
    /// An unknown command line is thrown with Win32's code for an invalid parameter, a refused archive with that for
    /// invalid data.
    ArchiveFacts Inspect(const std::wstring& commandLine) override;
    ArchiveFacts Test(const std::wstring& commandLine) override;

  private:
    ArchiveSystem& system_;
    Clock& clock_;
};

}  // namespace mip
