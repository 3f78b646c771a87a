// What Windows does and Wine does not: the in-memory Windows alone is held to it.
#include "tests/contract/ContractHost.h"

namespace mip {
namespace {

using StrictContract = ContractTest;

TEST_F(StrictContract, ReadOnlyFilesAreNotWrittenOrReplaced) {
    files_.Write(At(L"new.txt"), "new");
    files_.Write(At(L"locked.txt"), "locked");
    files_.SetAttributes(At(L"locked.txt"), attributes::ReadOnly);

    EXPECT_EQ(errors::AccessDenied, CodeOf([&] { files_.Move(At(L"new.txt"), At(L"locked.txt")); }));
    EXPECT_EQ(errors::AccessDenied, CodeOf([&] { files_.Write(At(L"locked.txt"), "y"); }));
    EXPECT_EQ(errors::AccessDenied, CodeOf([&] { files_.Append(At(L"locked.txt"), "y"); }));
    EXPECT_EQ("locked", files_.Read(At(L"locked.txt")));
}

TEST_F(StrictContract, TheBatchFileRemovesALinkAndNotWhatItPointsTo) {
    folders_.Create(At(L"target"));
    files_.Write(At(L"target\\kept.txt"), "text");
    folders_.Create(At(L"manual"));
    host_->MakeLink(At(L"manual\\inside"), At(L"target"));
    host_->MakeLink(At(L"link"), At(L"target"));

    for (const wchar_t* const name : {L"manual", L"link"}) {
        const auto batch = computer_.Processes.StartHidden(host_->RmDirBat() + L" \"" + At(name) + L"\"");
        EXPECT_EQ(0u, batch->ExitCode());
        EXPECT_FALSE(folders_.Exists(At(name)));
    }
    EXPECT_EQ("text", files_.Read(At(L"target\\kept.txt")));
}

}  // namespace
}  // namespace mip
