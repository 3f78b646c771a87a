#include "startup/CommandLine.h"

#include <gtest/gtest.h>

#include "text/Arguments.h"

namespace mip {
namespace {

std::wstring BadSwitchOf(std::wstring_view commandLine) {
    try {
        ReadSwitches(SplitArguments(commandLine));
        return L"";
    } catch (const BadSwitch& bad) {
        return bad.Text();
    }
}

TEST(CommandLine, ReadsEverySwitch) {
    const Switches switches = ReadSwitches(
        SplitArguments(L"  /verysilent /Accept /DIR=\"C:\\My Manuals\\\"\t/LANG=04t \"/LOG=C:\\a b.log\""));
    Switches expected;
    expected.VerySilent = expected.Accept = true;
    expected.Directory = L"C:\\My Manuals\\";
    expected.Language = L"04T";
    expected.LogFile = L"C:\\a b.log";
    EXPECT_EQ(switches, expected);
    EXPECT_EQ(ReadSwitches({L"/REMOVE=\"A=b\"", L"/SILENT"}).Remove, L"A=b");
    EXPECT_EQ(ReadSwitches(SplitArguments(L"")), Switches{});
}

TEST(CommandLine, RefusesWhatItCannotFollow) {
    const std::vector<std::pair<std::wstring, std::wstring>> cases{
        {L"/FAST", L"/FAST"},
        {L"SILENT", L"SILENT"},
        {L"/CHECK /X /Y", L"/X"},
        {L"/SILENT", L"/SILENT"},
        {L"/VERYSILENT /LOG=C:\\a", L"/VERYSILENT"},
        {L"/SILENT /ACCEPT", L""},
        {L"/SILENT /CHECK", L""},
        {L"/CHECK=1", L"/CHECK=1"},
        {L"/DIR", L"/DIR"},
        {L"/DIR=", L"/DIR="},
        {L"/DIR=manuals", L"/DIR=manuals"},
        {L"/DIR=\\\\server\\manuals", L""},
        {L"/REMOVE=\"\"", L"/REMOVE="},
        {L"/REMOVE=A1 /CHECK", L"/REMOVE=A1"},
        {L"/LANG=../x", L"/LANG=../x"},
        {L"/LANG=9", L"/LANG=9"},
    };
    for (const auto& [commandLine, bad] : cases) {
        EXPECT_EQ(BadSwitchOf(commandLine), bad);
    }
    EXPECT_THROW(ReadSwitches({L""}), BadSwitch);
}

TEST(CommandLine, BadSwitchStillTellsWhereToLog) {
    try {
        ReadSwitches({L"/FAST", L"/SILENT", L"/LOG=C:\\a.log"});
        FAIL();
    } catch (const BadSwitch& bad) {
        EXPECT_TRUE(bad.Others().IsQuiet());
        EXPECT_EQ(bad.Others().LogFile, L"C:\\a.log");
    }
}

}  // namespace
}  // namespace mip
