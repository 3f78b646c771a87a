#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "platform/Clusters.h"
#include "platform/archive/EmbeddedArchives.h"
#include "tests/native/archive/ArchiveComputer.h"
#include "tests/native/archive/ZipBuilder.h"
#include "tests/native/fakes/InMemoryWindows.h"

namespace mip {
namespace {

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
    void UseCodePage(unsigned codePage) {
        computer_.reset();
        computer_ = MakeArchiveComputer(codePage);
    }
    std::wstring CommandFor(const std::string& zip) {
        return L"x -aoa -hide \"" + computer_->Put(computer_->At(L"manual.zip"), zip) + L"\" \"" +
               computer_->At(L"out") + L"\\\"";
    }
    std::int32_t Extract(const std::string& zip) {
        return EmbeddedArchives(computer_->System(), windows_.Clock).SevenZip(CommandFor(zip), NoFaultLog::Instance());
    }
    ArchiveFacts Test(const std::string& zip) {
        return EmbeddedArchives(computer_->System(), windows_.Clock).Test(CommandFor(zip));
    }
    ArchiveFacts Inspect(const std::vector<ZipItem>& items) {
        return EmbeddedArchives(computer_->System(), windows_.Clock).Inspect(CommandFor(BuildZip(items)));
    }
    Tree Extracted() { return computer_->TreeOf(computer_->At(L"out")); }

