#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>
#include <string>
#include <vector>

#include "app/RunLog.h"
#include "platform/PlatformError.h"
#include "platform/archive/EmbeddedArchives.h"
#include "tests/native/archive/ArchiveComputer.h"
#include "tests/native/archive/HostileNames.h"
#include "tests/native/archive/ZipBuilder.h"
#include "tests/native/fakes/InMemoryWindows.h"

namespace mip {
namespace {

struct Hostile {
    std::string Label;
    std::string Zip;
};

ZipItem Good(const std::string& name = "good.txt") {
    return {.Name = name, .Content = "good content"};
}

std::vector<Hostile> HostileByName() {
    std::vector<Hostile> cases;
    for (const std::wstring& name : HostileNames()) {
        const std::string bytes = ToUtf8(name);
        cases.push_back({"name " + testing::PrintToString(bytes).substr(0, 60),
                         BuildZip({Good(), {.Name = bytes, .Content = "evil", .Flags = Utf8Names}})});
    }
    return cases;
}

std::vector<Hostile> HostileByRecord() {
    const auto unixType = [](std::uint32_t type) {
        return ZipItem{.Name = "e", .Content = "../..", .Host = UnixHost, .Attributes = (type | 0777U) << 16U};
    };
    const std::pair<const char*, ZipItem> records[] = {
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
    HostileArchive() { Renew(); }

    /// Beside the output folder lies all that a way out could reach first.
    void Renew() {
        archives_.reset();
        computer_.reset();
        computer_ = MakeArchiveComputer();
        computer_->Folders().Create(computer_->At(L"a"));
        computer_->Folders().Create(computer_->At(L"a\\b"));
        archives_ = std::make_unique<EmbeddedArchives>(computer_->System(), windows_.Clock);
    }
    std::int32_t Extract(const std::string& zip) {
        computer_->Put(computer_->At(L"manual.zip"), zip);
        return archives_->SevenZip(Command(), NoFaultLog::Instance());
    }
    void ExpectTestFails() { EXPECT_THROW(archives_->Test(Command()), PlatformError); }
    std::wstring Command() {
        return L"x -aoa -hide \"" + computer_->At(L"manual.zip") + L"\" \"" + computer_->At(L"a\\b\\out") + L"\\\"";
    }
    Tree AllButTheArchive() {
        Tree tree = computer_->TreeOf(computer_->At(L"a\\.."));
        tree.erase(L"manual.zip");
        return tree;
    }

    const Tree Before = {{L"a\\", ""}, {L"a\\b\\", ""}};
    InMemoryWindows windows_;  // for its clock
    std::unique_ptr<ArchiveComputer> computer_;
    std::unique_ptr<EmbeddedArchives> archives_;
};

TEST_F(HostileArchive, IsRefusedBeforeAnythingIsWritten) {
    std::vector<Hostile> cases = HostileByName();
    std::ranges::move(HostileByShape(), std::back_inserter(cases));
    for (const auto& [label, zip] : cases) {
        SCOPED_TRACE(label);
        EXPECT_NE(Extract(zip), 0);
        EXPECT_THROW(archives_->Inspect(Command()), PlatformError);
        ExpectTestFails();
        ASSERT_EQ(AllButTheArchive(), Before);
    }
    EXPECT_EQ(Extract(BuildZip({Good()}, {.Comment = "a comment"})), 0) << "what the shapes are made from";
}

/// Where only the data shows the fault, what came before it may be there, but no more than that.
TEST_F(HostileArchive, LeavesNothingOfAFaultyEntry) {
    for (const auto& [label, zip] : HostileByRecord()) {
        SCOPED_TRACE(label);
        EXPECT_NE(Extract(zip), 0);
        ExpectTestFails();
        Tree left = AllButTheArchive();
        left.erase(L"a\\b\\out\\");
        if (const auto good = left.extract(L"a\\b\\out\\good.txt")) {
            EXPECT_EQ(good.mapped(), "good content");
        }
        ASSERT_EQ(left, Before);
        Renew();
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
        SCOPED_TRACE(length);
        ASSERT_NE(Extract(whole.substr(0, length)), 0);
        ExpectTestFails();
    }
}

/// A changed byte is found, or was in something that says nothing about the files' content.
TEST_F(HostileArchive, ChangedAnywhereItFailsOrGivesTheSameFiles) {
    const std::string whole = SmallArchive();
    ASSERT_EQ(Extract(whole), 0);
    const Tree expected = AllButTheArchive();
    std::size_t refused = 0;
    for (std::size_t place = 0; place < whole.size(); place += Stride) {
        for (const unsigned change : {0x10U, 0xFFU}) {
            Renew();
            std::string changed = whole;
            changed[place] = static_cast<char>(static_cast<unsigned char>(changed[place]) ^ change);
            if (Extract(changed) == 0) {
                ASSERT_EQ(AllButTheArchive(), expected) << place << " " << change;
            } else {
                ++refused;
            }
        }
    }
    EXPECT_GT(refused, whole.size() / Stride);
}

TEST_F(HostileArchive, MoreThanTwoHundredThousandEntriesAreRefused) {
    std::ostringstream zip;
    WriteZipOfEmptyFiles(zip, 200'001);
    EXPECT_NE(Extract(zip.str()), 0);
    EXPECT_EQ(AllButTheArchive(), Before);
}

TEST(ArchiveFaults, TooLargeForTheVolumeIsRefusedBeforeAnyFileIsWritten) {
    InMemoryWindows windows;
    for (const auto& [bytes, result] : {std::pair<std::size_t, std::int32_t>{101, 2}, {100, 0}}) {
        windows.Archives.Put(L"C:\\a.zip", {{L"file", std::string(bytes, 'x')}});
        windows.Tree.DriveOf(L"C:")->FreeBytes = 100;
        EXPECT_EQ(windows.Archives.SevenZip(L"x -aoa C:\\a.zip C:\\out", NoFaultLog::Instance()), result);
        EXPECT_EQ(windows.Tree.HasFile(L"C:\\out\\file"), result == 0);
    }
}

TEST(ArchiveFaults, EveryFailingCallFailsTheExtraction) {
    const std::size_t calls = ForEveryFault(&Faults::FailCall, [](const auto& arm) {
        InMemoryWindows windows;
        windows.Tree.PutFile(L"C:\\a.zip", SmallArchive());
        arm(windows.Faults);
        RunLog log(windows.Platform);
        const std::int32_t result = windows.Archives.SevenZip(L"x -aoa C:\\a.zip C:\\out", log);
        EXPECT_EQ(result == 0, !windows.Faults.Hit()) << windows.Faults.HitOperation();
        EXPECT_EQ(result == 0, log.Text().find(L"extracting an archive") == std::wstring::npos);
        return windows.Faults.Hit();
    });
    EXPECT_GT(calls, 10u);
}

}  // namespace
}  // namespace mip
