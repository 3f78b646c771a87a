#pragma once

#include <cstdint>
#include <string>

namespace mip {

/// The computer, its user, and this process.
class Computer {
  public:
    virtual ~Computer() = default;

    /// Folder of the running executable, without a trailing backslash ("D:\" on a drive root).
    virtual std::wstring ProgramFolder() = 0;
    /// Log-on name of the current user. Throws PlatformError with a Win32 code.
    virtual std::wstring UserName() = 0;
    /// The user default's language identifier as four hexadecimal digits ("0411"). Throws PlatformError.
    virtual std::wstring LanguageIdentifier() = 0;
    /// True when another instance of this program was already running when this one started.
    virtual bool IsPreviousInstanceRunning() = 0;
    /// Brings the other instance's screen to the front, the question over it first. Nothing when it shows none.
    virtual void ShowPreviousInstance() = 0;
    /// Whether the computer must not fall asleep by itself now; never throws.
    virtual void StayAwake(bool awake) noexcept = 0;
    /// Text in the system's ANSI code page; what has no place there becomes "?".
    virtual std::string ToSystemCodePage(const std::wstring& text) = 0;
    virtual std::wstring FromSystemCodePage(const std::string& bytes) = 0;
    /// Ends the process; no screen gets any further event.
    [[noreturn]] virtual void EndProcess(std::uint32_t exitCode) = 0;
};

}  // namespace mip
