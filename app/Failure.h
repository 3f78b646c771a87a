#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <utility>

namespace mip {

/// What stops a run by one of the program's own rules: the number of the text that the user gets, the reason in English
/// for the log, and what stands for "@" in that text.
class Failure : public std::runtime_error {
  public:
    Failure(std::int16_t message, const std::string& reason, std::wstring insert = {})
        : std::runtime_error(reason), insert_(std::move(insert)), message_(message) {}

    std::int16_t Message() const { return message_; }
    const std::wstring& Insert() const { return insert_; }

  private:
    std::wstring insert_;
    std::int16_t message_;
};

}  // namespace mip
