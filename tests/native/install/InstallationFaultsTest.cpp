#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <tuple>

#include "app/modFile.h"
#include "tests/native/install/DiscWorkshop.h"

namespace mip {
namespace {

// A disc with a new manual, an update, a differential update, a PDF manual and a later edition of an installed one.
void ArrangeDisc(DiscWorkshop& shop) {
    shop.PutInstalledManual(L"BBBB1MM", 1);
    shop.PutInstalledManual(L"CCCC1MM", 4);
    shop.PutInstalledManual(L"EEEE0MM", 7);
    shop.PutArchiveManual(L"AAAA1MM", 1);
    shop.PutArchiveManual(L"BBBB1MM", 3);
    shop.PutArchiveManual(L"CCCC1MM", 5);
    shop.PutComparisonSet(L"CCCC1MM", 5);
    shop.PutPdfManual(L"DDDD1MM", 1);
    shop.PutArchiveManual(L"EEEE2MM", 1);
}

// An older manager program, and setups that succeed when they are run.
void ArrangeSetups(DiscWorkshop& shop) {
    FileTree& tree = shop.Tree;
    tree.Find(L"C:\\Vantor\\Manager.exe")->Modified -= std::chrono::hours(1);
    shop.Processes.On(L"D:\\programs\\man_manager\\setup.exe", [&tree](const std::wstring&) {
        tree.PutFile(L"C:\\Vantor\\Manager.exe", "manager");
        return ScriptedEnd{};
    });
    for (const auto& [name, folder] : {std::pair(L"manual_link", L"Link"), std::pair(L"View", L"View")}) {
        const std::wstring setup = std::wstring(L"D:\\programs\\") + name + L"\\setup.exe";
        const std::wstring log = std::wstring(L"C:\\Program Files\\Vantor\\Korvex\\") + folder + L"\\setup.log";
        tree.PutFile(setup);
        shop.Processes.On(setup, [&tree, log](const std::wstring&) {
            tree.PutFile(log, "0\r\n");
            return ScriptedEnd{};
        });
    }
}

/// Whether the files of a row are those of exactly the edition that it names.
bool IsWhole(DiscWorkshop& shop, const std::wstring& pubNo, const DiscWorkshop::Row& row) {
    FileTree& tree = shop.Tree;
    if (pubNo == L"DDDD1MM") {
        const std::wstring pdf = row.Path + L"\\contents\\DDDD1MM.pdf";
        return tree.HasFile(pdf) && tree.BytesOf(pdf) == "%PDF-1.4";
    }
    const auto isThere = [&](const std::string& version, bool onlyChangedPage) {
        const auto pages = DiscWorkshop::ManualPages(L"", std::string(pubNo.begin(), pubNo.end()) + " " + version);
        return std::ranges::all_of(pages, [&](const auto& page) {
            const std::wstring path = row.Path + page.first;
            const bool counts = page.first.ends_with(L"engine.html") == onlyChangedPage;
            return !counts || (tree.HasFile(path) && tree.BytesOf(path) == page.second);
        });
    };
    const std::string version(row.Version.begin(), row.Version.end());
    // The comparison set of CCCC1MM brings one page; the others may be those of the edition before.
    const bool carries = pubNo == L"CCCC1MM" && version == "5" && isThere("4", false);
    return isThere(version, true) && (carries || isThere(version, false));
}

/// What the next run makes of a row: one that it takes for unusable is installed in full.
bool CountsAsUsable(DiscWorkshop& shop, const DiscWorkshop::Row& row) {
    return row.AdjustFlag != L"1" && shop.Tree.HasFile(row.Path + L"\\contents\\index.html");
}

void ExpectNoRowLies(DiscWorkshop& shop) {
    for (const auto& [pubNo, row] : shop.Rows()) {
        const bool whole = IsWhole(shop, pubNo, row);
        EXPECT_TRUE(whole || !CountsAsUsable(shop, row))
            << std::string(pubNo.begin(), pubNo.end()) << " is recorded as usable, and is not whole";
    }
}

std::map<std::wstring, std::string> OutsideTheLibrary(DiscWorkshop& shop) {
    auto files = shop.Tree.Snapshot(L"C:\\");
    std::erase_if(files, [](const auto& file) {
        return file.first.starts_with(L"C:\\Manuals") || file.first.starts_with(L"C:\\Vantor") ||
               file.first.starts_with(L"C:\\man_info") || file.first.starts_with(L"C:\\Program Files\\");
    });
    return files;
}

/// Most faults leave the computer in one of a few states. Whether this one is met for the first time.
bool IsFirstOfItsKind(DiscWorkshop& shop) {
    static std::set<std::pair<std::map<std::wstring, std::string>, FakeRegistry::Keys>> met;
    return met.emplace(shop.Tree.Snapshot(L"C:\\"), shop.Registry.All()).second;
}

/// Starts the program anew on the computer as the fault left it, and installs.
void ExpectNextRunRepairs(DiscWorkshop& shop) {
    shop.Faults.Reset();
    const DiscWorkshop::QuietRun run = shop.RunQuietly();
    EXPECT_EQ(run.ExitCode, 0U) << testing::PrintToString(run.Log);
    const auto rows = shop.Rows();
    EXPECT_EQ(rows.size(), 5U);
    EXPECT_FALSE(rows.contains(L"EEEE0MM"));
    for (const auto& [pubNo, row] : rows) {
        EXPECT_TRUE(IsWhole(shop, pubNo, row) && row.AdjustFlag == L"0") << std::string(pubNo.begin(), pubNo.end());
    }
}

using Arming = void (Faults::*)(std::size_t);

/// The calls are dealt out among this many tests, which run side by side.
constexpr std::size_t Shares = 4;

class InstallationFaults : public testing::TestWithParam<std::tuple<Arming, std::size_t>> {};

TEST_P(InstallationFaults, LeaveNoRowThatLiesAndAreRepairedByTheNextRun) {
    const auto [arm, share] = GetParam();
    std::size_t n = share + 1;
    for (;; n += Shares) {
        SCOPED_TRACE("call " + std::to_string(n));
        DiscWorkshop shop;
        ArrangeDisc(shop);
        ArrangeSetups(shop);
        shop.Program().CatalogDb.reset();
        // Each of the hundred texts that a start keeps would be a call of its own, and none changes anything.
        shop.Tree.Erase(Workshop::Messages);
        const auto outside = OutsideTheLibrary(shop);
        DiscWorkshop::QuietRun run;
        bool cut = false;
        (shop.Faults.*arm)(n);
        try {
            run = shop.RunQuietly();
        } catch (const PowerCut&) {
            cut = true;
            shop.Tree.SettleAfterPowerCut(FileTree::Unflushed::EverySecondPage);
        }
        const bool hit = shop.Faults.Hit();
        const std::string operation = shop.Faults.HitOperation();
        SCOPED_TRACE(operation);
        shop.Faults.Reset();
        EXPECT_TRUE(shop.StartProgram());
        shop.Program().CatalogDb.reset();
        ExpectNoRowLies(shop);
        EXPECT_EQ(OutsideTheLibrary(shop), outside);
        if (!cut) {
            const bool succeeded = run.ExitCode == 0U;
            EXPECT_TRUE(run.ExitCode) << "an exit code, whatever happens";
            const bool isFile = operation.starts_with("Files.") || operation.starts_with("Folders.");
            const bool isTold = !isFile || operation.ends_with("Exists") || operation.ends_with("IsInUse");
            const bool hasCause = run.Log.find(L" failed with code ") != std::wstring::npos;
            EXPECT_TRUE(succeeded || isTold || hasCause) << testing::PrintToString(run.Log);
            // What cannot be seen counts as not there: a manual without its car_info.ci is no manual.
            if (succeeded && !operation.ends_with(".Exists")) {
                EXPECT_EQ(shop.Rows().size(), 5U);
            }
        }
        if (IsFirstOfItsKind(shop) || !hit) {
            ExpectNextRunRepairs(shop);
        }
        if (!hit || testing::Test::HasFailure()) {
            break;
        }
    }
    EXPECT_GT(n, 200U);
}

auto EveryShareOf(Arming arm) {
    return testing::Combine(testing::Values(arm), testing::Range<std::size_t>(0, Shares));
}

std::string ShareName(const testing::TestParamInfo<std::tuple<Arming, std::size_t>>& info) {
    return "Share" + std::to_string(std::get<1>(info.param) + 1) + "Of" + std::to_string(Shares);
}

INSTANTIATE_TEST_SUITE_P(Once, InstallationFaults, EveryShareOf(&Faults::FailCall), ShareName);
INSTANTIATE_TEST_SUITE_P(FromThenOn, InstallationFaults, EveryShareOf(&Faults::FailFrom), ShareName);
INSTANTIATE_TEST_SUITE_P(PowerCut, InstallationFaults, EveryShareOf(&Faults::CutPowerAt), ShareName);

}  // namespace
}  // namespace mip
