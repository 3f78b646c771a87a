#include "app/modFile.h"

#include <gtest/gtest.h>

#include "app/ManualPlace.h"
#include "catalogue/Statements.h"
#include "manualinfo/FileWithAccess.h"
#include "tests/native/fakes/Workshop.h"

namespace mip {
namespace {

using Texts = std::vector<std::pair<const wchar_t*, const wchar_t*>>;

TEST(FilePaths, LastComponentIsRemovedWhereverItOccurs) {
    for (const auto& [path, parent] : Texts{{L"D:\\programs\\setup", L"D:\\programs"},
                                            {L"D:\\x\\y\\x", L"D:\\y"},
                                            {L"D:\\x\\xy\\x", L"D:y"},
                                            {L"D:", L"D:"},
                                            {L"D:\\", L"D:"},
                                            {L"", L""}}) {
        EXPECT_EQ(GetParentFolder(path), parent);
    }
}

TEST(FilePaths, AreTrimmedJoinedQuotedAndJudged) {
    for (const auto& [path, trimmed] :
         Texts{{L"D:\\", L"D:"}, {L"D:\\abc\\", L"D:\\abc"}, {L"D:\\abc", L"D:\\abc"}, {L"D:x", L"D:"}, {L"", L""}}) {
        EXPECT_EQ(TrimFolderPath(path), trimmed);
    }
    EXPECT_EQ(JoinPath(L"D:\\", L"\\a"), L"D:\\a");
    EXPECT_EQ(JoinPath(L"", L"a"), L"\\a");
    EXPECT_EQ(LastComponent(L"D:\\a\\b.pdf"), L"b.pdf");
    for (const auto& [value, literal] : Texts{{L"O'Brien", L"'O''Brien'"}, {L"'", L"''''"}, {L"", L"''"}}) {
        EXPECT_EQ(QuoteSql(value), literal);
    }
    for (const wchar_t* path : {L"A:\\K1", L"Z:\\K1", L"a:\\K1", L"z:\\K1"}) {
        EXPECT_TRUE(IsPlainPath(path)) << path;
    }
    for (const wchar_t* path : {L"@:\\K1", L"[:\\K1", L"`:\\K1", L"{:\\K1"}) {
        EXPECT_FALSE(IsPlainPath(path)) << path;
    }
}

struct FileHelpers : testing::Test {
    FileHelpers() { shop.Tree.PutFile(L"D:\\new.txt", "new", attributes::ReadOnly); }

    std::size_t Sleeps() const { return shop.Clock.Sleeps.size(); }

