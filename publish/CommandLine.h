#pragma once

#include <filesystem>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

namespace mip {

/// A command line that the tool does not know.
struct UsageError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// The arguments of a publisher's tool: `--name VALUE`, `--name` alone where it is a switch, and the rest in its order.
class CommandLine {
  public:
    /// Throws UsageError for an option that is none, comes twice or has no value.
    CommandLine(const std::vector<std::filesystem::path>& arguments, const std::vector<std::string>& withValue,
                const std::vector<std::string>& switches);

    /// "" when the option was not given.
    std::filesystem::path Value(const std::string& option) const;
    bool Has(const std::string& option) const { return options_.contains(option); }
    /// Throws UsageError when there are not exactly so many.
    const std::vector<std::filesystem::path>& Rest(std::size_t count) const;

  private:
    std::map<std::string, std::filesystem::path> options_;
    std::vector<std::filesystem::path> rest_;
};

}  // namespace mip
