#include "platform/ProgramSearch.h"
#include "tests/contract/ContractHost.h"

namespace mip {
namespace {

using VolumesContract = ContractTest;

TEST_F(VolumesContract, DriveNamesAreCutFromPaths) {
    const struct {
        const wchar_t* Path;
        const wchar_t* Drive;
    } cases[] = {
        {L"D:\\programs\\setup", L"D:"},
        {L"d:", L"d:"},
        {L"C:relative", L"C:"},
        {L"\\\\server\\share\\manuals\\x", L"\\\\server\\share"},
        {L"\\\\server\\share", L"\\\\server\\share"},
        {L"\\\\server", L""},
        {L"\\\\server\\", L""},
        {L"\\folder", L""},
        {L"folder\\C:", L""},
        {L"1:\\x", L""},
        {L"", L""},
    };
    for (const auto& [path, drive] : cases) {
        EXPECT_EQ(drive, host_->Volumes().DriveName(path)) << testing::PrintToString(path);
    }
}

TEST_F(VolumesContract, TheSystemDriveHasRoomAndAFileSystem) {
    EXPECT_GT(host_->Volumes().FreeBytes(L"C:\\"), 1'000'000.0);
    EXPECT_EQ(L"NTFS", host_->Volumes().FileSystemName(L"C:\\"));
    for (const wchar_t* const root : {L"Q:\\", L"", L"\\\\nowhere\\share\\"}) {
        EXPECT_NE(0u, CodeOf([&] { host_->Volumes().FreeBytes(root); })) << testing::PrintToString(root);
        EXPECT_NE(0u, CodeOf([&] { host_->Volumes().FileSystemName(root); })) << testing::PrintToString(root);
    }
}

TEST_F(VolumesContract, FlushingKeepsWhatWasWritten) {
    Folders().Create(At(L"manual"));
    Folders().Create(At(L"manual\\contents"));
    Files().Write(At(L"manual\\contents\\page.html"), "text");
    Files().SetAttributes(At(L"manual\\contents\\page.html"), attributes::ReadOnly);

    host_->Volumes().Flush(At(L"manual"));
    EXPECT_EQ("text", Files().Read(At(L"manual\\contents\\page.html")));
    EXPECT_EQ(errors::FileNotFound, CodeOf([&] { host_->Volumes().Flush(At(L"none")); }));
}

TEST(ProgramSearch, FindsTheProgramAsTheSystemDoes) {
    const auto isFile = [](const std::wstring& path) {
        if (path.find(L"..") != std::wstring::npos) {
            return true;  // the system resolves it, and finds what the caller likes
        }
        return path == L"C:\\my disc\\RmDir.bat" || path == L"C:\\Program.exe" || path == L"C:\\Program Files\\v.exe";
    };
    const struct {
        const char* Label;
        const wchar_t* CommandLine;
        const wchar_t* Program;  ///< null: none
        const wchar_t* Arguments;
    } cases[] = {
        {"blank in an unquoted path", L"C:\\my disc\\RmDir.bat \"C:\\x & y\"", L"C:\\my disc\\RmDir.bat",
         L" \"C:\\x & y\""},
        {"quoted", L"\"C:\\my disc\\RmDir.bat\" a b", L"C:\\my disc\\RmDir.bat", L" a b"},
        {"no arguments", L"C:\\my disc\\RmDir.bat", L"C:\\my disc\\RmDir.bat", L""},
        {"longest first", L"C:\\Program Files\\v.exe x", L"C:\\Program Files\\v.exe", L" x"},
        {"shorter, for want of the longer", L"C:\\Program Files\\none.exe x", L"C:\\Program.exe",
         L" Files\\none.exe x"},
        {"two blanks", L"C:\\Program Files\\v.exe  x", L"C:\\Program Files\\v.exe", L"  x"},
        {"an argument that leads back", L"C:\\Program Files\\v.exe C:\\..\\..\\..\\evil", L"C:\\Program Files\\v.exe",
         L" C:\\..\\..\\..\\evil"},
        {"extension added", L"\"C:\\Program Files\\v\" x", L"C:\\Program Files\\v.exe", L" x"},
        {"quote not closed", L"\"C:\\Program Files\\v.exe", L"C:\\Program Files\\v.exe", L""},
        {"missing", L"C:\\none.exe x", nullptr, L""},
        {"missing, quoted", L"\"C:\\none.exe\" C:\\Program.exe", nullptr, L""},
        {"empty", L"", nullptr, L""},
    };
    for (const auto& [label, commandLine, program, arguments] : cases) {
        SCOPED_TRACE(label);
        const std::optional<ProgramCall> call = FindProgram(commandLine, isFile);
        ASSERT_EQ(program != nullptr, call.has_value());
        if (call) {
            EXPECT_EQ(program, call->Program);
            EXPECT_EQ(arguments, call->Arguments);
        }
    }
}

TEST(ProgramSearch, BatchFilesAreKnownByTheirExtension) {
    EXPECT_TRUE(IsBatchFile(L"D:\\SysDir\\RmDir.bat") && IsBatchFile(L"X.CMD") && IsBatchFile(L".Bat"));
    EXPECT_FALSE(IsBatchFile(L"D:\\setup.exe") || IsBatchFile(L"D:\\RmDir.bat\\x") || IsBatchFile(L"bat"));
}

}  // namespace
}  // namespace mip
