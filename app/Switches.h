#pragma once

#include <string>

namespace mip {

/// The command-line switches; all are optional.
struct Switches {
    bool Silent = false;      ///< /SILENT: only the progress screen is shown
    bool VerySilent = false;  ///< /VERYSILENT: nothing is shown
    bool Accept = false;      ///< /ACCEPT: stands for the agreement
    bool Help = false;        ///< /?: only tells what the switches mean
    bool Check = false;       ///< /CHECK: maintenance run over all installed manuals
    std::wstring Remove;      ///< /REMOVE=<Pub_No>: maintenance run that removes one manual
    std::wstring Directory;   ///< /DIR="folder": install root for manuals without a folder
    std::wstring Language;    ///< /LANG=<code>: language code, upper-cased
    std::wstring LogFile;     ///< /LOG="file"

    bool IsQuiet() const { return Silent || VerySilent; }
    bool IsMaintenance() const { return Check || !Remove.empty(); }

    bool operator==(const Switches&) const = default;
};

}  // namespace mip
