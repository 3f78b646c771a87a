#include <gtest/gtest.h>

#include <optional>

#include "platform/PlatformError.h"
#include "tests/contract/ArchivesContract.h"

namespace mip {
namespace {

using Entries = std::vector<ArchiveEntry>;

class ArchivesContract : public testing::Test {
  protected:
    std::wstring Command(const std::wstring& archive, const std::wstring& folder = L"output folder") const {
        return L"x -aoa -hide " + archive + L" \"" + host_->At(folder) + L"\\\"";
    }
    std::optional<ArchiveFacts> Inspect(const std::wstring& command) {
        return Look([&] { return host_->Archives().Inspect(command); });
    }
    std::optional<ArchiveFacts> Test(const std::wstring& command) {
        return Look([&] { return host_->Archives().Test(command); });
    }
    /// Extracts into a folder that is new.
    void ExpectExtracts(const std::wstring& archive, const Entries& entries) {
        const std::wstring folder = L"output " + std::to_wstring(++folders_);
        EXPECT_EQ(0, host_->Archives().SevenZip(Command(archive, folder), NoFaultLog::Instance()));
        auto extracted = host_->Tree(host_->At(folder));
        for (const ArchiveEntry& entry : entries) {
            EXPECT_EQ(1u, extracted.count(entry.Name)) << testing::PrintToString(entry.Name);
            EXPECT_EQ(entry.Content, extracted[entry.Name]);
        }
    }
    void ExpectRefused(const std::wstring& command) {
        EXPECT_FALSE(Test(command));
        EXPECT_NE(0, host_->Archives().SevenZip(command, NoFaultLog::Instance()));
    }

    std::unique_ptr<ArchivesHost> host_ = MakeArchivesHost();

  private:
    int folders_ = 0;

    static std::optional<ArchiveFacts> Look(const auto& look) {
        try {
            return look();
        } catch (const PlatformError& error) {
            EXPECT_FALSE(error.Object().empty()) << error.what();
            return std::nullopt;
        }
    }
};

TEST_F(ArchivesContract, TheArchiveIsWhatStandsBetweenSwitchesAndFolder) {
    const Entries entries = {{L"M\\index.html", "page"}, {L"M\\contents\\large.bin", std::string(5000, 'x')}};
    const ArchiveFacts facts{3 * 4096, 2, true, L"M"};
    for (const wchar_t* const name : {L"manual.zip", L"Ondari 2021\\manual.zip", L"disc  copy -aoa\\my manual.zip",
                                      L"\u00E9\\\u00FC.zip", L"整備書\\表 1.zip", L"整備書\\表.zip"}) {
        const std::wstring path = host_->At(name);
        host_->Put(path, entries);
        for (const std::wstring& text : {path, L"\"" + path + L"\""}) {
            SCOPED_TRACE(testing::PrintToString(text));
            EXPECT_EQ(facts, Inspect(Command(text)));
            EXPECT_EQ(facts, Test(Command(text)));
            ExpectExtracts(text, entries);
        }
    }
}

TEST_F(ArchivesContract, WhatNeverExtractsIsRefusedByItsDirectory) {
    const Entries cases[] = {{},
                             {{L"M\\a", "file"}, {L"M\\a\\b.html", "page"}},
                             {{L"M\\a\\b.html", "page"}, {L"M\\a", "file"}},
                             {{L"M\\A", "file"}, {L"N\\c"}, {L"m\\a\\deep\\below\\b.html", "page"}},
                             {{L"M", "file"}, {L"M\\a\\"}},
                             {{L"M\\a", "file"}, {L"M\\A", "file"}},
                             {{L"M\\a", "file"}, {L"M\\a\\"}},
                             {{L"M\\a", "file"}, {L"..\\a", "file"}}};
    for (const Entries& entries : cases) {
        SCOPED_TRACE(entries.empty() ? "no entry" : testing::PrintToString(entries.front().Name));
        host_->Put(host_->At(L"manual.zip"), entries);
        EXPECT_FALSE(Inspect(Command(host_->At(L"manual.zip"))));
        ExpectRefused(Command(host_->At(L"manual.zip")));
        EXPECT_TRUE(host_->Tree(host_->At(L"output folder")).empty());
    }
}

TEST_F(ArchivesContract, AManualHasAFileBelowEachTopLevelFolder) {
    const struct {
        Entries In;
        bool HoldsManual;
        std::wstring OnlyFolder = {};
    } cases[] = {{{{L"index.html", "page"}}, false},
                 {{{L"M\\"}}, false, L"M"},
                 {{{L"M\\contents\\"}}, false, L"M"},
                 {{{L"M\\a", "page"}, {L"N\\"}}, false},
                 {{{L"M\\"}, {L"M\\contents\\"}, {L"M\\contents\\a"}}, true, L"M"},
                 {{{L"M\\a\\b"}, {L"M\\a\\c"}, {L"N\\a"}}, true},
                 {{{L"N\\"}, {L"M\\a"}, {L"N\\a"}, {L"M\\b"}}, true},
                 {{{L"M\\a"}, {L"index.html"}}, true},
                 {{{L"M\\a", "file"}, {L"M\\a.files\\b", "file"}, {L"M\\ab\\a", "file"}}, true, L"M"}};
    int number = 0;
    for (const auto& [entries, holdsManual, onlyFolder] : cases) {
        const std::wstring archive = host_->At(std::to_wstring(++number) + L".zip");
        SCOPED_TRACE(number);
        host_->Put(archive, entries);
        const auto facts = Test(Command(archive));
        ASSERT_TRUE(facts);
        EXPECT_EQ(holdsManual, facts->HoldsManual);
        EXPECT_EQ(onlyFolder, facts->OnlyFolder);
        EXPECT_EQ(facts, Inspect(Command(archive)));
        ExpectExtracts(archive, entries);
    }
}

TEST_F(ArchivesContract, DamagedDataMissingArchivesAndOtherCommandsAreRefused) {
    const std::wstring archive = host_->At(L"manual.zip");
    host_->Put(archive, {{L"M\\a", "page"}, {L"M\\b", "damaged page", true}});
    EXPECT_TRUE(Inspect(Command(archive))) << "only the test sees the data";
    ExpectRefused(Command(archive));

    host_->Put(archive, {{L"M\\a", "page"}});
    for (const std::wstring& command : {Command(host_->At(L"missing.zip")), Command(host_->At(L"none\\manual.zip")),
                                        std::wstring(L"x"), L"e" + Command(archive).substr(1)}) {
        SCOPED_TRACE(testing::PrintToString(command));
        EXPECT_FALSE(Inspect(command));
        ExpectRefused(command);
    }
}

}  // namespace
}  // namespace mip
