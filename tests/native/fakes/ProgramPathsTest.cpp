// What fakes and adapters alike make of paths and command lines, by the platform's own functions.
#include <gtest/gtest.h>

#include "platform/DriveName.h"
#include "platform/ProgramSearch.h"

namespace mip {
namespace {

TEST(DriveNames, AreCutFromPaths) {
    const struct {
        const wchar_t* Path;
        const wchar_t* Drive;
    } cases[] = {{L"D:\\programs\\setup", L"D:"},
                 {L"d:", L"d:"},
                 {L"C:relative", L"C:"},
                 {L"\\\\server\\share\\manuals\\x", L"\\\\server\\share"},
                 {L"\\\\server\\share", L"\\\\server\\share"},
                 {L"\\\\server", L""},
                 {L"\\\\server\\", L""},
                 {L"\\folder", L""},
                 {L"folder\\C:", L""},
                 {L"1:\\x", L""},
                 {L"", L""}};
    for (const auto& [path, drive] : cases) {
        EXPECT_EQ(drive, DriveNameOf(path)) << testing::PrintToString(path);
    }
}

TEST(ProgramSearch, FindsTheProgramAsTheSystemDoes) {
    const auto isFile = [](const std::wstring& path) {
        // The system resolves what leads back, and finds what the caller likes.
        return path.find(L"..") != std::wstring::npos || path == L"C:\\my disc\\RmDir.bat" ||
               path == L"C:\\Program.exe" || path == L"C:\\Program Files\\v.exe";
    };
    const struct {
        const wchar_t* CommandLine;
        const wchar_t* Program;  ///< "": none
        const wchar_t* Arguments;
    } cases[] = {{L"C:\\my disc\\RmDir.bat \"C:\\x & y\"", L"C:\\my disc\\RmDir.bat", L" \"C:\\x & y\""},
                 {L"\"C:\\my disc\\RmDir.bat\" a b", L"C:\\my disc\\RmDir.bat", L" a b"},
                 {L"C:\\my disc\\RmDir.bat", L"C:\\my disc\\RmDir.bat", L""},
                 {L"C:\\Program Files\\v.exe x", L"C:\\Program Files\\v.exe", L" x"},
                 {L"C:\\Program Files\\none.exe x", L"C:\\Program.exe", L" Files\\none.exe x"},
                 {L"C:\\Program Files\\v.exe  x", L"C:\\Program Files\\v.exe", L"  x"},
                 {L"C:\\Program Files\\v.exe C:\\..\\..\\evil", L"C:\\Program Files\\v.exe", L" C:\\..\\..\\evil"},
                 {L"\"C:\\Program Files\\v\" x", L"C:\\Program Files\\v.exe", L" x"},
                 {L"\"C:\\Program Files\\v.exe", L"C:\\Program Files\\v.exe", L""},
                 {L"C:\\none.exe x", L"", L""},
                 {L"\"C:\\none.exe\" C:\\Program.exe", L"", L""},
                 {L"", L"", L""}};
    for (const auto& [commandLine, program, arguments] : cases) {
        SCOPED_TRACE(testing::PrintToString(commandLine));
        const ProgramCall call = FindProgram(commandLine, isFile).value_or(ProgramCall{});
        EXPECT_EQ(program, call.Program);
        EXPECT_EQ(arguments, call.Arguments);
    }
}

TEST(ProgramSearch, BatchFilesAreKnownByTheirExtension) {
    EXPECT_TRUE(IsBatchFile(L"D:\\SysDir\\RmDir.bat") && IsBatchFile(L"X.CMD") && IsBatchFile(L".Bat"));
    EXPECT_FALSE(IsBatchFile(L"D:\\setup.exe") || IsBatchFile(L"D:\\RmDir.bat\\x") || IsBatchFile(L"bat"));
}

}  // namespace
}  // namespace mip