    StartedWorkshop shop;
    Platform& platform = shop.Program().Platform;
    FileTree& tree = shop.Tree;
};

TEST_F(FileHelpers, ExistingFileIsReplacedAndWaitedForOnlyWhenItHasAttributes) {
    CopyFileReplacing(platform, L"D:\\new.txt", L"C:\\file.txt");
    EXPECT_EQ(tree.Find(L"C:\\file.txt")->Attributes & attributes::ReadOnly, 0u);
    for (const std::uint32_t bits : {0u, attributes::ReadOnly, attributes::Hidden | attributes::System, 0x800u}) {
        SCOPED_TRACE(bits);
        tree.PutFile(L"C:\\file.txt", "old").Attributes = bits;
        shop.Clock.Sleeps.clear();
        EXPECT_THROW(CopyFileReplacing(platform, L"D:\\gone.txt", L"C:\\file.txt"), PlatformError);
        EXPECT_EQ(tree.BytesOf(L"C:\\file.txt"), "old");
        EXPECT_EQ(Sleeps(), 0u);
        CopyFileReplacing(platform, L"D:\\new.txt", L"C:\\file.txt");
        EXPECT_EQ(tree.BytesOf(L"C:\\file.txt"), "new");
        EXPECT_EQ(Sleeps(), bits == 0 || bits == 0x800 ? 0u : 1u);
    }
}

TEST_F(FileHelpers, CopyWithAccessPausesAndGrantsAndAFailedGrantIsShown) {
    tree.PutFile(L"C:\\file.txt", "old", attributes::ReadOnly);
    const auto copy = [this] {
        CopyFileWithAccess(platform, shop.Program().Identity, L"D:\\new.txt", L"C:\\file.txt");
    };
    copy();
    EXPECT_EQ(tree.BytesOf(L"C:\\file.txt"), "new");
    EXPECT_EQ(Sleeps(), 4u);
    EXPECT_EQ(shop.Clock.Yields, 3);
    EXPECT_EQ(shop.AccessControl.ListOf(L"C:\\file.txt").size(), 1u);
    EXPECT_TRUE(shop.MessageBoxes.Shown.empty());
    shop.AccessControl.FailWith = [](const std::string& operation, const std::wstring&) {
        return operation == "SetList" ? errors::AccessDenied : 0;
    };
    copy();
    EXPECT_EQ(shop.MessageBoxes.Shown.back(),
              (ShownBox{L"Set Access Error = C:\\file.txt", 0, L"Manual Install Program"}));
}

TEST_F(FileHelpers, ForcedDeletionTakesReadOnlyFiles) {
    tree.PutFile(L"C:\\file.txt", "old", attributes::ReadOnly);
    DeleteFileForced(platform, L"C:\\file.txt");
    EXPECT_FALSE(tree.HasFile(L"C:\\file.txt"));
    EXPECT_NO_THROW(DeleteFileForced(platform, L"C:\\file.txt"));
    EXPECT_EQ(Sleeps(), 1u);
    for (const auto& [bits, sleeps] : {std::pair(attributes::Archive, 1u), std::pair(attributes::ReadOnly, 2u)}) {
        tree.PutFile(L"C:\\file.txt", "old", bits);
        DeleteFileAtOnce(platform, L"C:\\file.txt");
        EXPECT_FALSE(tree.HasFile(L"C:\\file.txt"));
        EXPECT_EQ(Sleeps(), sleeps) << bits;
    }
}

TEST_F(FileHelpers, ClearedFolderIsEmptyAndThere) {
    tree.PutFile(L"C:\\Temp\\UnZip\\deep\\page.html");
    EXPECT_TRUE(ClearFolder(platform, shop.Program().Paths, L"C:\\Temp\\UnZip"));
    EXPECT_EQ(tree.Snapshot(L"C:\\Temp").size(), 1u);
    EXPECT_TRUE(tree.HasFolder(L"C:\\Temp\\UnZip"));
    EXPECT_EQ(shop.Processes.StartedHidden.back(), shop.Program().Paths.RmDirBatPath + L" \"C:\\Temp\\UnZip\"");
}

TEST_F(FileHelpers, FoldersAreMadeOneLevelOrAll) {
    EXPECT_FALSE(MakeFolder(platform, L"C:\\a\\b"));
    MakeFolderPath(platform, L"C:\\a\\b\\c");
    EXPECT_TRUE(tree.HasFolder(L"C:\\a\\b\\c"));
    EXPECT_FALSE(MakeFolder(platform, L"C:\\a\\b"));
    EXPECT_NO_THROW(MakeFolderPath(platform, L"C:\\a\\b"));
    EXPECT_NO_THROW(MakeFolderPath(platform, L"C:\\"));
    tree.PutFile(L"C:\\file");
    EXPECT_THROW(MakeFolderPath(platform, L"C:\\file"), PlatformError);
    EXPECT_THROW(MakeFolderPath(platform, L"D:\\a\\b"), PlatformError);
    EXPECT_THROW(MakeFolderPath(platform, L"X:\\a\\b"), PlatformError);
    EXPECT_FALSE(IsEmptyFolder(platform, L"C:\\missing"));
    EXPECT_FALSE(RemoveFolder(platform, shop.Program().Paths, L"C:\\a\""));
    for (const wchar_t* trapped :
         {L"making a folder: ", L"looking whether a folder is empty: ", L"removing a folder: "}) {
        EXPECT_NE(shop.Program().Log.Text().find(trapped), std::wstring::npos) << trapped;
    }
}

TEST_F(FileHelpers, OutdatedAndWritable) {
    using std::chrono::seconds;
    FileNode& first = tree.PutFile(L"C:\\first");
    EXPECT_TRUE(IsFileOutdated(platform, L"C:\\first", L"C:\\second"));
    FileNode& second = tree.PutFile(L"C:\\second");
    for (const int later : {-1, 0, 1}) {
        second.Modified = first.Modified + seconds{later};
        EXPECT_EQ(IsFileOutdated(platform, L"C:\\first", L"C:\\second"), later > 0);
    }
    EXPECT_TRUE(IsFileWritable(platform, L"C:\\first"));
    first.Attributes = attributes::ReadOnly;
    EXPECT_FALSE(IsFileWritable(platform, L"C:\\first"));
    EXPECT_FALSE(IsFileWritable(platform, L"C:\\missing"));
    EXPECT_NE(shop.Program().Log.Text().find(L"asking whether a file is write-protected: "), std::wstring::npos);
}

}  // namespace
}  // namespace mip
