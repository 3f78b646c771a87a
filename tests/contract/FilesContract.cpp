#include <algorithm>
#include <chrono>
#include <map>
#include <stdexcept>

#include "tests/contract/ContractHost.h"

namespace mip {
namespace {

using FilesContract = ContractTest;
using FoldersContract = ContractTest;
using Names = std::vector<std::wstring>;

constexpr FileTime Earlier{std::chrono::sys_days{std::chrono::year{2019} / 3 / 14} + std::chrono::hours{15}};

/// Bytes that tell where they stand.
std::string Numbered(std::size_t size) {
    std::string bytes;
    std::generate_n(std::back_inserter(bytes), size,
                    [&] { return static_cast<char>(bytes.size() * 7 + bytes.size() / 251); });
    return bytes;
}

TEST_F(FilesContract, CopyToNewNeedsAFileAndLeavesAnExistingOneAlone) {
    files_.Write(At(L"new.txt"), "new");
    folders_.Create(At(L"folder"));
    EXPECT_EQ(errors::FileNotFound, CodeOf([&] { files_.CopyToNew(At(L"none.txt"), At(L"copy.txt")); }));
    EXPECT_EQ(errors::PathNotFound, CodeOf([&] { files_.CopyToNew(At(L"no\\none.txt"), At(L"copy.txt")); }));
    EXPECT_EQ(errors::PathNotFound, CodeOf([&] { files_.CopyToNew(At(L"new.txt"), At(L"no\\copy.txt")); }));
    EXPECT_NE(0u, CodeOf([&] { files_.CopyToNew(At(L"folder"), At(L"copy.txt")); }));
    EXPECT_EQ(Names{L"new.txt"}, folders_.List(host_->Scratch()).Files);

    files_.Write(At(L"old.txt"), "old");
    for (const std::uint32_t bits : {std::uint32_t{0}, std::uint32_t{attributes::ReadOnly}}) {
        files_.SetAttributes(At(L"old.txt"), bits);
        EXPECT_EQ(errors::FileExists, CodeOf([&] { files_.CopyToNew(At(L"new.txt"), At(L"OLD.TXT")); }));
        EXPECT_EQ("old", files_.Read(At(L"old.txt")));
        EXPECT_EQ(bits, files_.Status(At(L"old.txt")).Attributes & attributes::ReadOnly);
    }
}

TEST_F(FilesContract, CopiesCarryContentOfEverySizeTheTimeAndNoAttributes) {
    for (const wchar_t* const folder : {L"source", L"copy", L"single"}) {
        folders_.Create(At(folder));
    }
    std::map<std::wstring, std::string> contents;
    for (const std::size_t size : {0, 1, 65'536, 524'287, 524'288, 524'289, 1'300'000}) {
        contents[std::to_wstring(size)] = Numbered(size);
    }
    for (int i = 0; i < 200; ++i) {
        contents[L"small " + std::to_wstring(i)] = std::string(100, static_cast<char>(i));
    }
    Names names{L"none.txt", L"old.txt"};
    std::map<std::wstring, std::uint32_t> expected{{L"none.txt", errors::FileNotFound},
                                                   {L"old.txt", errors::FileExists}};
    for (const auto& [name, bytes] : contents) {
        const std::wstring source = At(L"source\\" + name);
        files_.Write(source, bytes);
        host_->SetModified(source, Earlier);
        files_.SetAttributes(source, attributes::ReadOnly | attributes::Hidden | attributes::System);
        files_.CopyToNew(source, At(L"single\\" + name));
        names.push_back(name);
        expected[name] = 0;
    }
    files_.Write(At(L"source\\old.txt"), "new");
    files_.Write(At(L"copy\\old.txt"), "kept");
    std::map<std::wstring, std::uint32_t> told;
    files_.CopyAllToNew(At(L"source"), names, At(L"copy"), [&](const std::wstring& name, std::uint32_t code) {
        EXPECT_TRUE(told.emplace(name, code).second);
    });

    EXPECT_EQ(told, expected);
    EXPECT_EQ(files_.Read(At(L"copy\\old.txt")), "kept");
    EXPECT_EQ(folders_.List(At(L"copy")).Files.size(), contents.size() + 1);
    for (const auto& [name, bytes] : contents) {
        for (const std::wstring& copy : {At(L"single\\" + name), At(L"copy\\" + name)}) {
            SCOPED_TRACE(testing::PrintToString(copy));
            EXPECT_TRUE(files_.Read(copy) == bytes);
            const FileStatus status = files_.Status(copy);
            EXPECT_EQ(status.Size, bytes.size());
            EXPECT_EQ(status.Attributes & ~attributes::Archive, 0u);
            EXPECT_LE(std::chrono::abs(status.Modified - Earlier), std::chrono::seconds{2});
        }
    }
}

TEST_F(FilesContract, CopyAllToNewStopsWhenItsCallerDoes) {
    folders_.Create(At(L"source"));
    folders_.Create(At(L"copy"));
    Names names;
    for (int i = 0; i < 300; ++i) {
        names.push_back(std::to_wstring(i));
        files_.Write(At(L"source\\" + names.back()), std::string(100'000, 'x'));
    }
    int told = 0;
    const auto stopAtTheFifth = [&](const std::wstring&, std::uint32_t) {
        if (++told == 5) {
            throw std::runtime_error("stopped");
        }
    };
    EXPECT_THROW(files_.CopyAllToNew(At(L"source"), names, At(L"copy"), stopAtTheFifth), std::runtime_error);
    EXPECT_EQ(told, 5);
    const Names copied = folders_.List(At(L"copy")).Files;
    EXPECT_LT(copied.size(), 100u);
    for (const std::wstring& name : copied) {
        EXPECT_EQ(files_.Status(At(L"copy\\" + name)).Size, 100'000u);
    }
}

TEST_F(FilesContract, MoveReplacesInOneStepOrChangesNothing) {
    files_.Write(At(L"new.txt"), "new");
    files_.Write(At(L"old.txt"), "old");
    folders_.Create(At(L"folder"));
    EXPECT_EQ(errors::FileNotFound, CodeOf([&] { files_.Move(At(L"none.txt"), At(L"old.txt")); }));
    EXPECT_NE(0u, CodeOf([&] { files_.Move(At(L"new.txt"), At(L"folder")); }));
    EXPECT_EQ(errors::PathNotFound, CodeOf([&] { files_.Move(At(L"new.txt"), At(L"no\\new.txt")); }));
    EXPECT_EQ("old", files_.Read(At(L"old.txt")));
    EXPECT_EQ("new", files_.Read(At(L"new.txt")));

    files_.Move(At(L"new.txt"), At(L"old.txt"));
    EXPECT_EQ("new", files_.Read(At(L"old.txt")));
    EXPECT_FALSE(files_.Exists(At(L"new.txt")));
    files_.Move(At(L"old.txt"), At(L"folder\\other.txt"));
    EXPECT_EQ("new", files_.Read(At(L"folder\\other.txt")));
}

TEST_F(FilesContract, AttributesAreToldAsTheyWereSetAndReadOnlyFilesStay) {
    const std::wstring file = At(L"file.txt");
    files_.Write(file, "12345");
    folders_.Create(At(L"folder"));
    const auto set = [&] { return files_.Status(file).Attributes & ~attributes::Archive; };

    files_.SetAttributes(file, attributes::ReadOnly | attributes::Hidden);
    EXPECT_EQ(attributes::ReadOnly | attributes::Hidden, set());
    EXPECT_EQ(errors::AccessDenied, CodeOf([&] { files_.Remove(file); }));
    EXPECT_EQ(errors::AccessDenied, CodeOf([&] { files_.Remove(At(L"folder")); }));
    EXPECT_EQ(5u, files_.Status(file).Size);
    files_.SetAttributes(file, attributes::Normal);
    EXPECT_EQ(0u, set());
    files_.Remove(file);
    EXPECT_FALSE(files_.Exists(file));
    EXPECT_EQ(errors::FileNotFound, CodeOf([&] { files_.Remove(file); }));
    EXPECT_EQ(errors::FileNotFound, CodeOf([&] { files_.Status(file); }));
    EXPECT_EQ(errors::FileNotFound, CodeOf([&] { files_.SetAttributes(file, 0); }));
    EXPECT_EQ(errors::PathNotFound, CodeOf([&] { files_.Remove(At(L"no\\none.txt")); }));
}

TEST_F(FilesContract, OnlyAFileThatIsOpenElsewhereIsInUse) {
    files_.Write(At(L"file.txt"), "text");
    files_.SetAttributes(At(L"file.txt"), attributes::ReadOnly);
    EXPECT_FALSE(files_.IsInUse(At(L"file.txt")) || files_.IsInUse(At(L"none.txt")));
    {
        const auto open = host_->OpenElsewhere(At(L"file.txt"));
        EXPECT_TRUE(files_.IsInUse(At(L"FILE.TXT")));
    }
    EXPECT_FALSE(files_.IsInUse(At(L"file.txt")));
    EXPECT_EQ("text", files_.Read(At(L"file.txt")));
}

TEST_F(FilesContract, ReadStopsAtTheLimitWriteReplacesAndAppendAdds) {
    files_.Append(At(L"log.txt"), "01234");
    files_.Append(At(L"log.txt"), "56789");
    for (const std::size_t limit : {0u, 4u, 10u, 11u}) {
        EXPECT_EQ(std::string("0123456789").substr(0, limit), files_.Read(At(L"log.txt"), limit));
    }
    files_.SetAttributes(At(L"log.txt"), attributes::Hidden);
    files_.Write(At(L"log.txt"), "x");
    EXPECT_EQ("x", files_.Read(At(L"log.txt")));
    EXPECT_EQ(errors::PathNotFound, CodeOf([&] { files_.Write(At(L"no\\log.txt"), "y"); }));
    EXPECT_EQ(errors::FileNotFound, CodeOf([&] { files_.Read(At(L"none.txt")); }));

    files_.Write(At(L"log.txt"), std::string(1'300'000, 'x'));
    files_.ReadThrough(At(L"log.txt"));
    EXPECT_EQ(errors::FileNotFound, CodeOf([&] { files_.ReadThrough(At(L"none.txt")); }));
    EXPECT_EQ(errors::AccessDenied, CodeOf([&] { files_.ReadThrough(host_->Scratch()); }));
}

TEST_F(FilesContract, NamesAreKeptAndCompareWithoutRegardToCase) {
    const std::wstring folder = At(L"サービスマニュアル　表（ソ）");
    folders_.Create(folder);
    EXPECT_EQ(Names{L"サービスマニュアル　表（ソ）"}, folders_.List(host_->Scratch()).Subfolders);
    for (const auto& [name, other] : {std::pair{L"\\Contents.HTML", L"\\cONTENTS.html"},
                                      {L"\\ÄÖÜ é.txt", L"\\äöü É.TXT"},
                                      {L"\\ＦＵＬＬ ｗｉｄｅ.txt", L"\\ｆｕｌｌ ＷＩＤＥ.TXT"},
                                      {L"\\Руководство.pdf", L"\\рУКОВОДСТВО.PDF"},
                                      {L"\\能力表示.html", L"\\能力表示.HTML"}}) {
        files_.Write(folder + name, "text");
        EXPECT_TRUE(files_.Exists(folder + other)) << testing::PrintToString(other);
    }
    files_.CopyToNew(folder + L"\\能力表示.html", folder + L"\\予定.html");
    EXPECT_EQ("text", files_.Read(folder + L"\\予定.html"));
    EXPECT_EQ(6u, folders_.List(folder).Files.size());
}

TEST_F(FilesContract, PathsMayBeLongerThan260Characters) {
    std::wstring folder = host_->Scratch();
    while (folder.size() < 330) {
        folder += L"\\" + std::wstring(40, L'長');
        folders_.Create(folder);
    }
    files_.Write(At(L"short.txt"), "text");
    files_.CopyToNew(At(L"short.txt"), folder + L"\\one.txt");
    files_.CopyToNew(folder + L"\\\\one.txt", folder + L"\\two.txt");
    files_.Move(folder + L"\\two.txt", folder + L"\\three.txt");
    files_.SetAttributes(folder + L"\\three.txt", attributes::ReadOnly);

    EXPECT_TRUE(folders_.Exists(folder) && files_.Exists(folder + L"\\one.txt"));
    EXPECT_EQ("text", files_.Read(folder + L"\\THREE.txt"));
    EXPECT_EQ(2u, folders_.List(folder).Files.size());
    files_.Remove(folder + L"\\one.txt");
    EXPECT_EQ(Names{L"three.txt"}, folders_.List(folder).Files);
}

TEST_F(FilesContract, OnlyAFileExistsAsAFile) {
    files_.Write(At(L"file.txt"), "");
    folders_.Create(At(L"folder"));
    for (const std::wstring& path :
         {At(L"folder"), At(L"folder\\"), At(L"folder\\.."), std::wstring(L"C:\\"), std::wstring(L"C:")}) {
        EXPECT_TRUE(folders_.Exists(path) && !files_.Exists(path)) << testing::PrintToString(path);
    }
    for (const std::wstring& path : {At(L"file.txt\\"), At(L"none"), At(L"*.txt"), At(L"file.txt\\x"), std::wstring(),
                                     std::wstring(L"Q:\\none\\none")}) {
        EXPECT_FALSE(folders_.Exists(path) || files_.Exists(path)) << testing::PrintToString(path);
    }
    EXPECT_TRUE(files_.Exists(At(L"file.txt")) && !folders_.Exists(At(L"file.txt")));
}

TEST_F(FoldersContract, CreateMakesOneLevelAndListTellsFilesFromFolders) {
    folders_.Create(At(L"a.folder"));
    EXPECT_EQ(errors::AlreadyExists, CodeOf([&] { folders_.Create(At(L"A.FOLDER")); }));
    EXPECT_EQ(errors::PathNotFound, CodeOf([&] { folders_.Create(At(L"two\\three")); }));
    folders_.Create(At(L"a.folder\\inner"));
    folders_.Create(At(L"z"));
    files_.Write(At(L"file.txt"), "");
    EXPECT_EQ(errors::AlreadyExists, CodeOf([&] { folders_.Create(At(L"file.txt")); }));
    files_.Write(At(L"no extension"), "");
    files_.SetAttributes(At(L"file.txt"), attributes::Hidden | attributes::System);

    FolderListing listing = folders_.List(host_->Scratch());
    std::ranges::sort(listing.Files);
    std::ranges::sort(listing.Subfolders);
    EXPECT_EQ((FolderListing{{L"a.folder", L"z"}, {L"file.txt", L"no extension"}, {}}), listing);
    EXPECT_EQ(Names{L"inner"}, folders_.List(At(L"a.folder\\")).Subfolders);
    EXPECT_EQ(FolderListing{}, folders_.List(At(L"z")));
    EXPECT_EQ(errors::PathNotFound, CodeOf([&] { folders_.List(At(L"none")); }));
    EXPECT_NE(0u, CodeOf([&] { folders_.List(At(L"file.txt")); }));
}

TEST_F(FilesContract, AFolderMovesWithAllThatItHoldsAndOnlyAnEmptyOneIsRemoved) {
    folders_.Create(At(L"from"));
    files_.Write(At(L"from\\page.html"), "page");
    folders_.Create(At(L"there"));
    EXPECT_NE(0u, CodeOf([&] { folders_.Move(At(L"from"), At(L"there")); }));
    EXPECT_EQ(errors::PathNotFound, CodeOf([&] { folders_.Move(At(L"from"), At(L"no\\to")); }));
    EXPECT_NE(0u, CodeOf([&] { folders_.Remove(At(L"from")); }));
    EXPECT_EQ("page", files_.Read(At(L"from\\page.html")));

    folders_.Move(At(L"from"), At(L"there\\to"));
    EXPECT_EQ("page", files_.Read(At(L"there\\to\\page.html")));
    EXPECT_FALSE(folders_.Exists(At(L"from")));
    files_.Remove(At(L"there\\to\\page.html"));
    folders_.Remove(At(L"there\\to"));
    EXPECT_FALSE(folders_.Exists(At(L"there\\to")));
    EXPECT_NE(0u, CodeOf([&] { folders_.Remove(At(L"there\\to")); }));
    EXPECT_TRUE(computer_.Volumes.IsOneVolume(At(L"there"), At(L"not\\yet")));
    EXPECT_FALSE(computer_.Volumes.IsOneVolume(At(L"there"), L"Q:\\there"));
}

TEST_F(FoldersContract, LinksStandApart) {
    folders_.Create(At(L"target"));
    files_.Write(At(L"target\\file.txt"), "text");
    folders_.Create(At(L"list"));
    host_->MakeLink(At(L"list\\link"), At(L"target"));

    EXPECT_EQ((FolderListing{{}, {}, {L"link"}}), folders_.List(At(L"list")));
    EXPECT_EQ((FolderListing{{}, {L"file.txt"}, {}}), folders_.List(At(L"list\\link")));
    EXPECT_TRUE(folders_.Exists(At(L"list\\link")));
    EXPECT_TRUE(folders_.IsLink(At(L"LIST\\link")) && folders_.IsLink(At(L"list\\link\\")));
    for (const std::wstring& other : {At(L"list"), At(L"target"), At(L"target\\file.txt"), At(L"none"), At(L"*"),
                                      At(L"list\\link\\file.txt"), std::wstring(L"C:\\"), std::wstring()}) {
        EXPECT_FALSE(folders_.IsLink(other)) << testing::PrintToString(other);
    }
}

TEST_F(FoldersContract, VolumesHaveANameRoomAndAFileSystemAndKeepWhatIsFlushed) {
    Volumes& volumes = computer_.Volumes;
    EXPECT_EQ(L"C:", volumes.DriveName(host_->Scratch()));
    EXPECT_GT(volumes.FreeBytes(L"C:\\"), 1'000'000.0);
    EXPECT_EQ(L"NTFS", volumes.FileSystemName(L"C:\\"));
    for (const wchar_t* const root : {L"Q:\\", L"", L"\\\\nowhere\\share\\"}) {
        EXPECT_NE(0u, CodeOf([&] { volumes.FreeBytes(root); })) << testing::PrintToString(root);
        EXPECT_NE(0u, CodeOf([&] { volumes.FileSystemName(root); })) << testing::PrintToString(root);
    }

    folders_.Create(At(L"manual"));
    folders_.Create(At(L"manual\\contents"));
    files_.Write(At(L"manual\\contents\\page.html"), "text");
    files_.SetAttributes(At(L"manual\\contents\\page.html"), attributes::ReadOnly);
    volumes.Flush(At(L"manual"));
    EXPECT_EQ("text", files_.Read(At(L"manual\\contents\\page.html")));
    EXPECT_EQ(errors::FileNotFound, CodeOf([&] { volumes.Flush(At(L"none")); }));
}

}  // namespace
}  // namespace mip