    std::unique_ptr<ArchiveComputer> computer_ = MakeArchiveComputer();
    InMemoryWindows windows_;
};

TEST_F(Extraction, WritesWhatThePackerPacked) {
    const std::string large = Compressible(3'000'000);
    const std::string zip =
        BuildZip({{.Name = "M/", .Deflate = false},
                  {.Name = "M/stored.bin", .Content = large, .Deflate = false},
                  {.Name = "M/deflated.htm", .Content = large},
                  {.Name = "M/empty.txt", .Deflate = false},
                  {.Name = "M/empty folder/", .Deflate = false, .Attributes = 0x10},
                  {.Name = "N/without/folder entries.txt", .Content = "n"},
                  {.Name = "N/sizes follow.txt", .Content = "s", .SizesFollowData = true, .Comment = "of the packer"},
                  {.Name = "N/zip64.txt", .Content = "z64", .Zip64 = true},
                  {.Name = "N\\by\\backslash.txt", .Content = "b"},
                  {.Name = "U/read only.sh", .Content = "u", .Host = UnixHost, .Attributes = 0100444U << 16U}});
    ASSERT_EQ(Extract(zip), 0);
    Tree expected = {{L"M\\stored.bin", large}, {L"M\\deflated.htm", large}, {L"N\\without\\folder entries.txt", "n"}};
    expected.merge(Tree{{L"N\\sizes follow.txt", "s"}, {L"N\\zip64.txt", "z64"}, {L"N\\by\\backslash.txt", "b"}});
    expected[L"U\\read only.sh"] = "u";
    for (const wchar_t* const empty :
         {L"M\\", L"M\\empty.txt", L"M\\empty folder\\", L"N\\", L"N\\without\\", L"N\\by\\", L"U\\"}) {
        expected[empty];
    }
    EXPECT_EQ(Extracted(), expected);
    EXPECT_EQ(Test(zip), (ArchiveFacts{2 * SizeInClusters(large.size()) + 5 * SizeInClusters(1), 8, true}));
}

TEST_F(Extraction, UnusualRecordsAreReadAsTheyAreMeant) {
    const std::string tail(40, 'x');
    EXPECT_EQ(Inspect({{.Name = "read-only", .Content = "x", .Attributes = 0x21},
                       {.Name = "not FAT", .Content = "x", .Host = 11, .Attributes = 0x10},
                       {.Name = "no mode", .Content = "x", .Host = UnixHost},
                       {.Name = "executable", .Content = "x", .Host = UnixHost, .Attributes = 0100755U << 16U},
                       {.Name = "flags but for encryption", .Content = "x", .Flags = 0xDFBE},
                       {.Name = "1/" + tail, .Content = "x"},
                       {.Name = "2/" + tail, .Content = "x"},
                       {.Name = "by backslash\\", .Deflate = false},
                       {.Name = "by attribute", .Deflate = false, .Attributes = 0x10},
                       {.Name = "by mode", .Deflate = false, .Host = UnixHost, .Attributes = 0040755U << 16U}}),
              (ArchiveFacts{7 * 4096, 7, false}));
    EXPECT_EQ(Inspect({{.Name = "a", .Content = std::string(9000, 'x'), .Zip64 = true}}),
              (ArchiveFacts{3 * 4096, 1, false}));
    EXPECT_EQ(Inspect({{.Name = "a", .Content = "x", .LocalName = ""}}), (ArchiveFacts{4096, 1, false})) << "no gap";
}

TEST_F(Extraction, FilesWrittenSideBySideShareTheirFolders) {
    std::vector<ZipItem> items;
    Tree expected{{L"M\\", ""}};
    for (int i = 0; i < 200; ++i) {
        const std::string folder = "M/" + std::to_string(i / 4) + "/deep/folder/";
        items.push_back({.Name = folder + std::to_string(i) + ".htm", .Content = std::to_string(i)});
        const std::wstring path = L"M\\" + std::to_wstring(i / 4) + L"\\";
        expected.insert({{path, ""}, {path + L"deep\\", ""}, {path + L"deep\\folder\\", ""}});
        expected[path + L"deep\\folder\\" + std::to_wstring(i) + L".htm"] = std::to_string(i);
    }
    ASSERT_EQ(Extract(BuildZip(items)), 0);
    EXPECT_EQ(Extracted(), expected);
}

TEST_F(Extraction, ReplacesWhatIsThere) {
    const std::string before = BuildZip({{.Name = "a.txt", .Content = "a long old content"}, {.Name = "b/c"}});
    ASSERT_EQ(Extract(before), 0);
    ASSERT_EQ(Extract(BuildZip({{.Name = "a.txt", .Content = "new"}, {.Name = "b/", .Deflate = false}})), 0);
    EXPECT_EQ(Extracted(), (Tree{{L"a.txt", "new"}, {L"b\\", ""}, {L"b\\c", ""}}));
}

TEST_F(Extraction, NamesAreReadInTheirCodePage) {
    const std::string plain = "_";
    const std::string field = ExtraField(0x7075, "\x01" + LittleEndian(Checksum(plain)) + "\xE8\xA1\xA8");
    const struct {
        const char* Label;
        ZipItem Item;
        unsigned CodePage;
        std::wstring Name;
    } cases[] = {
        {"UTF-8 flag", {.Name = "\xE8\xA1\xA8\xE7\xA4\xBA.htm", .Flags = Utf8Names}, UsCodePage, L"表示.htm"},
        {"Unicode path field", {.Name = plain, .Extra = field}, UsCodePage, L"表"},
        {"a trail byte like a backslash", {.Name = "\x95\x5C\x8E\xA6/\x83\x5C"}, JapaneseCodePage, L"表示\\ソ"},
        {"Unicode path field without a name", {.Name = plain, .Extra = ExtraField(0x7075, "12345")}, UsCodePage, L"_"},
        {"half-width kana", {.Name = "\xB6\xC5"}, JapaneseCodePage, L"ｶﾅ"},
        {"United States", {.Name = "\x81\x62\x65r.txt"}, UsCodePage, L"über.txt"},
        {"Western Europe", {.Name = "\xE9t\xE9"}, 1252, L"été"},
    };
    for (const auto& [label, item, codePage, name] : cases) {
        SCOPED_TRACE(label);
        UseCodePage(codePage);
        ASSERT_EQ(Extract(BuildZip({item})), 0);
        EXPECT_TRUE(Extracted().contains(name)) << testing::PrintToString(Extracted());
    }
}

TEST_F(Extraction, KeepsModificationTimes) {
    const std::string extendedTime = std::string("\x01", 1) + LittleEndian(981'173'106);
    const std::string noTime = std::string("\x01", 1) + LittleEndian(0);
    ASSERT_EQ(Extract(BuildZip({{.Name = "a", .Content = "a", .Extra = ExtraField(0x5455, extendedTime)},
                                {.Name = "b", .Content = "b", .Extra = ExtraField(0x5455, noTime)}})),
              0);
    const FileTime expected = std::chrono::sys_days(std::chrono::year(2001) / 2 / 3) + std::chrono::seconds(14'706);
    EXPECT_EQ(computer_->Files().Status(computer_->At(L"out\\a")).Modified, expected);
    EXPECT_GT(computer_->Files().Status(computer_->At(L"out\\b")).Modified, expected) << "when it was extracted";
}

/// A computer on which looking at some names, and making a file of some, takes longer than a turn of the message loop
/// may have to wait.
class SlowSystem : public FakeArchiveSystem {
  public:
    explicit SlowSystem(InMemoryWindows& windows) : FakeArchiveSystem(windows.Tree, windows.Faults) {}
    std::wstring FoldCase(std::wstring name) override {
        if (name == L"slow") {
            std::this_thread::sleep_for(std::chrono::milliseconds(50));
        }
        return FakeArchiveSystem::FoldCase(name);
    }
    std::unique_ptr<ExtractedFile> CreateNewFile(const std::wstring& path) override {
        for (int turns = 0; path.ends_with(L"waits") && !Released && turns < 1000; ++turns) {
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
        return FakeArchiveSystem::CreateNewFile(path);
    }
    std::atomic<bool> Released = false;
};

TEST_F(Extraction, ServesTheMessageLoopWhileItWorksAndNotForEveryEntry) {
    SlowSystem system(windows_);
    EmbeddedArchives archives(system, windows_.Clock);
    const std::wstring command = L"x -aoa C:\\slow.zip C:\\out";
    windows_.Tree.PutFile(L"C:\\slow.zip", BuildZip({{.Name = "slow", .Deflate = false}}));
    archives.Test(command);
    EXPECT_EQ(windows_.Clock.Yields, 3) << "two at the directory, one at the data";
    std::vector<ZipItem> items(1000, {.Content = "x"});
    for (std::size_t index = 0; index < items.size(); ++index) {
        items[index].Name = std::to_string(index);
    }
    items[0].Name = "slow";
    windows_.Tree.PutFile(L"C:\\slow.zip", BuildZip(items));
    archives.Test(command);
    EXPECT_LT(windows_.Clock.Yields, 500);

    // The writer waits for the message loop, which has its turn while the extractor waits for the writer.
    windows_.Clock.OnYield = [&] { system.Released = true; };
    windows_.Tree.PutFile(L"C:\\waits.zip", BuildZip({{.Name = "waits", .Content = "x"}}));
    EXPECT_EQ(archives.SevenZip(L"x -aoa C:\\waits.zip C:\\out", NoFaultLog::Instance()), 0);
    EXPECT_TRUE(system.Released);
}

TEST_F(Extraction, ManyEntriesThatOnlyZip64CanCount) {
    std::ostringstream zip;
    WriteZipOfEmptyFiles(zip, 66'000);
    EXPECT_EQ(Test(zip.str()), (ArchiveFacts{0, 66'000, false}));
}

}  // namespace
}  // namespace mip
