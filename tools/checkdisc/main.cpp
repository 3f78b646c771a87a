#include <exception>
#include <filesystem>
#include <iostream>
#include <string>
#include <vector>

#include "platform/PlatformError.h"
#include "publish/CheckDisc.h"
#include "publish/CommandLine.h"
#include "publish/PathText.h"

namespace {

constexpr char Help[] =
    R"(Usage: checkdisc [--json] DISC

Reads a disc as the program at a workshop does, all of it, and names what would
fail or surprise there: one line a finding, with what to do about it.
DISC is the disc's folder or its image. docs/publishing.md explains the findings.

  --json    the findings as a JSON array of objects with file, code, text and fix

Exit status: 0 nothing found, 1 findings, 2 wrong usage or the disc cannot be read.
)";

int Check(const mip::CommandLine& line) {
    const std::filesystem::path& disc = line.Rest(1)[0];
    const mip::Findings findings = std::filesystem::is_directory(disc) ? mip::CheckDisc(disc) : mip::CheckImage(disc);
    std::cout << (line.Has("--json") ? mip::FindingsJson(findings) : mip::FindingsText(findings));
    return findings.empty() ? 0 : 1;
}

int Run(const std::vector<std::filesystem::path>& arguments) {
    try {
        const mip::CommandLine line(arguments, {}, {"--json", "--help", "-h"});
        if (line.Has("--help") || line.Has("-h")) {
            std::cout << Help;
            return 0;
        }
        return Check(line);
    } catch (const mip::UsageError& error) {
        std::cerr << "checkdisc: " << error.what() << "\n\n" << Help;
    } catch (const mip::PlatformError& error) {
        std::cerr << "checkdisc: " << error.what() << ": " << mip::ToUtf8(error.Object()) << '\n';
    } catch (const std::exception& error) {
        std::cerr << "checkdisc: " << error.what() << '\n';
    }
    return 2;
}

}  // namespace

#ifdef _WIN32
int wmain(int count, wchar_t** values) {
#else
int main(int count, char** values) {
#endif
    return Run({values + 1, values + count});
}
