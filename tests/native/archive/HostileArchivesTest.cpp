#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>
#include <string>
#include <tuple>
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

constexpr char Directory[] = "reading the archive's directory";
constexpr char Count[] = "counting the archive's entries";
constexpr char Name[] = "checking an entry's name";
constexpr char Record[] = "checking an entry's record";
constexpr char FolderRecord[] = "checking a folder's record";
constexpr char SameName[] = "telling the entries' names apart";
constexpr char NotThere[] = "finding an entry in the directory";
constexpr char Data[] = "reading the archive's data";

struct Hostile {
    std::string Label;
    std::string Zip;
    std::string Fault = Directory;  ///< what the test of the archive calls it
};

ZipItem Good(const std::string& name = "good.txt") {
    return {.Name = name, .Content = "good content"};
}

std::vector<Hostile> HostileByName() {
    std::vector<Hostile> cases;
    for (const std::wstring& name : HostileNames()) {
        const std::string bytes = ToUtf8(name);
        cases.push_back({"name " + testing::PrintToString(bytes).substr(0, 60),
                         BuildZip({Good(), {.Name = bytes, .Content = "evil", .Flags = Utf8Names}}),
                         name.starts_with(L'b') ? "checking the length of an entry's name" : Name});
    }
    return cases;
}

std::vector<Hostile> HostileByRecord() {
    const auto unixType = [](std::uint32_t type, std::uint8_t host = UnixHost) {
        return ZipItem{.Name = "e", .Content = "../..", .Host = host, .Attributes = (type | 0777U) << 16U};
    };
    const auto flagged = [](std::uint16_t flags, std::uint16_t localFlags) {
        return ZipItem{.Name = "e", .Content = "x", .Flags = flags, .LocalFlags = localFlags};
    };
    const std::string eight(8, '\xFF');
    const std::tuple<const char*, ZipItem, const char*> records[] = {
        {"symbolic link", unixType(0120000), Record},
        {"symbolic link of another Unix", unixType(0120000, 19), Record},
        {"device", unixType(0060000), Record},
        {"pipe", unixType(0010000), Record},
        {"reparse point", {.Name = "e", .Content = "x", .Attributes = 0x400}, Record},
        {"encrypted", flagged(1, 1), Record},
        {"encrypted strongly", flagged(1U << 6U, 0), Record},
        {"encrypted with its directory", flagged(1U << 13U, 0), Record},
        {"encrypted by what is in front of the data", flagged(0, 1), NotThere},
        {"unknown method", {.Name = "e", .Content = "x", .Deflate = false, .Method = 14}, Record},
        {"same name", Good(), SameName},
        {"same name but for case", Good("GOOD.TXT"), SameName},
        {"same name but for the separator at its end", {.Name = "good.txt/", .Deflate = false}, SameName},
        {"other name in front of the data", {.Name = "e", .Content = "x", .LocalName = "f"}, NotThere},
        {"another entry's name in front of the data", {.Name = "e", .Content = "x", .LocalName = "good.txt"}, NotThere},
        {"hostile name in front of the data", {.Name = "eeee", .Content = "x", .LocalName = "../e"}, Name},
        {"a folder with content", {.Name = "e/", .Content = "x"}, FolderRecord},
        {"a folder by its attributes", {.Name = "e", .Content = "x", .Attributes = 0x10}, FolderRecord},
        {"no UTF-8", {.Name = "\xFF\xFE", .Content = "x", .Flags = Utf8Names}, "decoding an entry's name"},
        {"declares more than it holds", {.Name = "e", .Content = "12345678", .Deflate = false, .Size = 9}, Record},
        {"declares less",
         {.Name = "e", .Content = std::string(5'000'000, 'b'), .Size = 10},
         "bounding an entry's size"},
        {"declares more than deflate can yield", {.Name = "e", .Content = "x", .Size = 4128}, Record},
        {"declares as much as deflate can yield", {.Name = "e", .Content = "x", .Size = 4127}, Data},
        {"packed data that reaches into the directory", {.Name = "e", .Content = "x", .PackedSize = 60}, Record},
        {"packed beyond all bounds", {.Name = "e", .Extra = ExtraField(1, eight), .PackedSize = UINT32_MAX}, Record},
        {"short",
         {.Name = "e", .Extra = ExtraField(1, eight), .Size = UINT32_MAX, .PackedSize = UINT32_MAX},
         Directory},
        {"ends within a field", {.Name = "e", .Content = "x", .Extra = std::string("\1\2\5\0", 4)}, Directory},
        {"wrong checksum", {.Name = "e", .Content = "x", .Crc = 1}, Data},
        {"data of another entry", {.Name = "e", .Content = "good content", .LocalOffset = 0}, "finding every entry"},
        {"data beyond the directory", {.Name = "e", .Content = "x", .LocalOffset = 0x7FFFFFFF}, Data},
    };
    std::vector<Hostile> cases;
    for (const auto& [label, item, fault] : records) {
        cases.push_back({label, BuildZip({Good(), item}), fault});
    }
    return cases;
}

