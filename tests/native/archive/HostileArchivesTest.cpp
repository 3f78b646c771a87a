#include <gtest/gtest.h>

#include <atomic>
#include <fstream>
#include <string>
#include <vector>

#include "platform/PlatformError.h"
#include "platform/archive/EmbeddedArchives.h"
#include "tests/native/archive/HostileNames.h"
#include "tests/native/archive/TestSystem.h"
#include "tests/native/archive/ZipBuilder.h"

namespace mip {
namespace {

namespace fs = std::filesystem;

struct Hostile {
    std::string Label;
    std::string Zip;
};

ZipItem Good(const std::string& name = "good.txt") {
    return {.Name = name, .Content = "good content"};
}

std::string Utf8(const std::wstring& text) {
    const std::u8string bytes = std::filesystem::path(std::u32string(text.begin(), text.end())).u8string();
    return {bytes.begin(), bytes.end()};
}

std::vector<Hostile> HostileByName() {
    std::vector<Hostile> cases;
    for (const std::wstring& name : HostileNames()) {
        const std::string bytes = Utf8(name);
        cases.push_back({"name " + testing::PrintToString(bytes).substr(0, 60),
                         BuildZip({Good(), {.Name = bytes, .Content = "evil", .Flags = Utf8Names}})});
    }
    return cases;
}

std::vector<Hostile> HostileByRecord() {
    const auto unixType = [](std::uint32_t type) {
        return ZipItem{.Name = "e", .Content = "../..", .Host = UnixHost, .Attributes = (type | 0777U) << 16U};
    };
    const std::vector<std::pair<std::string, ZipItem>> records = {
        {"symbolic link", unixType(0120000)},
        {"device", unixType(0060000)},
        {"pipe", unixType(0010000)},
        {"reparse point", {.Name = "e", .Content = "x", .Attributes = 0x400}},
        {"encrypted", {.Name = "e", .Content = "twelve bytes of encryption header", .Deflate = false, .Flags = 1}},
        {"unknown method", {.Name = "e", .Content = "x", .Deflate = false, .Method = 14}},
        {"same name", Good()},
        {"same name but for case", Good("GOOD.TXT")},
        {"same name but for the separator at its end", {.Name = "good.txt/", .Deflate = false}},
        {"other name in front of the data", {.Name = "e", .Content = "x", .LocalName = "f"}},
        {"hostile name in front of the data", {.Name = "eeee", .Content = "x", .LocalName = "../e"}},
        {"a folder with content", {.Name = "e/", .Content = "x"}},
        {"a file that only its attributes call a folder", {.Name = "e", .Content = "x", .Attributes = 0x10}},
        {"bytes that are no UTF-8", {.Name = "\xFF\xFE", .Content = "x", .Flags = Utf8Names}},
        {"declares more than it holds", {.Name = "e", .Content = "12345678", .Deflate = false, .Size = 9}},
        {"declares less than it holds", {.Name = "e", .Content = std::string(5'000'000, 'b'), .Size = 10}},
        {"declares more than deflate can yield", {.Name = "e", .Content = "x", .Size = 1'000'000}},
        {"wrong checksum", {.Name = "e", .Content = "x", .Crc = 1}},
        {"data of another entry", {.Name = "e", .Content = "good content", .LocalOffset = 0}},
        {"data beyond the directory", {.Name = "e", .Content = "x", .LocalOffset = 0x7FFFFFFF}},
    };
    std::vector<Hostile> cases;
    for (const auto& [label, item] : records) {
        cases.push_back({label, BuildZip({Good(), item})});
    }
    return cases;
}

std::vector<Hostile> HostileByShape() {
    const std::string inner = BuildZip({{.Name = "../evil", .Content = "evil"}});
    const std::string good = BuildZip({Good()});
    return {
        {"no archive", "This is a text file, not an archive, and it is longer than an end record."},
        {"empty file", ""},
        {"bytes before the archive", BuildZip({Good()}, {.Before = "MZ a program"})},
        {"bytes after the archive", good + "x"},
        {"another archive in the comment", BuildZip({Good()}, {.Comment = inner})},
        {"part of several volumes", BuildZip({Good()}, {.Volume = 1})},
        {"fewer entries than declared", BuildZip({Good()}, {.Records = 2})},
        {"more entries than declared", BuildZip({Good(), Good("b")}, {.Zip64End = true, .Records = 1})},
    };
}

class HostileArchive : public testing::Test {
  protected:
    /// Beside the output folder lies all that a way out could reach first.
    HostileArchive() : System(MakeTestSystem()), Archives_(*System, Clock_) {
        fs::create_directories(Folder.Path() / "a" / "b");
        Archive = Folder.Below(L"manual.zip");
    }

