#include "publish/CommandLine.h"

#include <algorithm>

#include "publish/PathText.h"

namespace mip {

CommandLine::CommandLine(const std::vector<std::filesystem::path>& arguments, const std::vector<std::string>& withValue,
                         const std::vector<std::string>& switches) {
    for (auto argument = arguments.begin(); argument != arguments.end(); ++argument) {
        const std::string option = Utf8Of(*argument);
        const bool hasValue = std::ranges::find(withValue, option) != withValue.end();
        if (!option.starts_with("-")) {
            rest_.push_back(*argument);
        } else if (!hasValue && std::ranges::find(switches, option) == switches.end()) {
            throw UsageError("unknown option " + option);
        } else if (hasValue && argument + 1 == arguments.end()) {
            throw UsageError(option + " needs a value");
        } else if (!options_.emplace(option, hasValue ? *++argument : "").second) {
            throw UsageError(option + " comes twice");
        }
    }
}

std::filesystem::path CommandLine::Value(const std::string& option) const {
    const auto found = options_.find(option);
    return found == options_.end() ? std::filesystem::path() : found->second;
}

const std::vector<std::filesystem::path>& CommandLine::Rest(std::size_t count) const {
    if (rest_.size() != count) {
        throw UsageError("wrong number of arguments");
    }
    return rest_;
}

}  // namespace mip
