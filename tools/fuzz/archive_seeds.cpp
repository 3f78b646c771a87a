// Writes the archives that fuzzing starts from: archive_seeds FOLDER

#include <filesystem>
#include <fstream>

#include "tests/native/archive/ZipBuilder.h"

int main(int count, char** arguments) {
    if (count != 2) {
        return 2;
    }
    const std::filesystem::path folder = arguments[1];
    std::filesystem::create_directories(folder);
    const auto write = [&](const char* name, const std::string& zip) {
        std::ofstream(folder / name, std::ios::binary) << zip;
    };
    using mip::ZipItem;
    const ZipItem stored{.Name = "m/stored", .Content = "stored", .Deflate = false};
    const ZipItem deflated{.Name = "m/deflated", .Content = std::string(100, 'd'), .SizesFollowData = true};
    const ZipItem large{.Name = "m/zip64", .Content = "z", .Zip64 = true};
    const ZipItem unicode{.Name = "\xE8\xA1\xA8", .Content = "u", .Flags = mip::Utf8Names};
    const ZipItem field{.Name = "f",
                        .Extra = mip::ExtraField(0x7075, "\x01" + mip::LittleEndian(mip::Checksum("f")) + "g")};
    const ZipItem link{.Name = "l", .Content = "x", .Host = mip::UnixHost, .Attributes = 0120777U << 16U};
    write("stored", mip::BuildZip({{.Name = "m/", .Deflate = false}, stored}));
    write("deflated", mip::BuildZip({deflated, unicode}, {.Comment = "comment"}));
    write("zip64", mip::BuildZip({large, field}, {.Zip64End = true}));
    write("conflict", mip::BuildZip({{.Name = "m", .Deflate = false}, stored}));
    write("folders", mip::BuildZip({{.Name = "m", .Deflate = false, .Attributes = 0x10},
                                    {.Name = "n\\", .Deflate = false, .Host = 10},
                                    {.Name = "n/a", .Content = "a"},
                                    stored}));
    write("link", mip::BuildZip({link, stored}));
}
