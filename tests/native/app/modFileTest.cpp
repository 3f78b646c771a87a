#include "app/modFile.h"

#include <gtest/gtest.h>

#include <tuple>

#include "app/ManualPlace.h"
#include "app/modLanguage.h"
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

TEST(FilePaths, AreTrimmedJoinedAndQuoted) {
    for (const auto& [path, trimmed] :
         Texts{{L"D:\\", L"D:"}, {L"D:\\abc\\", L"D:\\abc"}, {L"D:\\abc", L"D:\\abc"}, {L"D:x", L"D:"}, {L"", L""}}) {
        EXPECT_EQ(TrimFolderPath(path), trimmed);
    }
    EXPECT_EQ(TrimFolderPath(L"D") + TrimFolderPath(L":x"), L"D:");
    EXPECT_EQ(JoinPath(L"D:\\", L"\\a"), L"D:\\a");
    EXPECT_EQ(JoinPath(L"", L"a"), L"\\a");
    EXPECT_EQ(LastComponent(L"D:\\a\\b.pdf"), L"b.pdf");
    for (const auto& [value, literal] : Texts{{L"O'Brien", L"'O''Brien'"}, {L"'", L"''''"}, {L"", L"''"}}) {
        EXPECT_EQ(QuoteSql(value), literal);
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
    EXPECT_EQ(shop.Clock.Sleeps, std::vector(1, std::chrono::milliseconds{1000}));
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
    EXPECT_TRUE(ClearFolder(platform, shop.Program().Paths, L"C:\\Temp\\UnZip")) << "empty already";
    EXPECT_EQ(tree.Snapshot(L"C:\\Temp").size(), 1u);
    EXPECT_TRUE(tree.HasFolder(L"C:\\Temp\\UnZip"));
    tree.PutFile(L"C:\\full\\page.html");
    for (const wchar_t* folder : {L"C:\\missing", L"C:\\Temp\\UnZip", L"C:\\full"}) {
        EXPECT_TRUE(RemoveFolder(platform, shop.Program().Paths, folder));
        EXPECT_FALSE(tree.HasFolder(folder));
    }
    const std::wstring& batch = shop.Program().Paths.RmDirBatPath;
    EXPECT_EQ(shop.Processes.StartedHidden, (std::vector{batch + L" \"C:\\Temp\\UnZip\"", batch + L" \"C:\\full\""}));
    EXPECT_EQ(shop.Program().Log.Text(), L"");
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
    shop.Faults.FailFrom(1);
    EXPECT_EQ(GetLoginUserName(platform), L"");
    EXPECT_EQ(GetLanguageCode(platform), L"09");
    EXPECT_EQ(ReplaceAll(shop.Program().Log.Text(), L"2024-05-06 07:08:09\tstart-up\t\t", L""),
              L"making a folder: Create failed with code 3 on C:\\a\\b\r\n"
              L"making a folder: Create failed with code 183 on C:\\a\\b\r\n"
              L"looking whether a folder is empty: List failed with code 3 on C:\\missing\r\n"
              L"removing a folder: a quote ends the batch file's argument: C:\\a\"\r\n"
              L"asking for the user's name: Computer.UserName failed with code 5\r\n"
              L"asking for the user's language: Computer.LanguageIdentifier failed with code 5\r\n");
}

TEST_F(FileHelpers, OnlyAManualsFolderIsTouched) {
    shop.Shell.SpecialFolders = {{0x24, L"F:\\Win\\"}, {0x26, L"F:\\P\\a"}, {0x23, L"F:\\D\\a"}, {0x28, L"F:\\U\\a"}};
    tree.PutLink(L"C:\\Link", L"C:\\Vantor");
    tree.PutFile(L"C:\\Precious\\data.txt");
    tree.PutFolder(L"C:\\Manual\\contents");
    tree.PutFolder(L"C:\\Made");
    shop.Program().Installation.MadeFolders = {L"c:\\MADE"};
    constexpr wchar_t noPath[] = L"not the path of a folder below a drive";
    constexpr wchar_t system[] = L"within the system's folder";
    constexpr wchar_t home[] = L"holds folders of the system or of programs";
    using Paths = std::vector<std::wstring>;
    const std::tuple<bool, const wchar_t*, Paths> cases[] = {
        {false, noPath, {L"", L"\\", L"\\Lib", L"Lib\\M", L"C", L"@:\\K", L"[:\\K", L"`:\\K", L"{:\\K", L"C:\\\\K"}},
        {false,
         noPath,
         {L"C:\\a.", L"C:\\a ", L"C:\\?a", L"C:\\a/b", L"\\\\server", L"\\\\server\\\\K", L"\\\\\\share\\K"}},
        {false, noPath, {L"\\\\s.\\share\\K", L"\\\\s\\h.\\K"}},
        {true, noPath, {L"C:", L"C:\\", L"C:\\Lib\\", L"\\\\server\\share"}},
        {true,
         L"",
         {L"A:\\K", L"Z:\\K", L"a:\\K", L"z:\\K", L"C:\\x Lib", L"\\\\server\\share\\K", L"C:\\Manual", L"C:\\Made"}},
        {false, system, {L"C:\\Windows\\Web", L"f:\\win"}},
        {true, home, {L"F:\\P", L"F:\\D", L"F:\\U", L"C:\\man_info"}},
        {true, L"a link to another folder", {L"C:\\Link"}},
        {true, L"no folder of a manual", {L"C:\\Precious"}},
    };
    std::wstring log;
    for (const auto& [isRoot, whyNot, folders] : cases) {
        for (const std::wstring& folder : folders) {
            EXPECT_EQ(IsRootForManuals(platform, shop.Program().Paths, folder), isRoot) << ToUtf8(folder);
            EXPECT_EQ(MayTouchFolder(shop.Program(), folder), *whyNot == L'\0') << ToUtf8(folder);
            const std::wstring line = L"2024-05-06 07:08:09\tleft alone\t\t" + folder + L": " + whyNot + L"\r\n";
            log += *whyNot == L'\0' ? L"" : line;
        }
    }
    EXPECT_EQ(shop.Program().Log.Text(), log);
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
