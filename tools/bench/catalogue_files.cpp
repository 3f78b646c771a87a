// Times the catalogue's work on real files, without the program's pauses, which are said beside it:
//     catalogue_files scan DISC COMPUTER         the disc's manuals against the catalogue in COMPUTER
//     catalogue_files upgrade DISC COMPUTER      that catalogue by the new one in DISC
// COMPUTER is a folder with kvx3.mdb, DISC one that ends in a backslash, with kvx3new.mdb.

#include <cstdio>
#include <memory>
#include <string>
#include <string_view>

#include "app/Program.h"
#include "catalogue/clsMDB.h"
#include "catalogue/modCarInfo.h"
#include "catalogue/modMdbUpgrade.h"
#include "platform/windows/ComApartment.h"
#include "security/modGetUsersName.h"
#include "tools/bench/Measure.h"
#include "tools/bench/UnhurriedPlatform.h"

namespace mip {
namespace {

bool Start(Program& program, const std::wstring& disc, const std::wstring& computer) {
    program.Paths.InstallDir = computer;
    program.Paths.ProgramFolder = disc;
    program.Paths.DiscRootPath = disc;
    program.Paths.MdbPath = computer + L"\\kvx3.mdb";
    program.Settings.Kvx3MdbName = L"kvx3.mdb";
    program.Settings.Kvx3NewMdbName = L"kvx3new.mdb";
    program.Settings.Columns = {10, 60, 10, 4, 4, 20, 20, 20, 10};
    program.Identity.FullAccessTrustee = GetUsersGroupName(program.Platform);
    program.CatalogDb = std::make_unique<clsMDB>(program.Platform);
    return program.CatalogDb->Pcls_MdbOpen(program.Paths.MdbPath);
}

int Run(std::string_view work, const std::wstring& disc, const std::wstring& computer) {
    const ComApartment apartment;
    UnhurriedPlatform real;
    Program program(real.Platform);
    bool done = Start(program, disc, computer);
    const double seconds = SecondsOf(
        [&] { done = done && (work == "scan" ? ScanDiscCatalogue(program) : CheckDatabaseVersion(program)); });
    std::printf("%s %.4f manuals %d pauses %.0f\n", std::string(work).c_str(), seconds,
                program.DiscCatalogue.LastIndex(), std::chrono::duration<double>(real.Clock.Total).count());
    return done ? 0 : 1;
}

}  // namespace
}  // namespace mip

int main(int count, char** arguments) {
    if (count != 4) {
        std::puts("catalogue_files scan|upgrade DISC COMPUTER");
        return 2;
    }
    return mip::Run(arguments[1], mip::Widen(arguments[2]), mip::Widen(arguments[3]));
}
