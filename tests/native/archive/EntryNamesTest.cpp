#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "platform/archive/EntryName.h"
#include "platform/archive/SevenZipCommand.h"
#include "tests/native/archive/HostileNames.h"

namespace mip {
namespace {

TEST(SevenZipCommand, ReadsArgumentsAsTheLibraryDoes) {
    const struct {
        std::wstring CommandLine;
        std::wstring Archive;
        std::wstring OutputFolder;
    } cases[] = {
        {L"x -aoa -hide D:\\m\\manual.zip \"C:\\My Temp\\u\\\"", L"D:\\m\\manual.zip", L"C:\\My Temp\\u"},
        {L"x -aoa -hide \"D:\\my disc\\manual.zip\" \"C:\\t\\\"", L"D:\\my disc\\manual.zip", L"C:\\t"},
        {L"x -aoa -hide D:\\my  disc -hide\\a.zip \"C:\\My Temp\\\"", L"D:\\my  disc -hide\\a.zip", L"C:\\My Temp"},
        {L"  X\t-Hide -AOA  a.zip   C:\\t\\\\ ", L"a.zip", L"C:\\t"},
        {L"x -aoa a.zip C:\\\"my folder\"\\", L"a.zip", L"C:\\my folder"},
        {L"x -aoa a.zip C:\\", L"a.zip", L"C:\\"},
        {L"x -aoa a.zip t\\", L"a.zip", L"t"},
        {L"x -aoa a.zip \\", L"a.zip", L"\\"},
        {L"x -aoa a.zip \"C:\\open end", L"a.zip", L"C:\\open end"},
    };
    for (const auto& [commandLine, archive, outputFolder] : cases) {
        const auto command = ParseSevenZipCommand(commandLine);
        EXPECT_TRUE(command && command->Archive == archive && command->OutputFolder == outputFolder)
            << testing::PrintToString(commandLine);
    }
}

TEST(SevenZipCommand, KnowsNoOtherCommand) {
    for (const std::wstring commandLine :
         {L"", L"x", L"x -aoa a.zip", L"x a.zip C:\\t", L"x -aou a.zip C:\\t", L"x -aoa -p1 a.zip C:\\t",
          L"l -aoa a.zip C:\\t", L"e -aoa a.zip C:\\t", L"-aoa x a.zip C:\\t", L"x a.zip -aoa C:\\t",
          L"x -aoa a.zip C:\\t -hide", L"x -aoa \"\" C:\\t", L"x -aoa a.zip \"\"", L"x -aoa \"a\" \"b\" C:\\t",
          L"x -aoa D:\\\"my disc\"\\a.zip C:\\t"}) {
        EXPECT_FALSE(ParseSevenZipCommand(commandLine)) << testing::PrintToString(commandLine);
    }
}

TEST(EntryName, OrdinaryNamesBecomePaths) {
    const std::vector<std::pair<std::wstring, std::wstring>> cases = {
        {L"a", L"a"},
        {L"a/b/c.htm", L"a\\b\\c.htm"},
        {L"a\\b.htm", L"a\\b.htm"},
        {L"a/b/", L"a\\b"},
        {L"..a/...b/ c", L"..a\\...b\\ c"},
        {L"console/comx/com0.txt/lpt", L"console\\comx\\com0.txt\\lpt"},
        {L"整備 手順/表示.htm", L"整備 手順\\表示.htm"},
        {std::wstring(255, L'x') + L"/y", std::wstring(255, L'x') + L"\\y"},
    };
    for (const auto& [name, path] : cases) {
        EXPECT_EQ(CheckedEntryName(name), path);
    }
    EXPECT_EQ(CheckedEntryName(HostileNames().back().substr(1)).size(), 4096u);
}

}  // namespace
}  // namespace mip
