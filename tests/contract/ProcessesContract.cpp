#include <chrono>

#include "tests/contract/ContractHost.h"

namespace mip {
namespace {

class ProcessesContract : public ContractTest {
  protected:
    /// The exit code of a command that is waited for; StillActive when it does not end within half a minute.
    std::uint32_t Run(const std::wstring& commandLine) {
        const std::unique_ptr<RunningProcess> process = processes_.StartHidden(commandLine);
        std::uint32_t code = process->ExitCode();
        for (int polls = 0; code == StillActive && polls < 1500; ++polls) {
            computer_.Clock.Sleep(std::chrono::milliseconds{20});
            code = process->ExitCode();
        }
        return code;
    }
    std::wstring RmDir(const std::wstring& folder) const { return host_->RmDirBat() + L" \"" + folder + L"\""; }
    /// A folder with a read-only page in it. Returns the page.
    std::wstring MakeManual(const std::wstring& name) {
        folders_.Create(At(name));
        folders_.Create(At(name) + L"\\図");
        const std::wstring page = At(name) + L"\\図\\page.html";
        files_.Write(page, "text");
        files_.SetAttributes(page, attributes::ReadOnly);
        return page;
    }

    Processes& processes_ = computer_.Processes;
};

TEST_F(ProcessesContract, ExitCodesAreReported) {
    for (const std::uint32_t code : {0u, 7u, 258u}) {
        EXPECT_EQ(code, Run(L"C:\\windows\\system32\\cmd.exe /c exit " + std::to_wstring(code)));
    }
}

TEST_F(ProcessesContract, WhatCannotBeStartedThrows) {
    files_.Write(At(L"text.txt"), "no program");
    for (const std::wstring& command : {At(L"none.exe"), L"\"" + At(L"none.exe") + L"\" /S", At(L"none.bat \"x\"")}) {
        EXPECT_EQ(errors::FileNotFound, CodeOf([&] { processes_.StartHidden(command); }));
        EXPECT_EQ(errors::FileNotFound, CodeOf([&] { processes_.StartVisible(command); }));
    }
}

// A percent sign is left out: Wine's interpreter expands it once more than Windows does.
TEST_F(ProcessesContract, TheBatchFileRemovesFoldersOfAnyName) {
    const std::wstring neighbour = MakeManual(L"plain_old");
    for (const wchar_t* const name :
         {L"plain", L"with blank", L"R & D", L"a&&exit", L"up^down", L"new!", L"!path!", L"copy (1)", L"a,b;c=d",
          L"it's", L"^&(x)!", L"サービス 説明書（表）", L"ソ能予"}) {
        SCOPED_TRACE(testing::PrintToString(name));
        MakeManual(name);
        EXPECT_EQ(0u, Run(RmDir(At(name))));
        EXPECT_FALSE(folders_.Exists(At(name)));
    }
    MakeManual(L"R & D");
    EXPECT_EQ(0u, Run(L"\"" + host_->RmDirBat() + L"\" \"" + At(L"R & D") + L"\\\""));
    EXPECT_FALSE(folders_.Exists(At(L"R & D")));
    EXPECT_EQ(0u, Run(RmDir(At(L"none"))));
    EXPECT_TRUE(files_.Exists(neighbour));
}

TEST_F(ProcessesContract, TheBatchFileRefusesWhatIsNoFolderBelowARoot) {
    for (const wchar_t* const argument : {L"", L"C:", L"C:\\", L"C:\\\\", L"C:\\.", L"C:\\x\\..", L"C:\\Windows\\..",
                                          L"C:contents", L"contents", L".\\x", L"..", L"..\\x", L"\\", L"*", L"\\\\",
                                          L"\\\\server", L"\\\\server\\share", L"\\\\server\\share\\"}) {
        EXPECT_EQ(1u, Run(RmDir(argument))) << testing::PrintToString(argument);
    }
    EXPECT_EQ(1u, Run(host_->RmDirBat()));
}

TEST_F(ProcessesContract, TheBatchFileSaysWhenSomethingStays) {
    const auto open = host_->OpenElsewhere(MakeManual(L"open"));
    EXPECT_EQ(1u, Run(RmDir(At(L"open"))));
    EXPECT_TRUE(files_.Exists(At(L"open\\図\\page.html")));
}

TEST_F(ProcessesContract, ABatchFileTakesNoCommandsAlong) {
    folders_.Create(At(L"kept"));
    const std::wstring trace = L"echo x>" + At(L"trace.txt");
    for (const std::wstring& argument :
         {At(L"kept") + L"\" & " + trace + L" & rem ", At(L"kept") + L"\" & " + trace + L" & \"",
          At(L"kept") + L"\"|" + trace + L"&\"", At(L"kept\n") + trace, At(L"kept") + L"\""}) {
        SCOPED_TRACE(testing::PrintToString(argument));
        EXPECT_EQ(errors::InvalidName, CodeOf([&] { processes_.StartHidden(RmDir(argument)); }));
        EXPECT_EQ(errors::InvalidName, CodeOf([&] { processes_.StartVisible(RmDir(argument)); }));
    }
    computer_.Clock.Sleep(std::chrono::milliseconds{200});
    EXPECT_TRUE(folders_.Exists(At(L"kept")) && !files_.Exists(At(L"trace.txt")));
}

}  // namespace
}  // namespace mip
