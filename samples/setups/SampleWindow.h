#pragma once

#include <string>

namespace mip {

/// The one window of a sample program.
struct SampleWindow {
    std::wstring ClassName;
    std::wstring Title;
    std::wstring Headline;
    std::wstring Text;  ///< wraps; a line feed starts a new line
};

/// Shows the window until it is closed; with the environment variable SAMPLE_CLOSE_AFTER (milliseconds) it closes by
/// itself. Returns the program's exit code.
int ShowSampleWindow(const SampleWindow& window);

}  // namespace mip
