#include "tools/screenshots/WorkshopUser.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <ostream>
#include <stdexcept>

#include "forms/ControlIds.h"
#include "platform/sqlite/SqliteEngine.h"

namespace mip {

namespace fs = std::filesystem;

void PrintTo(const Row& row, std::ostream* out) {
    *out << "version " << fs::path(row.Version).string() << ", " << fs::path(row.Path).string() << ", adjust "
         << fs::path(row.Adjust).string();
}

std::map<std::wstring, Row> ReadCatalogue() {
    std::map<std::wstring, Row> rows;
    const auto connection = SqliteEngine().Open(Catalogue);
    const auto recordset = connection->Query(L"SELECT Pub_No,Version,INSPath,Adjust_flg FROM M_manage");
    for (; !recordset->AtEnd(); recordset->MoveNext()) {
        const auto text = [&](std::int32_t column) { return std::get<std::wstring>(recordset->Field(column)); };
        rows[text(0)] = {text(1), text(2), text(3)};
    }
    return rows;
}

std::map<std::wstring, std::string> FilesBelow(const std::wstring& folder) {
    std::map<std::wstring, std::string> files;
    for (const auto& entry : fs::recursive_directory_iterator(folder)) {
        if (entry.is_regular_file()) {
            files[entry.path().wstring()] = BytesOf(entry.path().wstring());
        }
    }
    return files;
}

std::string BytesOf(const std::wstring& path) {
    std::ifstream file(fs::path(path), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

void WriteBytes(const std::wstring& path, const std::string& bytes) {
    fs::create_directories(fs::path(path).parent_path());
    std::ofstream(fs::path(path), std::ios::binary) << bytes;
}

bool Exists(const std::wstring& path) {
    return GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES;
}

std::wstring Message(int number) {
    wchar_t text[256]{};
    const std::wstring digits = std::to_wstring(number);
    const std::wstring key = L"M" + std::wstring(3 - digits.size(), L'0') + digits;
    GetPrivateProfileStringW(L"MESSAGE", key.c_str(), L"", text, 256, L"D:\\programs\\setup\\SysDir\\M09.ini");
    return text;
}

std::wstring FailureTexts(int message) {
    return Message(message) + L"\n" + Message(24);
}

void KeepOnDisc(std::initializer_list<std::wstring> folders) {
    for (const auto& entry : fs::directory_iterator(L"D:\\")) {
        const bool isManual = fs::exists(entry.path() / L"car_info.ci");
        if (isManual && std::ranges::find(folders, entry.path().filename().wstring()) == folders.end()) {
            fs::remove_all(entry.path());
        }
    }
}

void KeepOnDiscAlone(std::initializer_list<std::wstring> folders) {
    KeepOnDisc(folders);
    fs::remove(L"D:\\programs\\manual_link\\setup.exe");
    fs::remove(L"D:\\programs\\View\\setup.exe");
    fs::copy_file(Catalogue, L"D:\\programs\\setup\\kvx3new.mdb", fs::copy_options::overwrite_existing);
}

bool IsDiscEdition(const std::wstring& installedFolder, const std::wstring& manual) {
    const std::wstring onDisc = L"D:\\" + manual;
    const auto pages = FilesBelow(onDisc);
    return std::ranges::all_of(pages, [&](const auto& page) {
        const std::wstring name = page.first.substr(onDisc.size());
        const bool isPage = name != L"\\car_info.ci" && !name.starts_with(L"\\install\\");
        return !isPage || BytesOf(installedFolder + name) == page.second;
    });
}

std::string RunOutside(const std::string& command) {
    const std::wstring status = L"C:\\outside\\status";
    fs::remove(status);
    WriteBytes(L"C:\\outside\\command", "cd \"$WINEPREFIX/drive_c\"\n(" + command + "\n) >outside/output 2>&1\n" +
                                            "echo $? >outside/new\nmv outside/new outside/status\n");
    const WindowDriver shell(L"Z:\\bin\\sh -c \". \\\"$WINEPREFIX/drive_c/outside/command\\\"\"");
    shell.WaitUntil("a command outside Windows", [&] { return Exists(status); });
    const std::string output = BytesOf(L"C:\\outside\\output");
    if (BytesOf(status) != "0\n") {
        throw std::runtime_error(output);
    }
    return output;
}

WorkshopUser::WorkshopUser(const std::wstring& switches, Input input)
    : WindowDriver(L"\"" + std::wstring(ProgramFile) + L"\" " + switches, input) {}

void WorkshopUser::Agree() const {
    Press(WaitForScreen(ids::cmdStartInstall), ids::cmdStartInstall);
    const HWND agreement = WaitForScreen(ids::T_CONTRACT);
    Press(agreement, ids::O_Value + 1);
    Press(agreement, ids::B_OK);
    WaitUntilGone(agreement);
}

HWND WorkshopUser::WaitForProgress() const {
    HWND progress = nullptr;
    WaitUntil("the progress screen", [&] {
        progress = FindScreen(ids::L_STEP + 2);
        return progress != nullptr;
    });
    return progress;
}

int WorkshopUser::WaitForResult(const std::function<void(HWND)>& answer) const {
    int questions = 0;
    const auto hasResult = [&] {
        if (const HWND directory = FindScreen(ids::L_InstalPath)) {
            ++questions;
            answer(directory);
            WaitUntilGone(directory);
        }
        if (ExitCode()) {
            throw std::runtime_error("the program ended during the installation");
        }
        return FindScreen(ids::vaSpread) != nullptr;
    };
    WaitUntil("the result screen", hasResult, LongPatience);
    return questions;
}

int WorkshopUser::WaitForResult() const {
    return WaitForResult([this](HWND directory) { Press(directory, ids::B_OK); });
}

std::wstring WorkshopUser::ResultTexts() const {
    const HWND result = WaitForScreen(ids::vaSpread);
    return TextOf(result, ids::L_ErrorMsg + 1) + L"\n" + TextOf(result, ids::L_ErrorMsg + 2);
}

void WorkshopUser::CloseResult() const {
    const HWND result = WaitForScreen(ids::vaSpread);
    Press(result, ids::B_OK);
    WaitUntilGone(result);
}

DWORD WorkshopUser::Leave() const {
    CloseResult();
    WaitUntil("the menu or the end", [this] { return ExitCode() || FindScreen(ids::cmdStartInstall) != nullptr; });
    if (!ExitCode()) {
        CloseByTitleBar(WaitForScreen(ids::cmdStartInstall));
        Press(WaitForScreen(ids::L_TarmMsg), ids::B_OK);
    }
    return WaitForEnd();
}

void WorkshopUser::Install() const {
    Agree();
    WaitForResult();
}

}  // namespace mip
