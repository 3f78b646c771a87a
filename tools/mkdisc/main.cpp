#include <exception>
#include <filesystem>
#include <iostream>
#include <string>
#include <vector>

#include "platform/PlatformError.h"
#include "publish/CommandLine.h"
#include "publish/DiscImage.h"
#include "publish/FileTools.h"
#include "publish/MakeDisc.h"
#include "publish/PathText.h"

namespace {

constexpr char Help[] =
    R"(Usage: mkdisc --program DIR [OPTIONS] DESCRIPTION.txt DISC

Makes a disc's folder, with every file that a workshop needs. DISC must not
exist; it appears when it is complete. The same input gives the same bytes.
docs/publishing.md tells what a description says and what the disc consists of.

  --program DIR    ManualInstall.exe, its folder SysDir and what else goes beside it
  --programs DIR   the companions' setups: man_manager, manual_link, View
  --sources DIR    where the manuals' sources are; the description's folder when not given
  --base DIR       the disc before, or a folder of earlier manuals: what has changed
                   against the edition just before becomes a comparison set
  --image OUT.iso  also make the disc's image, with Joliet names, by xorriso
  --udf            with UDF names, too, by genisoimage; such an image is not the same
                   each time

Exit status: 0 made, 1 the description is faulty, 2 wrong usage or something cannot be read or written.
)";

int Fail(const std::string& text) {
    std::cerr << "mkdisc: " << text << '\n';
    return 2;
}

void Make(const mip::CommandLine& line) {
    const auto& rest = line.Rest(2);
    const std::filesystem::path folder = rest[0].parent_path();
    const bool hasSources = line.Has("--sources");
    const mip::DiscParts parts{folder, hasSources ? line.Value("--sources") : folder, line.Value("--program"),
                               line.Value("--programs"), line.Value("--base")};
    if (!line.Has("--program")) {
        throw mip::UsageError("--program is missing");
    }
    const mip::DiscDescription description = mip::ParseDiscDescription(mip::ReadWhole(rest[0]));
    for (const std::string& note : mip::MakeDisc(description, parts, rest[1])) {
        std::cerr << "mkdisc: " << note << '\n';
    }
    if (line.Has("--image")) {
        mip::WriteImage(rest[1], line.Value("--image"), {description.Label, description.Date},
                        line.Has("--udf") ? mip::ImageNames::JolietAndUdf : mip::ImageNames::Joliet);
    }
}

int Run(const std::vector<std::filesystem::path>& arguments) {
    try {
        const mip::CommandLine line(arguments, {"--program", "--programs", "--sources", "--base", "--image"},
                                    {"--udf", "--help", "-h"});
        if (line.Has("--help") || line.Has("-h")) {
            std::cout << Help;
            return 0;
        }
        try {
            Make(line);
            return 0;
        } catch (const mip::DescriptionFaults& faults) {
            for (const mip::DescriptionFault& fault : faults.Faults()) {
                std::cerr << mip::Utf8Of(line.Rest(2)[0]) << ':' << fault.Line << ": "
                          << (fault.Field.empty() ? "" : fault.Field + ": ") << fault.Text << '\n';
            }
            return 1;
        }
    } catch (const mip::UsageError& error) {
        std::cerr << "mkdisc: " << error.what() << "\n\n" << Help;
        return 2;
    } catch (const mip::PlatformError& error) {
        return Fail(error.what() + (": " + mip::ToUtf8(error.Object())));
    } catch (const std::exception& error) {
        return Fail(error.what());
    }
}

}  // namespace

#ifdef _WIN32
int wmain(int count, wchar_t** values) {
#else
int main(int count, char** values) {
#endif
    return Run({values + 1, values + count});
}
