#include "tests/native/install/DiscWorkshop.h"

#include <gtest/gtest.h>

#include "catalogue/modMDB.h"
#include "install/modManualInstall.h"

namespace mip {

namespace {

std::string Narrow(const std::wstring& text) {
    return {text.begin(), text.end()};
}

}  // namespace

void RecordingView::Tell(const std::wstring& word) {
    if (const auto seconds = (clock_.Time - last_) / std::chrono::seconds(1); seconds != 0) {
        Story += " +" + std::to_string(seconds) + "s";
    }
    last_ = clock_.Time;
    Story += (Story.empty() ? "" : " ") + Narrow(word);
}

void RecordingView::SetStep(Step step, const std::wstring& caption, StepState state) {
    Tell(L"\n" + std::to_wstring(static_cast<int>(step)) + L": " + caption + L" " + L"->+"[static_cast<int>(state)]);
}

void RecordingView::SetBar(Bar bar, const BarState& state) {
    Bars[bar] = state;
    const auto number = [](float value) { return L"," + std::to_wstring(static_cast<int>(value)); };
    const std::wstring shown = state.Visible ? number(state.Min) + number(state.Value) + number(state.Max) : L"-";
    Tell(L"ZCP"[static_cast<int>(bar)] + shown + (state.Visible == state.Enabled ? L"" : L"?"));
}

void RecordingView::SetProgress(const RunProgress& progress) {
    Progress = progress;
    Tell(std::to_wstring(static_cast<int>(progress.Part * 1000)) + (progress.Writing ? L"w" : L"") +
         (progress.Failed ? L"f" : L""));
}

std::optional<std::wstring> RecordingView::AskForFolder(const DiscCatalogueRecord&, const std::wstring& proposal) {
    EXPECT_FALSE(Busy);
    Tell(L"asked: " + proposal);
    ++FoldersAsked;
    return OnAskForFolder ? OnAskForFolder(proposal) : proposal;
}

DiscWorkshop::DiscWorkshop() {
    Tree.PutFile(L"D:\\programs\\man_manager\\setup.exe", "setup");
    Tree.PutFile(L"D:\\programs\\man_manager\\Manager.exe", "manager");
    Tree.PutFile(L"C:\\Vantor\\Manager.exe", "manager");
    View.OnAskForFolder = [](const std::wstring&) { return L"C:\\Manuals"; };
}

DiscWorkshop::Pages DiscWorkshop::ManualPages(const std::wstring& folder, const std::string& edition) {
    return {{folder + L"\\index.html", "frame of " + edition},
            {folder + L"\\contents\\index.html", "contents of " + edition},
            {folder + L"\\contents\\engine.html", "engine of " + edition},
            {folder + L"\\contents\\pictures\\engine.svg", "picture of " + edition}};
}

void DiscWorkshop::PutCarInfo(const std::wstring& pubNo, int version) {
    Tree.PutFile(L"D:\\" + pubNo + L"\\car_info.ci",
                 "[CAR_INFO]\r\nPub_No=" + Narrow(pubNo) + "\r\nVersion=" + std::to_string(version) +
                     "\r\nModel_desc=Aria\r\nModel_ID=AR1\r\nLang=EN\r\nLdup=0\r\nYear=2020\r\nKubun=\r\n"
                     "Country=GB\r\n");
}

void DiscWorkshop::PutArchiveManual(const std::wstring& pubNo, int version) {
    PutCarInfo(pubNo, version);
    Archives.Put(L"D:\\" + pubNo + L"\\install\\condense\\manual.zip",
                 ManualPages(pubNo, Narrow(pubNo) + " " + std::to_string(version)));
}

void DiscWorkshop::PutPdfManual(const std::wstring& pubNo, int version) {
    PutCarInfo(pubNo, version);
    Tree.PutFile(L"D:\\" + pubNo + L"\\contents\\" + pubNo + L".pdf", "%PDF-1.4");
    Tree.PutFile(L"D:\\" + pubNo + L"\\contents\\index.html", "opens the PDF");
}

void DiscWorkshop::PutComparisonSet(const std::wstring& pubNo, int version) {
    Tree.PutFile(L"D:\\" + pubNo + L"\\install\\compare\\engine.html",
                 "engine of " + Narrow(pubNo) + " " + std::to_string(version));
}

void DiscWorkshop::PutInstalledManual(const std::wstring& pubNo, int version) {
    for (const auto& [name, bytes] : ManualPages(pubNo, Narrow(pubNo) + " " + std::to_string(version))) {
        Tree.PutFile(L"C:\\Manuals\\" + name, bytes);
    }
    PutRow(pubNo, version, L"C:\\Manuals\\" + pubNo);
}

DiscWorkshop::QuietRun DiscWorkshop::RunQuietly() {
    Process process(Platform);
    process.Start({L"/VERYSILENT", L"/ACCEPT", L"/DIR=C:\\Manuals"});
    EXPECT_TRUE(process.Screens.Shown.empty());
    return {process.ExitCode, process.Program.Log.Text()};
}

bool DiscWorkshop::Install() {
    InstallationDriver driver(Program(), View, View);
    driver.FormLoad();
    return driver.RunInstallation();
}

std::map<std::wstring, DiscWorkshop::Row> DiscWorkshop::Rows() {
    Faults.Reset();
    clsMDB database(Platform);
    if (!database.Pcls_MdbOpen(MdbPath)) {
        throw std::runtime_error("the catalogue does not open");
    }
    std::map<std::wstring, Row> rows;
    for (const InstalledRecord& record : ReadAllInstalled(Program(), database, 0)) {
        rows[record.Pub_No] = {record.Version, record.INSPath, record.Adjust_flg};
    }
    return rows;
}

}  // namespace mip