std::vector<Hostile> HostileByShape() {
    const std::string inner = BuildZip({{.Name = "../evil", .Content = "evil"}});
    const std::string good = BuildZip({Good()});
    return {
        {"no archive", "This is a text file, not an archive, and it is longer than an end record."},
        {"empty file", ""},
        {"no entry", BuildZip({}), Count},
        {"no entry, with ZIP64", BuildZip({}, {.Zip64End = true}), Count},
        {"less than an end record", BuildZip({}).substr(0, 21)},
        {"bytes before the archive", BuildZip({Good()}, {.Before = "MZ a program"})},
        {"bytes after the archive", good + "x"},
        {"another archive in the comment", BuildZip({Good()}, {.Comment = inner})},
        {"a comment too long to look behind", BuildZip({Good()}, {.Comment = std::string(16'362, 'c')})},
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
    std::string Fault(const std::string& zip, ArchiveFacts (EmbeddedArchives::*look)(const std::wstring&)) {
        computer_->Put(computer_->At(L"manual.zip"), zip);
        try {
            ((*archives_).*look)(Command());
        } catch (const PlatformError& error) {
            return std::string(error.what()).substr(0, std::string_view(error.what()).find(" failed"));
        }
        return "";
    }
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
    for (const auto& [label, zip, fault] : cases) {
        SCOPED_TRACE(label);
        EXPECT_NE(Extract(zip), 0);
        EXPECT_EQ(Fault(zip, &EmbeddedArchives::Inspect), fault);
        EXPECT_EQ(Fault(zip, &EmbeddedArchives::Test), fault);
        ASSERT_EQ(AllButTheArchive(), Before);
    }
    EXPECT_EQ(Extract(BuildZip({Good()}, {.Comment = std::string(16'361, 'c')})), 0) << "what the shapes are made from";
}

/// Where only the data shows the fault, what came before it may be there, but no more than that.
TEST_F(HostileArchive, LeavesNothingOfAFaultyEntry) {
    for (const auto& [label, zip, fault] : HostileByRecord()) {
        SCOPED_TRACE(label);
        EXPECT_NE(Extract(zip), 0);
        EXPECT_EQ(Fault(zip, &EmbeddedArchives::Test), fault);
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
        EXPECT_NE(Fault(whole.substr(0, length), &EmbeddedArchives::Test), "");
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

/// Of each byte behind the data: '.' where another value makes no difference to what is written where.
TEST_F(HostileArchive, EachNumberOfTheDirectoryIsLookedAt) {
    const std::vector<ZipItem> items{{.Name = "a", .Content = "x", .Deflate = false}};
    const std::pair<ZipShape, std::string> cases[] = {
        {{}, "xxxx....x.xx........xxxxxxxxxxxxxx.............xxxxxxxxxxxxxxxxxxxxxx"},
        {{.Zip64End = true},
         "xxxxxxxxxxxx....xxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxx....xxxxxxxx....xxxx................xx"},
    };
    for (const auto& [shape, expected] : cases) {
        const std::string whole = BuildZip(items, shape);
        std::string looked;
        for (std::size_t place = whole.size() - expected.size(); place < whole.size(); ++place) {
            std::string changed = whole;
            changed[place] = static_cast<char>(changed[place] ^ 1);
            looked += Fault(changed, &EmbeddedArchives::Inspect).empty() ? '.' : 'x';
        }
        EXPECT_EQ(looked, expected);
    }
}

TEST_F(HostileArchive, MoreThanTwoHundredThousandEntriesAreRefused) {
    const std::tuple<std::size_t, bool, const char*> cases[] = {
        {200'000, true, ""}, {66'000, false, ""}, {200'001, true, Count}, {200'001, false, Record}};
    for (const auto& [entries, zip64End, fault] : cases) {
        std::ostringstream zip;
        WriteZipOfEmptyFiles(zip, entries, zip64End);
        EXPECT_EQ(Fault(zip.str(), &EmbeddedArchives::Inspect), fault) << entries << zip64End;
    }
}

TEST(ArchiveFaults, AreToldInTheLogWithTheArchiveAndTheEntry) {
    InMemoryWindows windows;
    windows.AccessControl.SystemMessages[errors::PathNotFound] = L"no such drive";
    windows.Tree.PutFile(L"C:\\a.zip", SmallArchive());
    windows.Tree.PutFile(L"C:\\evil.zip", BuildZip({Good("../evil")}));
    RunLog log(windows.Platform);
    EXPECT_EQ(windows.Archives.SevenZip(L"e C:\\a.zip C:\\out", log), 7);
    EXPECT_EQ(windows.Archives.SevenZip(L"x -aoa C:\\evil.zip C:\\out", log), 2);
    EXPECT_EQ(windows.Archives.SevenZip(L"x -aoa C:\\a.zip X:\\out", log), 2);
    EXPECT_EQ(ReplaceAll(log.Text(), L"2024-05-06 07:08:09\tstart-up\t\textracting an archive: ", L""),
              L"reading an extraction's command line failed with code 87 on e C:\\a.zip C:\\out\r\n"
              L"checking an entry's name failed with code 13 on C:\\evil.zip, ../evil\r\n"
              L"CreateFolder failed with code 3 on X:: no such drive\r\n");
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
