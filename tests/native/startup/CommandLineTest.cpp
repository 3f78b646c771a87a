#include "startup/CommandLine.h"

#include <gtest/gtest.h>

#include "text/Arguments.h"

namespace mip {
namespace {

TEST(CommandLine, ReadsEverySwitch) {
    const Switches switches =
        ReadSwitches(SplitArguments(L"  /verysilent /Accept /DIR=\"C:\\My Manuals\\\"\t/LANG=4t \"/LOG=C:\\a b.log\""));
    Switches expected;
    expected.VerySilent = expected.Accept = true;
    expected.Directory = L"C:\\My Manuals\\";
    expected.Language = L"4T";
    expected.LogFile = L"C:\\a b.log";
    EXPECT_EQ(switches, expected);
    EXPECT_EQ(ReadSwitches({L"/REMOVE=\"A=b\"", L"/SILENT"}).Remove, L"A=b");
    EXPECT_EQ(ReadSwitches(SplitArguments(L"")), Switches{});
}

TEST(CommandLine, RefusesWhatItCannotFollowAndStillTellsWhereToLog) {
    const auto badSwitchOf = [](const std::wstring& commandLine) -> std::wstring {
        try {
            EXPECT_EQ(ReadSwitches(SplitArguments(commandLine + L" /LOG=C:\\a.log")).LogFile, L"C:\\a.log");
            return L"";
        } catch (const BadSwitch& bad) {
            EXPECT_EQ(bad.Others().LogFile, L"C:\\a.log");
            EXPECT_EQ(bad.Others().IsQuiet(), commandLine.ends_with(L"SILENT"));
            return bad.Text();
        }
    };
    for (const wchar_t* bad : {L"/FAST", L"SILENTLY", L"/SILENT", L"/VERYSILENT", L"/CHECK=1", L"/DIR", L"/DIR=",
                               L"/DIR=manuals", L"/DIR=C:x", L"/DIR=ab\\c", L"/REMOVE=", L"/LANG=../x", L"/LANG=9",
                               L"/LANG=9:", L"/LANG=A[", L"/LANG=a{", L"/LANG=0409"}) {
        EXPECT_EQ(badSwitchOf(bad), bad);
    }
    for (const auto& [commandLine, bad] : {std::pair{L"/CHECK /X /Y", L"/X"},
                                           {L"/FAST /SILENT", L"/FAST"},
                                           {L"/SILENT /ACCEPT", L""},
                                           {L"/SILENT /CHECK", L""},
                                           {L"/? /SILENT", L""},
                                           {L"/LANG=0AZ", L""},
                                           {L"/LANG=9az", L""},
                                           {L"/DIR=C:\\", L""},
                                           {L"/DIR=\\\\server\\manuals", L""},
                                           {L"/REMOVE=A1 /CHECK", L"/REMOVE=A1"}}) {
        EXPECT_EQ(badSwitchOf(commandLine), bad);
    }
    for (const wchar_t* bad : {L"", L"SILENT", L"/REMOVE=\"\"", L"/REMOVE=\"", L"/REMOVE=\"A1", L"/LOG=\""}) {
        EXPECT_THROW(ReadSwitches({bad}), BadSwitch) << bad;
    }
}

}  // namespace
}  // namespace mip
