#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace mip {

/// The exit code that the system reports for a process that has not ended.
inline constexpr std::uint32_t StillActive = 259;

/// A process that was started here. Releasing the object closes the handle; the process goes on.
class RunningProcess {
  public:
    virtual ~RunningProcess() = default;
    /// StillActive, or the code with which the process ended. Throws PlatformError with a Win32 code.
    virtual std::uint32_t ExitCode() = 0;
};

class Processes {
  public:
    virtual ~Processes() = default;

    /// Executable file names of all running processes in snapshot order; nothing when no snapshot can be had.
    virtual std::optional<std::vector<std::wstring>> Snapshot() = 0;
    /// Starts a command line (programs and batch files) with its main window hidden. Throws PlatformError.
    virtual std::unique_ptr<RunningProcess> StartHidden(const std::wstring& commandLine) = 0;
    /// Starts a command line with a normal, focused window and does not wait. Throws PlatformError.
    virtual void StartVisible(const std::wstring& commandLine) = 0;
};

}  // namespace mip
