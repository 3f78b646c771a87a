#include <algorithm>
#include <chrono>
#include <map>
#include <stdexcept>

#include "tests/contract/ContractHost.h"

namespace mip {
namespace {

using FilesContract = ContractTest;

constexpr FileTime Earlier{std::chrono::sys_days{std::chrono::year{2019} / 3 / 14} + std::chrono::hours{15}};

TEST_F(FilesContract, CopyToNewLeavesAnExistingFileAlone) {
    Files().Write(At(L"new.txt"), "new");
    Files().Write(At(L"old.txt"), "old");
    Files().Write(At(L"locked.txt"), "locked");
    Files().SetAttributes(At(L"locked.txt"), attributes::ReadOnly);

    EXPECT_EQ(errors::FileExists, CodeOf([&] { Files().CopyToNew(At(L"new.txt"), At(L"OLD.TXT")); }));
    EXPECT_EQ(errors::FileExists, CodeOf([&] { Files().CopyToNew(At(L"new.txt"), At(L"locked.txt")); }));
    EXPECT_EQ("old", Files().Read(At(L"old.txt")));
    EXPECT_EQ("locked", Files().Read(At(L"locked.txt")));
    EXPECT_EQ(std::uint32_t{attributes::ReadOnly}, Files().Status(At(L"locked.txt")).Attributes & attributes::ReadOnly);
}

TEST_F(FilesContract, CopyToNewCarriesContentOfEverySize) {
    for (const std::size_t size : {0u, 1u, 65'536u, 524'287u, 524'288u, 524'289u, 1'300'000u}) {
        SCOPED_TRACE(size);
        std::string bytes(size, '\0');
        for (std::size_t i = 0; i < size; ++i) {
            bytes[i] = static_cast<char>(i * 7 + i / 251);
        }
        const std::wstring name = At(std::to_wstring(size));
        Files().Write(name, bytes);
        Files().CopyToNew(name, name + L".copy");
        EXPECT_TRUE(bytes == Files().Read(name + L".copy"));
        EXPECT_EQ(size, Files().Status(name + L".copy").Size);
    }
}

TEST_F(FilesContract, CopyToNewCarriesTheTimeAndNoAttributes) {
    Files().Write(At(L"source.txt"), "text");
    host_->SetModified(At(L"source.txt"), Earlier);
    Files().SetAttributes(At(L"source.txt"), attributes::ReadOnly | attributes::Hidden | attributes::System);

    Files().CopyToNew(At(L"source.txt"), At(L"copy.txt"));

    const FileStatus copy = Files().Status(At(L"copy.txt"));
    EXPECT_EQ(0u, copy.Attributes & ~attributes::Archive);
    EXPECT_LE(std::chrono::abs(copy.Modified - Earlier), std::chrono::seconds{2});
    EXPECT_EQ("text", Files().Read(At(L"copy.txt")));
}

TEST_F(FilesContract, CopyAllToNewTellsOfEveryFile) {
    Folders().Create(At(L"source"));
    Folders().Create(At(L"copy"));
    std::map<std::wstring, std::uint32_t> expected{{L"none.txt", errors::FileNotFound},
                                                   {L"old.txt", errors::FileExists}};
    std::map<std::wstring, std::string> contents{{L"old.txt", "kept"}};
    for (const std::size_t size : {0u, 1u, 524'287u, 524'288u, 1'300'000u}) {
        contents[std::to_wstring(size)] = std::string(size, 'x');
    }
    for (int i = 0; i < 200; ++i) {
        contents[L"small " + std::to_wstring(i)] = std::string(100, static_cast<char>(i));
    }
    std::vector<std::wstring> names{L"none.txt"};
    for (const auto& [name, bytes] : contents) {
        Files().Write(At(L"source\\" + name), bytes);
        host_->SetModified(At(L"source\\" + name), Earlier);
        names.push_back(name);
        expected.try_emplace(name, 0);
    }
    Files().Write(At(L"source\\old.txt"), "new");
    Files().Write(At(L"copy\\old.txt"), "kept");
    host_->SetModified(At(L"copy\\old.txt"), Earlier);

    std::map<std::wstring, std::uint32_t> told;
    Files().CopyAllToNew(At(L"source"), names, At(L"copy"), [&](const std::wstring& name, std::uint32_t code) {
        EXPECT_TRUE(told.emplace(name, code).second);
    });

    EXPECT_EQ(told, expected);
    for (const auto& [name, bytes] : contents) {
        EXPECT_TRUE(Files().Read(At(L"copy\\" + name)) == bytes) << testing::PrintToString(name);
        EXPECT_LE(std::chrono::abs(Files().Status(At(L"copy\\" + name)).Modified - Earlier), std::chrono::seconds{2});
    }
    EXPECT_EQ(Folders().List(At(L"copy")).Files.size(), contents.size());
}

TEST_F(FilesContract, CopyAllToNewStopsWhenItsCallerDoes) {
    Folders().Create(At(L"source"));
    Folders().Create(At(L"copy"));
    std::vector<std::wstring> names;
    for (int i = 0; i < 300; ++i) {
        names.push_back(std::to_wstring(i));
        Files().Write(At(L"source\\" + names.back()), std::string(100'000, 'x'));
    }
    int told = 0;
    const auto stopAtTheFifth = [&](const std::wstring&, std::uint32_t) {
        if (++told == 5) {
            throw std::runtime_error("stopped");
        }
    };
    EXPECT_THROW(Files().CopyAllToNew(At(L"source"), names, At(L"copy"), stopAtTheFifth), std::runtime_error);
    EXPECT_EQ(told, 5);
    const auto copied = Folders().List(At(L"copy")).Files;
    EXPECT_LT(copied.size(), 100u);
    for (const std::wstring& name : copied) {
        EXPECT_EQ(Files().Status(At(L"copy\\" + name)).Size, 100'000u);
    }
}

TEST_F(FilesContract, CopyToNewThatCannotStartLeavesNothing) {
    Files().Write(At(L"source.txt"), "text");
    Folders().Create(At(L"folder"));

    EXPECT_EQ(errors::FileNotFound, CodeOf([&] { Files().CopyToNew(At(L"none.txt"), At(L"copy.txt")); }));
    EXPECT_EQ(errors::PathNotFound, CodeOf([&] { Files().CopyToNew(At(L"no\\none.txt"), At(L"copy.txt")); }));
    EXPECT_EQ(errors::PathNotFound, CodeOf([&] { Files().CopyToNew(At(L"source.txt"), At(L"no\\copy.txt")); }));
    EXPECT_NE(0u, CodeOf([&] { Files().CopyToNew(At(L"folder"), At(L"copy.txt")); }));
    EXPECT_EQ((std::vector<std::wstring>{L"source.txt"}), Folders().List(host_->Scratch()).Files);
}

TEST_F(FilesContract, MoveReplacesInOneStep) {
    Files().Write(At(L"new.txt"), "new");
    Files().Write(At(L"old.txt"), "old");

    Files().Move(At(L"new.txt"), At(L"old.txt"));
    EXPECT_EQ("new", Files().Read(At(L"old.txt")));
    EXPECT_FALSE(Files().Exists(At(L"new.txt")));

    Folders().Create(At(L"folder"));
    Files().Move(At(L"old.txt"), At(L"folder\\other.txt"));
    EXPECT_EQ("new", Files().Read(At(L"folder\\other.txt")));
}

TEST_F(FilesContract, MoveThatFailsChangesNothing) {
    Files().Write(At(L"new.txt"), "new");
    Files().Write(At(L"old.txt"), "old");
    Folders().Create(At(L"folder"));

    EXPECT_EQ(errors::FileNotFound, CodeOf([&] { Files().Move(At(L"none.txt"), At(L"old.txt")); }));
    EXPECT_NE(0u, CodeOf([&] { Files().Move(At(L"new.txt"), At(L"folder")); }));
    EXPECT_EQ(errors::PathNotFound, CodeOf([&] { Files().Move(At(L"new.txt"), At(L"no\\new.txt")); }));
    EXPECT_EQ("old", Files().Read(At(L"old.txt")));
    EXPECT_EQ("new", Files().Read(At(L"new.txt")));
}

TEST_F(FilesContract, ReadOnlyFilesAreNotWrittenOrReplaced) {
    if (!host_->IsStrict()) {
        GTEST_SKIP() << "this system lets read-only files be written";
    }
    Files().Write(At(L"new.txt"), "new");
    Files().Write(At(L"locked.txt"), "locked");
    Files().SetAttributes(At(L"locked.txt"), attributes::ReadOnly);

    EXPECT_EQ(errors::AccessDenied, CodeOf([&] { Files().Move(At(L"new.txt"), At(L"locked.txt")); }));
    EXPECT_EQ(errors::AccessDenied, CodeOf([&] { Files().Write(At(L"locked.txt"), "y"); }));
    EXPECT_EQ(errors::AccessDenied, CodeOf([&] { Files().Append(At(L"locked.txt"), "y"); }));
    EXPECT_EQ("locked", Files().Read(At(L"locked.txt")));
}

TEST_F(FilesContract, RemoveRefusesReadOnlyFiles) {
    Files().Write(At(L"file.txt"), "text");
    Files().SetAttributes(At(L"file.txt"), attributes::ReadOnly | attributes::Hidden);
    Folders().Create(At(L"folder"));

    EXPECT_EQ(errors::AccessDenied, CodeOf([&] { Files().Remove(At(L"file.txt")); }));
    EXPECT_EQ(errors::AccessDenied, CodeOf([&] { Files().Remove(At(L"folder")); }));
    EXPECT_EQ(errors::FileNotFound, CodeOf([&] { Files().Remove(At(L"none.txt")); }));
    EXPECT_EQ(errors::PathNotFound, CodeOf([&] { Files().Remove(At(L"no\\none.txt")); }));
    Files().SetAttributes(At(L"file.txt"), 0);
    Files().Remove(At(L"file.txt"));
    EXPECT_FALSE(Files().Exists(At(L"file.txt")));
}

TEST_F(FilesContract, OnlyAFileThatIsOpenElsewhereIsInUse) {
    Files().Write(At(L"file.txt"), "text");
    Files().SetAttributes(At(L"file.txt"), attributes::ReadOnly);
    EXPECT_FALSE(Files().IsInUse(At(L"file.txt")));
    EXPECT_FALSE(Files().IsInUse(At(L"none.txt")));
    {
        const auto open = host_->OpenElsewhere(At(L"file.txt"));
        EXPECT_TRUE(Files().IsInUse(At(L"FILE.TXT")));
    }
    EXPECT_FALSE(Files().IsInUse(At(L"file.txt")));
    EXPECT_EQ("text", Files().Read(At(L"file.txt")));
}

TEST_F(FilesContract, StatusTellsAttributesAsTheyWereSet) {
    Files().Write(At(L"file.txt"), "12345");
    const auto set = [&] { return Files().Status(At(L"file.txt")).Attributes & ~attributes::Archive; };

    Files().SetAttributes(At(L"file.txt"), attributes::ReadOnly | attributes::Hidden);
    EXPECT_EQ(attributes::ReadOnly | attributes::Hidden, set());
    Files().SetAttributes(At(L"file.txt"), attributes::Normal);
    EXPECT_EQ(0u, set());
    EXPECT_EQ(5u, Files().Status(At(L"file.txt")).Size);
    EXPECT_EQ(errors::FileNotFound, CodeOf([&] { Files().Status(At(L"none.txt")); }));
    EXPECT_EQ(errors::FileNotFound, CodeOf([&] { Files().SetAttributes(At(L"none.txt"), 0); }));
}

TEST_F(FilesContract, ReadStopsAtTheLimit) {
    Files().Write(At(L"file.txt"), "0123456789");

    EXPECT_EQ("0123", Files().Read(At(L"file.txt"), 4));
    EXPECT_EQ("0123456789", Files().Read(At(L"file.txt"), 10));
    EXPECT_EQ("0123456789", Files().Read(At(L"file.txt"), 11));
    EXPECT_EQ("", Files().Read(At(L"file.txt"), 0));
    EXPECT_EQ(errors::FileNotFound, CodeOf([&] { Files().Read(At(L"none.txt")); }));
}

TEST_F(FilesContract, WriteReplacesAndAppendAdds) {
    Files().Append(At(L"log.txt"), "one,");
    Files().Append(At(L"log.txt"), "two");
    EXPECT_EQ("one,two", Files().Read(At(L"log.txt")));

    Files().SetAttributes(At(L"log.txt"), attributes::Hidden);
    Files().Write(At(L"log.txt"), "x");
    EXPECT_EQ("x", Files().Read(At(L"log.txt")));

    EXPECT_EQ(errors::PathNotFound, CodeOf([&] { Files().Write(At(L"no\\log.txt"), "y"); }));
    EXPECT_EQ("x", Files().Read(At(L"log.txt")));
}

TEST_F(FilesContract, NamesCompareWithoutRegardToCase) {
    for (const wchar_t* const name : {L"Contents.HTML", L"ÄÖÜ é.txt", L"ＦＵＬＬ ｗｉｄｅ.txt", L"Руководство.pdf"}) {
        Files().Write(At(name), "text");
    }
    for (const wchar_t* const other : {L"cONTENTS.html", L"äöü É.TXT", L"ｆｕｌｌ ＷＩＤＥ.TXT", L"рУКОВОДСТВО.PDF"}) {
        EXPECT_TRUE(Files().Exists(At(other)));
    }
    EXPECT_EQ(4u, Folders().List(host_->Scratch()).Files.size());
}

TEST_F(FilesContract, JapaneseNamesAreKept) {
    const std::wstring folder = At(L"サービスマニュアル　表（ソ）");
    Folders().Create(folder);
    Files().Write(folder + L"\\能力表示.html", "text");
    Files().CopyToNew(folder + L"\\能力表示.html", folder + L"\\予定.html");

    EXPECT_EQ("text", Files().Read(folder + L"\\予定.html"));
    EXPECT_EQ((std::vector<std::wstring>{L"サービスマニュアル　表（ソ）"}),
              Folders().List(host_->Scratch()).Subfolders);
}

TEST_F(FilesContract, PathsMayBeLongerThan260Characters) {
    std::wstring folder = host_->Scratch();
    while (folder.size() < 330) {
        folder += L"\\" + std::wstring(40, L'長');
        Folders().Create(folder);
    }
    Files().Write(At(L"short.txt"), "text");
    Files().CopyToNew(At(L"short.txt"), folder + L"\\one.txt");
    Files().CopyToNew(folder + L"\\\\one.txt", folder + L"\\two.txt");
    Files().Move(folder + L"\\two.txt", folder + L"\\three.txt");
    Files().SetAttributes(folder + L"\\three.txt", attributes::ReadOnly);

    EXPECT_TRUE(Folders().Exists(folder));
    EXPECT_TRUE(Files().Exists(folder + L"\\one.txt"));
    EXPECT_EQ("text", Files().Read(folder + L"\\THREE.txt"));
    EXPECT_EQ(2u, Folders().List(folder).Files.size());
    Files().Remove(folder + L"\\one.txt");
    EXPECT_EQ((std::vector<std::wstring>{L"three.txt"}), Folders().List(folder).Files);
}

TEST_F(FilesContract, OnlyAFileExistsAsAFile) {
    Files().Write(At(L"file.txt"), "");
    Folders().Create(At(L"folder"));
    const struct {
        std::wstring Path;
        bool IsFile;
        bool IsFolder;
    } cases[] = {
        {At(L"file.txt"), true, false},
        {At(L"file.txt\\"), false, false},
        {At(L"folder"), false, true},
        {At(L"folder\\"), false, true},
        {At(L"folder\\.."), false, true},
        {At(L"none"), false, false},
        {At(L"*.txt"), false, false},
        {At(L"file.txt\\x"), false, false},
        {L"", false, false},
        {L"Q:\\none\\none", false, false},
        {L"C:\\", false, true},
        {L"C:", false, true},
    };
    for (const auto& [path, isFile, isFolder] : cases) {
        EXPECT_EQ(isFile, Files().Exists(path)) << testing::PrintToString(path);
        EXPECT_EQ(isFolder, Folders().Exists(path)) << testing::PrintToString(path);
    }
}

using FoldersContract = ContractTest;

TEST_F(FoldersContract, CreateMakesOneLevel) {
    Files().Write(At(L"file.txt"), "");
    Folders().Create(At(L"one"));

    EXPECT_EQ(errors::AlreadyExists, CodeOf([&] { Folders().Create(At(L"ONE")); }));
    EXPECT_EQ(errors::AlreadyExists, CodeOf([&] { Folders().Create(At(L"file.txt")); }));
    EXPECT_EQ(errors::PathNotFound, CodeOf([&] { Folders().Create(At(L"two\\three")); }));
    EXPECT_FALSE(Folders().Exists(At(L"two")));
}

TEST_F(FoldersContract, ListTellsFilesFromFolders) {
    Folders().Create(At(L"a.folder"));
    Folders().Create(At(L"a.folder\\inner"));
    Folders().Create(At(L"z"));
    Files().Write(At(L"file.txt"), "");
    Files().Write(At(L"no extension"), "");
    Files().SetAttributes(At(L"file.txt"), attributes::Hidden | attributes::System);

    FolderListing listing = Folders().List(host_->Scratch());
    std::sort(listing.Files.begin(), listing.Files.end());
    std::sort(listing.Subfolders.begin(), listing.Subfolders.end());
    EXPECT_EQ((std::vector<std::wstring>{L"file.txt", L"no extension"}), listing.Files);
    EXPECT_EQ((std::vector<std::wstring>{L"a.folder", L"z"}), listing.Subfolders);
    EXPECT_EQ((std::vector<std::wstring>{L"inner"}), Folders().List(At(L"a.folder\\")).Subfolders);

    const FolderListing empty = Folders().List(At(L"z"));
    EXPECT_TRUE(empty.Files.empty() && empty.Subfolders.empty());
    EXPECT_EQ(errors::PathNotFound, CodeOf([&] { Folders().List(At(L"none")); }));
    EXPECT_NE(0u, CodeOf([&] { Folders().List(At(L"file.txt")); }));
}

TEST_F(FoldersContract, LinksStandApart) {
    Folders().Create(At(L"target"));
    Files().Write(At(L"target\\file.txt"), "text");
    Folders().Create(At(L"list"));
    ASSERT_TRUE(host_->MakeLink(At(L"list\\link"), At(L"target")));

    EXPECT_EQ((FolderListing{{}, {}, {L"link"}}), Folders().List(At(L"list")));
    EXPECT_EQ((FolderListing{{}, {L"file.txt"}, {}}), Folders().List(At(L"list\\link")));
    EXPECT_TRUE(Folders().Exists(At(L"list\\link")));
    EXPECT_TRUE(Folders().IsLink(At(L"LIST\\link")) && Folders().IsLink(At(L"list\\link\\")));
    for (const wchar_t* const other :
         {L"list", L"target", L"target\\file.txt", L"none", L"list\\link\\file.txt", L"*"}) {
        EXPECT_FALSE(Folders().IsLink(At(other))) << testing::PrintToString(other);
    }
    EXPECT_FALSE(Folders().IsLink(L"C:\\") || Folders().IsLink(L""));
}

TEST_F(FilesContract, ReadThroughNeedsEveryByte) {
    Files().Write(At(L"file.txt"), std::string(1'300'000, 'x'));
    Folders().Create(At(L"folder"));

    Files().ReadThrough(At(L"file.txt"));
    EXPECT_EQ(errors::FileNotFound, CodeOf([&] { Files().ReadThrough(At(L"none.txt")); }));
    EXPECT_EQ(errors::AccessDenied, CodeOf([&] { Files().ReadThrough(At(L"folder")); }));
}

}  // namespace
}  // namespace mip