    std::int32_t Extract(const std::string& zip, EmbeddedArchives* archives = nullptr) {
        Folder.Write(L"manual.zip", zip);
        return Extract(archives);
    }
    std::int32_t Extract(EmbeddedArchives* archives = nullptr) {
        return (archives ? *archives : Archives_).SevenZip(Command(), NoFaultLog::Instance());
    }
    std::wstring Command() const {
        return L"x -aoa -hide \"" + Archive + L"\" \"" + Folder.Below(L"a\\b\\out") + L"\\\"";
    }
    Tree AllButTheArchive() const {
        Tree tree = TreeOf(Folder.Path());
        tree.erase(L"manual.zip");
        return tree;
    }

    const Tree Before = {{L"a\\", ""}, {L"a\\b\\", ""}};
    ScratchFolder Folder;
    CountingClock Clock_;
    std::unique_ptr<ArchiveSystem> System;
    EmbeddedArchives Archives_;
    std::wstring Archive;
};

TEST_F(HostileArchive, IsRefusedBeforeAnythingIsWritten) {
    std::vector<Hostile> cases = HostileByName();
    std::ranges::move(HostileByShape(), std::back_inserter(cases));
    for (const auto& [label, zip] : cases) {
        SCOPED_TRACE(label);
        EXPECT_NE(Extract(zip), 0);
        EXPECT_THROW(Archives_.Inspect(Command()), PlatformError);
        EXPECT_THROW(Archives_.Test(Command()), PlatformError);
        ASSERT_EQ(AllButTheArchive(), Before);
    }
}

/// Where only the data shows the fault, what came before it may be there, but no more than that.
TEST_F(HostileArchive, LeavesNothingOfAFaultyEntry) {
    for (const auto& [label, zip] : HostileByRecord()) {
        SCOPED_TRACE(label);
        EXPECT_NE(Extract(zip), 0);
        EXPECT_THROW(Archives_.Test(Command()), PlatformError);
        Tree left = AllButTheArchive();
        left.erase(L"a\\b\\out\\");
        if (left.contains(L"a\\b\\out\\good.txt")) {
            EXPECT_EQ(left[L"a\\b\\out\\good.txt"], "good content");
            left.erase(L"a\\b\\out\\good.txt");
        }
        ASSERT_EQ(left, Before);
        fs::remove_all(Folder.Path() / "a" / "b" / "out");
    }
}

std::string SmallArchive() {
    return BuildZip({{.Name = "m/", .Deflate = false},
                     {.Name = "m/deflated", .Content = std::string(200, 'd') + "end"},
                     {.Name = "m/stored", .Content = "stored", .Deflate = false},
                     {.Name = "m/follow", .Content = "follow", .SizesFollowData = true}},
                    {.Comment = "comment"});
}

TEST_F(HostileArchive, TruncatedAnywhereItFails) {
    const std::string whole = SmallArchive();
    ASSERT_EQ(Extract(whole), 0);
    for (std::size_t length = 0; length < whole.size(); ++length) {
        ASSERT_NE(Extract(whole.substr(0, length)), 0) << length;
        ASSERT_THROW(Archives_.Test(Command()), PlatformError) << length;
    }
}

/// A changed byte is found, or was in something that says nothing about the files' content.
TEST_F(HostileArchive, ChangedAnywhereItFailsOrGivesTheSameFiles) {
    const std::string whole = SmallArchive();
    ASSERT_EQ(Extract(whole), 0);
    const Tree expected = TreeOf(Folder.Path() / "a");
    int refused = 0;
    for (std::size_t place = 0; place < whole.size(); ++place) {
        for (const unsigned change : {0x10U, 0xFFU}) {
            fs::remove_all(Folder.Path() / "a" / "b" / "out");
            std::string changed = whole;
            changed[place] = static_cast<char>(static_cast<unsigned char>(changed[place]) ^ change);
            if (Extract(changed) == 0) {
                ASSERT_EQ(TreeOf(Folder.Path() / "a"), expected) << place << " " << change;
            } else {
                ++refused;
            }
        }
    }
    EXPECT_GT(refused, static_cast<int>(whole.size()));
}

TEST_F(HostileArchive, AMillionEntriesAreRefused) {
    {
        std::ofstream zip(Folder.Path() / "manual.zip", std::ios::binary);
        WriteZipOfEmptyFiles(zip, 1'000'000);
    }
    EXPECT_NE(Extract(), 0);
    EXPECT_EQ(AllButTheArchive(), Before);
}

/// Hands everything on; the n-th call fails, and the volume is as full as the test wants.
class FaultySystem : public ArchiveSystem {
  public:
    explicit FaultySystem(ArchiveSystem& system) : system_(system) {}

