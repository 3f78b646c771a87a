#include <gtest/gtest.h>

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "app/Program.h"
#include "app/modFolderCopy.h"
#include "install/modUnZip.h"
#include "tests/native/fakes/InMemoryWindows.h"
#include "text/TextTools.h"

namespace mip {
namespace {

const std::map<std::wstring, std::string> Source = {
    {L"first.htm", "1"},          {L"second.htm", "2"},        {L"a\\in a.htm", "a"},
    {L"a\\deep\\er\\x.htm", "x"}, {L"a\\整備 手順.htm", "ja"}, {L"b\\in b.htm", "b"},
};

class FolderCopyTest : public testing::Test {
  protected:
    FolderCopyTest() {
        for (const auto& [name, bytes] : Source) {
            Windows.Tree.PutFile(L"D:\\manual\\" + name, bytes, attributes::ReadOnly);
        }
        Windows.Tree.PutFolder(L"D:\\manual\\c");
    }
    std::int32_t Copy(std::int32_t startValue = 0) { return Walk(CopyMode::Copy, L"D:\\manual", startValue); }
    std::int32_t Count(const std::wstring& folder, std::int32_t startValue = 0) {
        return Walk(CopyMode::CountOnly, folder, startValue);
    }
    std::int32_t Walk(CopyMode mode, const std::wstring& folder, std::int32_t startValue) {
        return CopyFolderWithProgress(Program.Platform, mode, startValue, folder, Target,
                                      [this](std::int32_t done) { Progress.push_back(done); });
    }
    void ExpectWholeCopy() {
        for (const auto& [name, bytes] : Source) {
            EXPECT_EQ(Windows.Tree.BytesOf(Target + L"\\" + name), bytes);
            EXPECT_EQ(Windows.Tree.Find(Target + L"\\" + name)->Attributes & attributes::ReadOnly, 0U);
        }
        EXPECT_TRUE(Windows.Tree.HasFolder(Target + L"\\c"));
    }

