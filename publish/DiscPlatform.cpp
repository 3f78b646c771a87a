#include "publish/DiscPlatform.h"

#include <stdexcept>
#include <utility>

#include "app/modFile.h"
#include "catalogue/clsMDB.h"
#include "publish/PathText.h"
#include "text/ProfileText.h"

namespace mip {

std::wstring DiscProfileFiles::ReadString(const std::wstring& section, const std::wstring& key,
                                          const std::wstring& file, std::size_t capacity) {
    if (!files_.Exists(file) || capacity == 0) {
        return {};
    }
    const std::string bytes = files_.Read(file);
    const std::wstring text = IsUtf16Profile(bytes) ? Utf16ProfileText(bytes) : FromUtf8(bytes);
    return ProfileValue(text, section, key).substr(0, capacity - 1);
}

std::unique_ptr<DatabaseConnection> DiscEngine::Open(const std::wstring& path) {
    if (path == EmptyCatalogue) {
        return engine_.Create(L":memory:", 1);
    }
    const auto file = disc_.Find(path);
    if (!file) {
        throw PlatformError("opening a database", path, errors::FileNotFound);
    }
    return engine_.Open(TextOf(*file));
}

std::unique_ptr<DatabaseConnection> NoJetEngine::Open(const std::wstring& path) {
    constexpr std::uint32_t NotSupported = 50;
    throw PlatformError("opening a Jet database", path, NotSupported);
}

DiscPlatform::DiscPlatform(std::filesystem::path root)
    : folder_(std::move(root)),
      platform_{.Files = files_,
                .Folders = folders_,
                .Volumes = computer_,
                .FileVersions = computer_,
                .ProfileFiles = profiles_,
                .Registry = computer_,
                .Processes = computer_,
                .Clock = computer_,
                .Computer = computer_,
                .AccountNames = computer_,
                .AccessControl = computer_,
                .Shell = computer_,
                .Browsers = computer_,
                .Archives = archives_,
                .JetEngine = jet_,
                .SqliteEngine = sqlite_,
                .MessageBoxes = computer_} {}

DiscProgram::DiscProgram(const std::filesystem::path& root) : Disc(root), Program(Disc.Get()) {
    Paths& paths = Program.Paths;
    paths.DiscRootPath = L"D:\\";
    paths.SecondDiscBase = L"D:\\";
    paths.ProgramFolder = Program.Platform.Computer.ProgramFolder();
    paths.SysDirPath = JoinPath(paths.ProgramFolder, L"SysDir");
    paths.SysParameterPath = JoinPath(paths.SysDirPath, L"SysParameter.ini");
    paths.RmDirBatPath = JoinPath(paths.SysDirPath, L"RmDir.bat");
    paths.UnZipTempPath = L"C:\\Temp";
    Program.Identity.LanguageCode = L"09";
    Program.CatalogDb = std::make_shared<clsMDB>(Program.Platform);
    if (!Program.CatalogDb->Pcls_MdbOpen(EmptyCatalogue)) {
        throw std::runtime_error("no database in memory");
    }
}

}  // namespace mip
