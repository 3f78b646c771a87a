#include <gtest/gtest.h>

#include <chrono>
#include <fstream>
#include <string>
#include <vector>

#include "platform/Clusters.h"
#include "platform/archive/EmbeddedArchives.h"
#include "tests/native/archive/TestSystem.h"
#include "tests/native/archive/ZipBuilder.h"

namespace mip {
namespace {

namespace fs = std::filesystem;

std::string Compressible(std::size_t size) {
    std::string text;
    for (unsigned index = 0; text.size() < size; ++index) {
        text += "line " + std::to_string(index * 2654435761U) + "\r\n";
    }
    text.resize(size);
    return text;
}

class Extraction : public testing::Test {
  protected:
    std::int32_t Extract(const std::string& zip, unsigned codePage = UsCodePage) {
        const auto system = MakeTestSystem(codePage);
        EmbeddedArchives archives(*system, Clock_);
        Archive = Folder.Write(L"manual.zip", zip);
        return archives.SevenZip(L"x -aoa -hide \"" + Archive + L"\" \"" + Folder.Below(L"out") + L"\\\"",
                                 NoFaultLog::Instance());
    }
    Tree Extracted() const { return TreeOf(Folder.Path() / "out"); }
    ArchiveFacts Test() {
        const auto system = MakeTestSystem();
        return EmbeddedArchives(*system, Clock_).Test(L"x -aoa " + Archive + L" C:\\out");
    }