    int FailAt = 0;
    std::atomic<int> Calls = 0;  // files are written on several threads
    std::uint64_t Free = UINT64_MAX;

    void Count() {
        if (++Calls == FailAt) {
            throw PlatformError("test", L"", errors::DiskFull);
        }
    }
    std::unique_ptr<ArchiveBytes> OpenArchive(const std::wstring& path) override {
        Count();
        return std::make_unique<Bytes>(*this, system_.OpenArchive(path));
    }
    void CreateFolder(const std::wstring& folder) override {
        Count();
        system_.CreateFolder(folder);
    }
    std::unique_ptr<ExtractedFile> CreateNewFile(const std::wstring& path) override {
        Count();
        return std::make_unique<File>(*this, system_.CreateNewFile(path));
    }
    std::uint64_t FreeBytes(const std::wstring&) override {
        Count();
        return Free;
    }
    unsigned NameCodePage() override { return system_.NameCodePage(); }
    std::optional<std::wstring> Decode(std::string_view bytes, unsigned codePage) override {
        return system_.Decode(bytes, codePage);
    }
    std::wstring FoldCase(std::wstring name) override { return system_.FoldCase(std::move(name)); }

  private:
    struct Bytes : ArchiveBytes {
        Bytes(FaultySystem& owner, std::unique_ptr<ArchiveBytes> inner) : Owner(owner), Inner(std::move(inner)) {}
        std::uint64_t Size() override { return Inner->Size(); }
        std::size_t ReadAt(std::uint64_t offset, std::span<char> buffer) override {
            Owner.Count();
            return Inner->ReadAt(offset, buffer);
        }
        FaultySystem& Owner;
        std::unique_ptr<ArchiveBytes> Inner;
    };
    struct File : ExtractedFile {
        File(FaultySystem& owner, std::unique_ptr<ExtractedFile> inner) : Owner(owner), Inner(std::move(inner)) {}
        void Write(std::span<const char> bytes) override {
            Owner.Count();
            Inner->Write(bytes);
        }
        void Finish(const std::optional<FileTime>& modified) override {
            Owner.Count();
            Inner->Finish(modified);
        }
        FaultySystem& Owner;
        std::unique_ptr<ExtractedFile> Inner;
    };

    ArchiveSystem& system_;
};

TEST_F(HostileArchive, TooLargeForTheVolumeIsRefusedBeforeAnyFileIsWritten) {
    FaultySystem full(*System);
    full.Free = 100;
    EmbeddedArchives archives(full, Clock_);
    EXPECT_NE(Extract(BuildZip({{.Name = "large", .Content = std::string(101, 'x')}}), &archives), 0);
    EXPECT_TRUE(TreeOf(Folder.Path() / "a" / "b" / "out").empty());
    EXPECT_EQ(Extract(BuildZip({{.Name = "fits", .Content = std::string(100, 'x')}}), &archives), 0);
}

TEST_F(HostileArchive, EveryFailingCallFailsTheExtraction) {
    FaultySystem faulty(*System);
    EmbeddedArchives archives(faulty, Clock_);
    const std::string zip = SmallArchive();
    for (faulty.FailAt = 1;; ++faulty.FailAt) {
        fs::remove_all(Folder.Path() / "a" / "b" / "out");
        faulty.Calls = 0;
        const std::int32_t result = Extract(zip, &archives);
        if (faulty.Calls < faulty.FailAt) {
            EXPECT_EQ(result, 0);
            break;
        }
        ASSERT_NE(result, 0) << faulty.FailAt;
    }
    EXPECT_GT(faulty.FailAt, 10);
}

}  // namespace
}  // namespace mip
