#pragma once

#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace mip {

/// The command-line switches; all are optional.
struct Switches {
    bool Silent = false;      ///< /SILENT: only the progress screen is shown
    bool VerySilent = false;  ///< /VERYSILENT: nothing is shown
    bool Accept = false;      ///< /ACCEPT: stands for the agreement
    bool Check = false;       ///< /CHECK: maintenance run over all installed manuals
    std::wstring Remove;      ///< /REMOVE=<Pub_No>: maintenance run that removes one manual
    std::wstring Directory;   ///< /DIR="folder": install root for manuals without a folder
    std::wstring Language;    ///< /LANG=<code>: language code, upper-cased
    std::wstring LogFile;     ///< /LOG="file"

    bool IsQuiet() const { return Silent || VerySilent; }
    bool IsMaintenance() const { return Check || !Remove.empty(); }

    bool operator==(const Switches&) const = default;
};

/// A switch that is unknown, incomplete, in the way of another, or given without its companion.
class BadSwitch : public std::runtime_error {
  public:
    BadSwitch(std::wstring text, Switches others)
        : std::runtime_error("bad command-line switch"), text_(std::move(text)), others_(std::move(others)) {}
    const std::wstring& Text() const { return text_; }
    /// What the other switches say: a quiet run's bad switch belongs in its log.
    const Switches& Others() const { return others_; }

  private:
    std::wstring text_;
    Switches others_;
};

/// Reads the arguments after the program's name. Names are compared without regard to case; values keep theirs and may
/// be quoted. Throws BadSwitch for the first bad one.
Switches ReadSwitches(const std::vector<std::wstring>& arguments);

}  // namespace mip
