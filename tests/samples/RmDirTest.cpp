// The delivered RmDir.bat, run by the command interpreter on real folders.
#include <gtest/gtest.h>

#include <windows.h>

#include <array>
#include <filesystem>
#include <fstream>
#include <string>

namespace mip {
namespace {

namespace fs = std::filesystem;

class RmDirTest : public testing::Test {
  protected:
    void SetUp() override {
        std::array<wchar_t, MAX_PATH> temporary{};
        GetTempPathW(static_cast<DWORD>(temporary.size()), temporary.data());
        root_ = fs::path(temporary.data()) / (L"RmDir" + std::to_wstring(GetCurrentProcessId()));
        fs::create_directories(root_ / L"Library");
        fs::copy_file(fs::path(MIP_DISC_FOLDER) / L"SysDir" / L"RmDir.bat", batch_ = root_ / L"RmDir.bat");
    }

    void TearDown() override {
        for (const fs::path& file : fs::recursive_directory_iterator(root_)) {
            SetFileAttributesW(file.c_str(), FILE_ATTRIBUTE_NORMAL);
        }
        fs::remove_all(root_);
    }

    fs::path MakeManual(const std::wstring& name) {
        const fs::path folder = root_ / L"Library" / name;
        fs::create_directories(folder / L"contents" / L"図");
        const fs::path page = folder / L"contents" / L"図" / L"index.html";
        std::ofstream(page) << "page";
        SetFileAttributesW(page.c_str(), FILE_ATTRIBUTE_READONLY);
        return folder;
    }

    // Runs hidden, in the library's folder, so that a relative name could find something there.
    DWORD Run(const std::wstring& commandLine) {
        std::wstring line = commandLine;
        const std::wstring folder = (root_ / L"Library").wstring();
        STARTUPINFOW start{};
        start.cb = sizeof(start);
        start.dwFlags = STARTF_USESHOWWINDOW;
        start.wShowWindow = SW_HIDE;
        PROCESS_INFORMATION process{};
        if (!CreateProcessW(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr, folder.c_str(), &start,
                            &process)) {
            ADD_FAILURE() << "cannot start, error " << GetLastError();
            return MAXDWORD;
        }
        EXPECT_EQ(WaitForSingleObject(process.hProcess, 20000), DWORD{WAIT_OBJECT_0});
        DWORD code = MAXDWORD;
        GetExitCodeProcess(process.hProcess, &code);
        CloseHandle(process.hThread);
        CloseHandle(process.hProcess);
        return code;
    }

    DWORD RunOn(const std::wstring& argument) { return Run(batch_.wstring() + L" \"" + argument + L"\""); }

    fs::path root_;
    fs::path batch_;
};

// A percent sign is left out: the interpreter that the tests run under expands it once more than Windows does.
TEST_F(RmDirTest, RemovesTheFolderWhateverCharactersItsNameHas) {
    for (const wchar_t* name : {L"K4710MM", L"with blank", L"a & b", L"c^d", L"wow!", L"!both!", L"2021 (late)",
                                L"x, y; z", L"a=b", L"Vantor's", L"フユネ2021_整備書", L"表示 能力"}) {
        const fs::path folder = MakeManual(name);
        EXPECT_EQ(RunOn(folder.wstring()), 0u) << folder.string();
        EXPECT_FALSE(fs::exists(folder)) << folder.string();
    }
    EXPECT_TRUE(fs::exists(root_ / L"Library"));
}

TEST_F(RmDirTest, TakesAQuotedBatchPathAndATrailingBackslash) {
    const fs::path first = MakeManual(L"first one");
    const fs::path second = MakeManual(L"second one");
    EXPECT_EQ(Run(L"\"" + batch_.wstring() + L"\" \"" + first.wstring() + L"\""), 0u);
    EXPECT_FALSE(fs::exists(first));
    EXPECT_EQ(RunOn(second.wstring() + L"\\"), 0u);
    EXPECT_FALSE(fs::exists(second));
}

TEST_F(RmDirTest, LeavesTheNeighboursAlone) {
    const fs::path neighbour = MakeManual(L"K4710MM_old");
    EXPECT_EQ(RunOn(MakeManual(L"K4710MM").wstring()), 0u);
    EXPECT_TRUE(fs::exists(neighbour / L"contents" / L"図" / L"index.html"));
}

TEST_F(RmDirTest, RefusesWhatIsNoFolderBelowARoot) {
    const fs::path manual = MakeManual(L"K4710MM");
    const std::wstring upToRoot = L"C:\\Windows\\..";
    for (const std::wstring& argument :
         {std::wstring(), std::wstring(L"C:"), std::wstring(L"C:\\"), std::wstring(L"C:\\\\"), std::wstring(L"C:\\."),
          upToRoot, std::wstring(L"C:K4710MM"), std::wstring(L"K4710MM"), std::wstring(L".\\K4710MM"),
          std::wstring(L"..\\Library"), std::wstring(L"\\"), std::wstring(L"*"), std::wstring(L"\\\\"),
          std::wstring(L"\\\\server"), std::wstring(L"\\\\server\\share"), std::wstring(L"\\\\server\\share\\")}) {
        EXPECT_EQ(RunOn(argument), 1u) << fs::path(argument).string();
        ASSERT_TRUE(fs::exists(manual / L"contents")) << fs::path(argument).string();
    }
    EXPECT_EQ(Run(batch_.wstring()), 1u);
    EXPECT_TRUE(fs::exists(manual));
}

TEST_F(RmDirTest, AFolderThatIsGoneAlreadyIsNoFailure) {
    EXPECT_EQ(RunOn((root_ / L"Library" / L"never there").wstring()), 0u);
}

TEST_F(RmDirTest, SaysWhenSomethingStays) {
    const fs::path manual = MakeManual(L"K4710MM");
    HANDLE open = CreateFileW((manual / L"contents" / L"図" / L"index.html").c_str(), GENERIC_READ, 0, nullptr,
                              OPEN_EXISTING, 0, nullptr);
    ASSERT_NE(open, INVALID_HANDLE_VALUE);
    EXPECT_EQ(RunOn(manual.wstring()), 1u);
    CloseHandle(open);
}

}  // namespace
}  // namespace mip
