// The real program with its command-line switches: a run without questions, and the maintenance runs.

#include <gtest/gtest.h>

#include <filesystem>

#include <windows.h>

#include "forms/ControlIds.h"
#include "tools/screenshots/WorkshopUser.h"

namespace mip {
namespace {

constexpr wchar_t DiagnosisFolder[] = L"C:\\Other manuals\\Diagnosis2023_PDF";
constexpr wchar_t Kestren[] = L"K5150MM";

/// Runs the program to its end, watching that it shows the screen with this control and no other. Returns the code.
DWORD RunWithScreen(const std::wstring& switches, int control, const std::function<void(HWND)>& look) {
    const WorkshopUser user(L"/LANG=09 " + switches);
    HWND seen = nullptr;
    const DWORD exitCode = user.WaitForEnd([&] {
        const HWND screen = user.FindScreen(control);
        if (screen != nullptr && seen == nullptr) {
            seen = screen;
            look(screen);
        }
        EXPECT_EQ(user.FindScreen(ids::B_OK), nullptr) << "a question or a result";
    });
    EXPECT_NE(seen, nullptr) << "the screen was not shown";
    return exitCode;
}

/// A control's text as the system keeps it: the busy program answers no question.
std::wstring KeptTextOf(HWND control) {
    wchar_t text[256]{};
    InternalGetWindowText(control, text, 256);
    return text;
}

DWORD Maintain(const std::wstring& maintenance) {
    return RunWithScreen(maintenance, ids::L_TransactionMsg, [](HWND screen) {
        EXPECT_EQ(KeptTextOf(GetDlgItem(screen, ids::L_TransactionMsg)), Message(94));
        EXPECT_EQ(KeptTextOf(GetDlgItem(screen, ids::Label1)), Message(95));
    });
}

TEST(Switches, SilentInstallationThenCheckThenRemoval) {
    KeepOnDiscAlone({L"Diagnosis2023_PDF"});
    EXPECT_EQ(RunWithScreen(L"/SILENT /ACCEPT \"/DIR=C:\\Other manuals\"", ids::L_STEP + 2, [](HWND) {}), 0U);
    EXPECT_EQ(ReadCatalogue().at(L"K8040PD"), (Row{L"2", DiagnosisFolder, L"0"}));
    EXPECT_TRUE(IsDiscEdition(DiagnosisFolder, L"Diagnosis2023_PDF"));

    const std::string catalogue = BytesOf(Catalogue);
    EXPECT_EQ(Maintain(L"/CHECK"), 0U);
    EXPECT_TRUE(BytesOf(Catalogue) == catalogue) << "every manual is there";
    EXPECT_EQ(Maintain(L"/REMOVE=K0000XX"), 1U);
    EXPECT_TRUE(BytesOf(Catalogue) == catalogue) << "no such manual";

    auto rows = ReadCatalogue();
    const std::wstring folder = rows.at(Kestren).Path;
    EXPECT_EQ(Maintain(std::wstring(L"/REMOVE=") + Kestren), 0U);
    EXPECT_FALSE(Exists(folder));
    rows.erase(Kestren);
    EXPECT_EQ(ReadCatalogue(), rows);

    std::filesystem::remove_all(DiagnosisFolder);
    EXPECT_EQ(Maintain(L"/CHECK"), 0U);
    rows.at(L"K8040PD").Adjust = L"1";
    EXPECT_EQ(ReadCatalogue(), rows) << "marked at the first check";
}

}  // namespace
}  // namespace mip