    const std::wstring Target = L"C:\\Library\\Manuals\\manual";
    InMemoryWindows Windows;
    mip::Program Program{Windows.Platform};
    std::vector<std::int32_t> Progress;
};

TEST_F(FolderCopyTest, CopiesTheTreeAndReportsEveryFile) {
    EXPECT_EQ(Copy(10), 0);
    ExpectWholeCopy();
    EXPECT_EQ(Progress, (std::vector<std::int32_t>{11, 12, 13, 14, 15, 16}));
    EXPECT_EQ(Windows.Clock.Yields, 6);
}

TEST_F(FolderCopyTest, CountingTouchesNothing) {
    const auto before = Windows.Tree.Snapshot(L"C:\\");
    EXPECT_EQ(Count(L"D:\\manual", 5), 11);
    EXPECT_EQ(Count(L"D:\\manual\\c", 3), 3);
    EXPECT_EQ(Count(L"D:\\missing"), -1);
    EXPECT_EQ(Count(L"D:\\manual", INT32_MAX - 6), INT32_MAX);
    EXPECT_EQ(Count(L"D:\\manual", INT32_MAX - 5), -1) << "a total beyond 32 bits";
    EXPECT_EQ(Windows.Tree.Snapshot(L"C:\\"), before);
    EXPECT_TRUE(Progress.empty());
    EXPECT_EQ(Copy(INT32_MAX), -1);
    EXPECT_EQ(ReplaceAll(Program.Log.Text(), L"2024-05-06 07:08:09\tstart-up\t\t", L""),
              L"counting a folder's files: List failed with code 3 on D:\\missing\r\n"
              L"counting a folder's files: arithmetic overflow\r\ncopying a folder: arithmetic overflow\r\n");
}

TEST_F(FolderCopyTest, RootsMayEndWithABackslash) {
    Windows.Tree.PutFile(L"D:\\other\\sub\\file", "f");
    for (const wchar_t* source : {L"D:\\other", L"D:\\other\\"}) {
        for (const std::wstring target : {L"C:", L"C:\\", L"C:\\new", L"C:\\new\\"}) {
            EXPECT_EQ(CopyFolderWithProgress(Windows.Platform, CopyMode::Copy, 0, source, target), 0);
            EXPECT_EQ(Windows.Tree.BytesOf(target + L"\\sub\\file"), "f");
            Windows.Tree.Erase(target + L"\\sub");
        }
    }
}

TEST_F(FolderCopyTest, ReplacesWhatIsThereAndKeepsTheRest) {
    Windows.Tree.PutFile(Target + L"\\A\\IN A.HTM", "old and longer", attributes::ReadOnly | attributes::Hidden);
    Windows.Tree.PutFile(Target + L"\\mine.txt", "kept");
    EXPECT_EQ(Copy(), 0);
    ExpectWholeCopy();
    EXPECT_EQ(Windows.Tree.BytesOf(Target + L"\\mine.txt"), "kept");
}

TEST_F(FolderCopyTest, FollowsALinkAtItsRootOnly) {
    Windows.Tree.PutFolder(L"C:\\Elsewhere");
    Windows.Tree.PutLink(Target, L"C:\\Elsewhere");
    EXPECT_EQ(Copy(), 0);
    Windows.Tree.Erase(Target);
    Windows.Tree.Erase(L"C:\\Elsewhere\\a");
    Windows.Tree.PutLink(Target + L"\\a", L"C:\\Elsewhere");
    EXPECT_EQ(Copy(), -1);
    EXPECT_FALSE(Windows.Tree.HasFile(L"C:\\Elsewhere\\in a.htm"));
}

/// A file costs its copy; a folder costs one question, one listing, and its creation where it is missing.
TEST_F(FolderCopyTest, AsksTheComputerNoMoreThanNeeded) {
    constexpr std::size_t Files = 6, Folders = 6;
    Windows.Tree.PutFolder(L"C:\\Library\\Manuals");
    Windows.Faults.Reset();
    ASSERT_EQ(Copy(), 0);
    EXPECT_LE(Windows.Faults.Calls(), Files + 3 * Folders);
}

TEST_F(FolderCopyTest, FullTargetEndsTheCopyAndKeepsWhatIsDone) {
    Windows.Tree.DriveOf(L"C:\\")->FreeBytes = 2;
    EXPECT_EQ(Copy(), -1);
    EXPECT_EQ(Windows.Tree.Snapshot(Target), (std::map<std::wstring, std::string>{
                                                 {Target + L"\\first.htm", "1"},
                                                 {Target + L"\\second.htm", "2"},
                                                 {Target + L"\\b\\", ""},
                                                 {Target + L"\\c\\", ""},
                                             }));
}

TEST_F(FolderCopyTest, AFailingCallEndsTheCopyOrDoesNoHarm) {
    for (std::size_t n = 1;; ++n) {
        Windows.Tree.Erase(L"C:\\Library");
        Windows.Faults.FailCall(n);
        const std::int32_t result = Copy();
        const std::string operation = Windows.Faults.HitOperation();
        if (!Windows.Faults.Hit()) {
            break;
        }
        Windows.Faults.Reset();
        if (result == 0) {
            EXPECT_EQ(operation, "Folders.Exists");
            ExpectWholeCopy();
        } else {
            EXPECT_EQ(result, -1) << operation;
        }
    }
}

TEST(ExtractArchive, CommandLineIsBuiltWithoutQuotesAroundTheArchiveAndAnErrorIsAFailure) {
    InMemoryWindows windows;
    windows.Archives.OnSevenZip = [](const std::wstring&) { return 255; };
    EXPECT_EQ(ExtractArchive(windows.Platform, L"D:\\m\\manual.zip", L"\"C:\\My Temp\\u\\\""), 255);
    EXPECT_EQ(windows.Archives.CommandLines,
              std::vector<std::wstring>{L"x -aoa -hide D:\\m\\manual.zip \"C:\\My Temp\\u\\\""});
    windows.Archives.OnSevenZip = [](const std::wstring&) -> std::int32_t { throw std::bad_alloc(); };
    EXPECT_NE(ExtractArchive(windows.Platform, L"a.zip", L"\"C:\\t\\\""), 0);
}

}  // namespace
}  // namespace mip
