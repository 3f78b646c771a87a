#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string>
#include <vector>

#include "tools/mkcatalogue/WriteCatalogue.h"

namespace {

constexpr char Help[] =
    R"(Usage: mkcatalogue DESCRIPTION.txt OUTPUT.mdb

Makes an empty catalogue database, as it lies beside the program on a disc.
It is an SQLite database: it upgrades the catalogues of workshops that use
SQLite, and a workshop whose catalogue is a Jet database refuses it.
An existing output file is replaced when the new one is complete.

The description is UTF-8 text with one entry a line:
  version N                            the layout version, once
  model ID<TAB>description<TAB>number  a vehicle model and its place in the display order
  # ...                                a comment

Exit status: 0 written, 1 the description is faulty, 2 wrong usage or a file cannot be read or written.
)";

std::string ReadFile(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        throw std::runtime_error("cannot read " + path.string());
    }
    return {std::istreambuf_iterator<char>(file), {}};
}

int Run(const std::vector<std::filesystem::path>& arguments) {
    if (arguments.size() == 1 && (arguments[0] == "--help" || arguments[0] == "-h")) {
        std::cout << Help;
        return 0;
    }
    if (arguments.size() != 2) {
        std::cerr << Help;
        return 2;
    }
    try {
        mip::WriteCatalogue(mip::ParseDescription(ReadFile(arguments[0])), arguments[1]);
        return 0;
    } catch (const mip::DescriptionError& error) {
        std::cerr << "mkcatalogue: " << arguments[0].string() << ", " << error.what() << '\n';
        return 1;
    } catch (const std::exception& error) {
        std::cerr << "mkcatalogue: " << arguments[1].string() << " was not written: " << error.what() << '\n';
        return 2;
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