    ScratchFolder Folder;
    CountingClock Clock_;
    std::wstring Archive;
};

TEST_F(Extraction, WritesWhatThePackerPacked) {
    const std::string large = Compressible(3'000'000);
    const std::string zip = BuildZip({
        {.Name = "M/", .Deflate = false},
        {.Name = "M/stored.bin", .Content = large, .Deflate = false},
        {.Name = "M/deflated.htm", .Content = large},
        {.Name = "M/empty.txt", .Deflate = false},
        {.Name = "M/empty folder/", .Deflate = false, .Attributes = 0x10},
        {.Name = "N/without/folder entries.txt", .Content = "n"},
        {.Name = "N/sizes follow.txt", .Content = "s", .SizesFollowData = true},
        {.Name = "N/zip64.txt", .Content = "z64", .Zip64 = true},
        {.Name = "N\\by\\backslash.txt", .Content = "b"},
        {.Name = "U/read only.sh", .Content = "u", .Host = UnixHost, .Attributes = 0100444U << 16U},
    });
    ASSERT_EQ(Extract(zip), 0);
    const Tree expected = {
        {L"M\\", ""},
        {L"M\\stored.bin", large},
        {L"M\\deflated.htm", large},
        {L"M\\empty.txt", ""},
        {L"M\\empty folder\\", ""},
        {L"N\\", ""},
        {L"N\\without\\", ""},
        {L"N\\without\\folder entries.txt", "n"},
        {L"N\\sizes follow.txt", "s"},
        {L"N\\zip64.txt", "z64"},
        {L"N\\by\\", ""},
        {L"N\\by\\backslash.txt", "b"},
        {L"U\\", ""},
        {L"U\\read only.sh", "u"},
    };
    EXPECT_EQ(Extracted(), expected);
    EXPECT_EQ(Test(), (ArchiveFacts{2 * SizeInClusters(large.size()) + 5 * SizeInClusters(1), 8, true}));
}

TEST_F(Extraction, FilesWrittenSideBySideShareTheirFolders) {
    std::vector<ZipItem> items;
    std::size_t folders = 0;
    for (int i = 0; i < 200; ++i) {
        const std::string folder = "M/" + std::to_string(i / 4) + "/deep/folder/";
        folders += i % 4 == 0 ? 3 : 0;
        items.push_back({.Name = folder + std::to_string(i) + ".htm", .Content = std::to_string(i)});
    }
    ASSERT_EQ(Extract(BuildZip(items)), 0);
    const Tree tree = Extracted();
    EXPECT_EQ(tree.size(), 1 + folders + items.size());
    EXPECT_EQ(tree.at(L"M\\49\\deep\\folder\\199.htm"), "199");
}

TEST_F(Extraction, ReplacesWhatIsThere) {
    ASSERT_EQ(Extract(BuildZip({{.Name = "a.txt", .Content = "a long old content"}, {.Name = "b/c", .Content = "c"}})),
              0);
    ASSERT_EQ(Extract(BuildZip({{.Name = "a.txt", .Content = "new"}, {.Name = "b/", .Deflate = false}})), 0);
    EXPECT_EQ(Extracted(), (Tree{{L"a.txt", "new"}, {L"b\\", ""}, {L"b\\c", "c"}}));
}

TEST_F(Extraction, NamesAreReadInTheirCodePage) {
    struct Case {
        const char* Label;
        ZipItem Item;
        unsigned CodePage;
        std::wstring Name;
    };
    const std::vector<Case> cases = {
        {"UTF-8 flag", {.Name = "\xE8\xA1\xA8\xE7\xA4\xBA.htm", .Flags = Utf8Names}, UsCodePage, L"表示.htm"},
        {"a trail byte like a backslash", {.Name = "\x95\x5C\x8E\xA6/\x83\x5C"}, JapaneseCodePage, L"表示\\ソ"},
        {"half-width kana", {.Name = "\xB6\xC5"}, JapaneseCodePage, L"ｶﾅ"},
        {"United States",
         {.Name = "\x81"
                  "ber.txt"},
         UsCodePage,
         L"über.txt"},
        {"Western Europe", {.Name = "\xE9t\xE9"}, 1252, L"été"},
    };
    for (const Case& tried : cases) {
        SCOPED_TRACE(tried.Label);
        fs::remove_all(Folder.Path() / "out");
        ZipItem item = tried.Item;
        item.Content = "x";
        ASSERT_EQ(Extract(BuildZip({item}), tried.CodePage), 0);
        EXPECT_TRUE(Extracted().contains(tried.Name)) << testing::PrintToString(Extracted());
    }
}

TEST_F(Extraction, UnicodePathFieldNamesTheFile) {
    const std::string plain = "_";
    const std::string field = "\x01" + LittleEndian(Checksum(plain)) + "\xE8\xA1\xA8";
    ASSERT_EQ(Extract(BuildZip({{.Name = plain, .Content = "x", .Extra = ExtraField(0x7075, field)}})), 0);
    EXPECT_EQ(Extracted(), (Tree{{L"表", "x"}}));
}

TEST_F(Extraction, KeepsModificationTimes) {
    const std::string extendedTime = std::string("\x01", 1) + LittleEndian(981'173'106);
    ASSERT_EQ(Extract(BuildZip({{.Name = "a", .Content = "a", .Extra = ExtraField(0x5455, extendedTime)}})), 0);
    const auto modified = fs::last_write_time(Folder.Path() / "out" / "a");
    const auto expected = std::chrono::sys_days(std::chrono::year(2001) / 2 / 3) + std::chrono::seconds(4 * 3600 + 306);
    EXPECT_EQ(std::chrono::file_clock::to_sys(modified), expected);
}

TEST_F(Extraction, ServesTheMessageLoopWhileItWorks) {
    const std::string content = Compressible(200'000);
    std::vector<ZipItem> items(300);
    for (std::size_t index = 0; index < items.size(); ++index) {
        items[index] = {.Name = std::to_string(index), .Content = content};
    }
    const auto start = std::chrono::steady_clock::now();
    ASSERT_EQ(Extract(BuildZip(items)), 0);
    const auto took = std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - start);
    EXPECT_GT(Clock_.Yields, 0);
    EXPECT_LE(Clock_.Yields, took.count() / 30 + 1);
}

TEST_F(Extraction, ManyEntriesThatOnlyZip64CanCount) {
    {
        std::ofstream zip(Folder.Path() / "manual.zip", std::ios::binary);
        WriteZipOfEmptyFiles(zip, 66'000);
    }
    Archive = Folder.Below(L"manual.zip");
    EXPECT_EQ(Test(), (ArchiveFacts{0, 66'000, false}));
}

}  // namespace
}  // namespace mip
