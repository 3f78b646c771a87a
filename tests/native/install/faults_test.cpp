#include <gtest/gtest.h>

#include <tuple>

#include "app/modFile.h"
#include "catalogue/modMdbUpgrade.h"
#include "tests/native/install/Workshop.h"

namespace mip {
namespace {

// A disc with a new manual, an update, a differential update, a PDF manual and a later edition of an installed one.
void ArrangeDisc(Workshop& workshop) {
    workshop.PutInstalledManual(L"BBBB1MM", 1);
    workshop.PutInstalledManual(L"CCCC1MM", 4);
    workshop.PutInstalledManual(L"EEEE0MM", 7);
    workshop.PutArchiveManual(L"AAAA1MM", 1);
    workshop.PutArchiveManual(L"BBBB1MM", 3);
    workshop.PutArchiveManual(L"CCCC1MM", 5);
    workshop.PutComparisonSet(L"CCCC1MM", 5);
    workshop.PutPdfManual(L"DDDD1MM", 1);
    workshop.PutArchiveManual(L"EEEE2MM", 1);
}

/// Whether the files of a row are those of exactly the edition that it names.
bool IsWhole(Workshop& workshop, const std::wstring& pubNo, const Workshop::Row& row) {
    FileTree& tree = workshop.Windows.Tree;
    if (pubNo == L"DDDD1MM") {
        return tree.HasFile(row.Path + L"\\contents\\DDDD1MM.pdf");
    }
    const std::string edition =
        std::string(pubNo.begin(), pubNo.end()) + " " + std::string(row.Version.begin(), row.Version.end());
    for (const auto& [name, bytes] : Workshop::ManualPages(pubNo, edition)) {
        const std::wstring path = GetParentFolder(row.Path) + L"\\" + name;
        // The comparison set of CCCC1MM brings one page; the others are those of the edition before.
        const bool carried = pubNo == L"CCCC1MM" && row.Version == L"5" && !name.ends_with(L"engine.html");
        if (!tree.HasFile(path) || (!carried && tree.BytesOf(path) != bytes)) {
            return false;
        }
    }
    return true;
}

/// What the next run makes of a row: one that it takes for unusable is installed in full.
bool CountsAsUsable(Workshop& workshop, const Workshop::Row& row) {
    return row.AdjustFlag != L"1" && workshop.Windows.Tree.HasFile(row.Path + L"\\contents\\index.html");
}

void ExpectNoRowLies(Workshop& workshop) {
    for (const auto& [pubNo, row] : workshop.Rows()) {
        const bool whole = IsWhole(workshop, pubNo, row);
        EXPECT_TRUE(whole || !CountsAsUsable(workshop, row))
            << std::string(pubNo.begin(), pubNo.end()) << " is recorded as usable, and is not whole";
    }
}

std::map<std::wstring, std::string> OutsideTheLibrary(Workshop& workshop) {
    auto files = workshop.Windows.Tree.Snapshot(L"C:\\");
    std::erase_if(files, [](const auto& file) {
        return file.first.starts_with(L"C:\\Manuals") || file.first.starts_with(L"C:\\Vantor") ||
               file.first.starts_with(L"C:\\man_info");
    });
    return files;
}

/// Starts the program anew on the computer as the fault left it, and installs.
void ExpectNextRunRepairs(Workshop& workshop) {
    workshop.Windows.Faults.Reset();
    RecoverInterruptedUpgrade(workshop.Run);
    workshop.OpenCatalogue(workshop.Run);
    EXPECT_TRUE(workshop.Install()) << testing::PrintToString(workshop.Run.Outcome.ResultMessage);
    const auto rows = workshop.Rows();
    EXPECT_EQ(rows.size(), 5U);
    EXPECT_FALSE(rows.contains(L"EEEE0MM"));
    for (const auto& [pubNo, row] : rows) {
        EXPECT_TRUE(IsWhole(workshop, pubNo, row) && row.AdjustFlag == L"0") << std::string(pubNo.begin(), pubNo.end());
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
        Workshop workshop;
        ArrangeDisc(workshop);
        const auto outside = OutsideTheLibrary(workshop);
        bool succeeded = false;
        bool cut = false;
        (workshop.Windows.Faults.*arm)(n);
        try {
            succeeded = workshop.Install();
        } catch (const PowerCut&) {
            cut = true;
            workshop.Run.CatalogDb.reset();
            workshop.Vfs.SettleAfterPowerCut(TreeVfs::Unflushed::EverySecondPage);
        }
        const bool hit = workshop.Windows.Faults.Hit();
        const std::string operation = workshop.Windows.Faults.HitOperation();
        SCOPED_TRACE(operation);
        workshop.Run.CatalogDb.reset();
        workshop.Windows.Faults.Reset();
        RecoverInterruptedUpgrade(workshop.Run);
        ExpectNoRowLies(workshop);
        EXPECT_EQ(OutsideTheLibrary(workshop), outside);
        if (!cut) {
            EXPECT_TRUE(succeeded || !workshop.Run.Outcome.ResultMessage.empty()) << "a failed run says so";
            EXPECT_EQ(succeeded, workshop.Run.Outcome.ExitCode == 0);
            // What cannot be seen counts as not there: a manual without its car_info.ci is no manual.
            if (succeeded && !operation.ends_with(".Exists")) {
                EXPECT_EQ(workshop.Rows().size(), 5U);
            }
        }
        ExpectNextRunRepairs(workshop);
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
