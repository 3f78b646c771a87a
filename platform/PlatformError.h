#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

namespace mip {

/// The error that every adapter throws: which operation failed, on what, and the system's own code
/// (a Win32 error, an HRESULT, or the database engine's result code, as the operation's comment says).
class PlatformError : public std::runtime_error {
  public:
    PlatformError(std::string_view operation, std::wstring object, std::uint32_t code, std::wstring text = {})
        : std::runtime_error(std::string(operation) + " failed with code " + std::to_string(code)),
          object_(std::move(object)),
          text_(std::move(text)),
          code_(code) {}

    const std::wstring& Object() const { return object_; }
    std::uint32_t Code() const { return code_; }
    /// The engine's own words for the error; "" when the system's text for the code is all there is.
    const std::wstring& Text() const { return text_; }

  private:
    std::wstring object_;
    std::wstring text_;
    std::uint32_t code_;
};

/// The code with which an adapter's operation fails, 0 when it does not.
std::uint32_t CodeOf(const auto& operation) {
    try {
        operation();
        return 0;
    } catch (const PlatformError& error) {
        return error.Code();
    }
}

/// The Win32 error codes that the program's own rules, or the fakes, name.
namespace errors {
inline constexpr std::uint32_t FileNotFound = 2;
inline constexpr std::uint32_t PathNotFound = 3;
inline constexpr std::uint32_t AccessDenied = 5;
inline constexpr std::uint32_t SharingViolation = 32;
inline constexpr std::uint32_t FileExists = 80;
inline constexpr std::uint32_t DiskFull = 112;
inline constexpr std::uint32_t InsufficientBuffer = 122;
inline constexpr std::uint32_t InvalidName = 123;
inline constexpr std::uint32_t AlreadyExists = 183;
}  // namespace errors

}  // namespace mip
