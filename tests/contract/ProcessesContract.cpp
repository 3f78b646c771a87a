#include <chrono>

#include "tests/contract/ContractHost.h"

namespace mip {
namespace {

class ProcessesContract : public ContractTest {
  protected:
    /// The exit code of a command that is waited for; StillActive when it does not end within half a minute.
    std::uint32_t Run(const std::wstring& commandLine) {
        const std::unique_ptr<RunningProcess> process = host_->Processes().StartHidden(commandLine);
        std::uint32_t code = process->ExitCode();
        for (int polls = 0; code == StillActive && polls < 1500; ++polls) {
            host_->Clock().Sleep(std::chrono::milliseconds{20});
            code = process->ExitCode();
        }
        return code;
    }

    std::wstring RmDir(const std::wstring& folder) const { return host_->RmDirBat() + L" \"" + folder + L"\""; }
};

TEST_F(ProcessesContract, ExitCodesAreReported) {
    for (const std::uint32_t code : {0u, 7u, 258u}) {
        EXPECT_EQ(code, Run(host_->CommandThatExitsWith(code)));
    }
}

TEST_F(ProcessesContract, WhatCannotBeStartedThrows) {
    Files().Write(At(L"text.txt"), "no program");
    for (const std::wstring& command : {At(L"none.exe"), L"\"" + At(L"none.exe") + L"\" /S", At(L"none.bat \"x\"")}) {
        EXPECT_EQ(errors::FileNotFound, CodeOf([&] { host_->Processes().StartHidden(command); }));
        EXPECT_EQ(errors::FileNotFound, CodeOf([&] { host_->Processes().StartVisible(command); }));
    }
}

TEST_F(ProcessesContract, TheBatchFileRemovesFoldersOfAnyName) {
    for (const wchar_t* const name :
         {L"plain", L"with blank", L"R & D", L"a&&exit", L"up^down", L"new!", L"!path!", L"copy (1)", L"a,b;c=d",
          L"it's", L"^&(x)!", L"サービス 説明書（表）", L"ソ能予"}) {
        SCOPED_TRACE(testing::PrintToString(name));
        Folders().Create(At(name));
        Folders().Create(At(name) + L"\\contents");
        Files().Write(At(name) + L"\\contents\\read only.txt", "text");
        Files().SetAttributes(At(name) + L"\\contents\\read only.txt", attributes::ReadOnly);

        EXPECT_EQ(0u, Run(RmDir(At(name))));
        EXPECT_FALSE(Folders().Exists(At(name)));
    }
    EXPECT_TRUE(Folders().Exists(host_->Scratch()));
}

TEST_F(ProcessesContract, TheBatchFileMayBeQuoted) {
    Folders().Create(At(L"R & D"));
    EXPECT_EQ(0u, Run(L"\"" + host_->RmDirBat() + L"\" \"" + At(L"R & D") + L"\""));
    EXPECT_FALSE(Folders().Exists(At(L"R & D")));
}

TEST_F(ProcessesContract, TheBatchFileRefusesWhatIsNoFolderBelowARoot) {
    Files().Write(At(L"kept.txt"), "text");
    for (const wchar_t* const argument :
         {L"", L"C:\\", L"C:", L"\\", L"\\\\server\\share", L"contents", L"..", L"C:\\x\\.."}) {
        SCOPED_TRACE(testing::PrintToString(argument));
        EXPECT_EQ(1u, Run(RmDir(argument)));
    }
    EXPECT_EQ(0u, Run(RmDir(At(L"none"))));
    EXPECT_EQ("text", Files().Read(At(L"kept.txt")));
}

TEST_F(ProcessesContract, TheBatchFileRemovesALinkAndNotWhatItPointsTo) {
    if (!host_->IsStrict()) {
        GTEST_SKIP() << "this system's rd follows links";
    }
    Folders().Create(At(L"target"));
    Files().Write(At(L"target\\kept.txt"), "text");
    Folders().Create(At(L"manual"));
    ASSERT_TRUE(host_->MakeLink(At(L"manual\\inside"), At(L"target")));
    ASSERT_TRUE(host_->MakeLink(At(L"link"), At(L"target")));

    EXPECT_EQ(0u, Run(RmDir(At(L"manual"))));
    EXPECT_EQ(0u, Run(RmDir(At(L"link"))));
    EXPECT_FALSE(Folders().Exists(At(L"manual")) || Folders().Exists(At(L"link")));
    EXPECT_EQ("text", Files().Read(At(L"target\\kept.txt")));
}

TEST_F(ProcessesContract, ABatchFileTakesNoCommandsAlong) {
    Folders().Create(At(L"kept"));
    const std::wstring trace = L"echo x>" + At(L"trace.txt");
    for (const std::wstring& argument :
         {At(L"kept") + L"\" & " + trace + L" & rem ", At(L"kept") + L"\" & " + trace + L" & \"",
          At(L"kept") + L"\"|" + trace + L"&\"", At(L"kept\n") + trace, At(L"kept") + L"\""}) {
        SCOPED_TRACE(testing::PrintToString(argument));
        EXPECT_EQ(errors::InvalidName, CodeOf([&] { host_->Processes().StartHidden(RmDir(argument)); }));
        EXPECT_EQ(errors::InvalidName, CodeOf([&] { host_->Processes().StartVisible(RmDir(argument)); }));
    }
    host_->Clock().Sleep(std::chrono::milliseconds{200});
    EXPECT_TRUE(Folders().Exists(At(L"kept")) && !Files().Exists(At(L"trace.txt")));
}

TEST_F(ProcessesContract, ASnapshotNamesThePrograms) {
    const std::optional<std::vector<std::wstring>> names = host_->Processes().Snapshot();
    ASSERT_TRUE(names.has_value());
    EXPECT_FALSE(names->empty());
    for (const std::wstring& name : *names) {
        EXPECT_EQ(std::wstring::npos, name.find_first_of(std::wstring_view(L"\\\0", 2)))
            << testing::PrintToString(name);
    }
}

}  // namespace
}  // namespace mip
