// The catalogue with 200, 2,000 and 20,000 installed manuals and discs of a tenth of that, on files in memory: what the
// program and the engine themselves cost, without the disk.
//
//     tools/set-up.sh bench && tools/build.sh bench && build/bench/tools/bench/bench_catalogue
//
// The lines "BigO" tell the growth: N for scan, upgrade and open, lgN for a look-up.

#include <benchmark/benchmark.h>

#include <stdexcept>

#include "catalogue/modCarInfo.h"
#include "catalogue/modMDB.h"
#include "catalogue/modMdbUpgrade.h"
#include "tests/native/catalogue/CatalogueWorkshop.h"
#include "text/TextTools.h"

namespace mip {
namespace {

/// Publication numbers of one series: four characters, the revision digit, the language.
std::wstring PubNo(int number) {
    std::wstring prefix(4, L'A');
    for (std::size_t position = prefix.size(); number > 0; number /= 26) {
        prefix[--position] = static_cast<wchar_t>(L'A' + number % 26);
    }
    return prefix + L"0E";
}

std::vector<InstalledRecord> InstalledManuals(int count) {
    std::vector<InstalledRecord> records = SampleRecords(count);
    for (int number = 0; number < count; ++number) {
        InstalledRecord& record = records[static_cast<std::size_t>(number)];
        record.Pub_No = PubNo(number);
        record.INSPath = L"C:\\Manuals\\" + record.Pub_No;
    }
    return records;
}

/// A disc of manuals, every second of them the next version, with a comparison set, of one that is installed whole.
void PutDisc(CatalogueWorkshop& workshop, int installed) {
    for (int number = 0; number < installed / 10; ++number) {
        const bool isUpdate = number % 2 == 0;
        const std::wstring pubNo = PubNo(isUpdate ? number : installed + number);
        const std::wstring folder = L"D:\\" + pubNo;
        const std::string version = std::to_string(2 + number % 4);
        workshop.Tree.PutFile(folder + L"\\car_info.ci",
                              "[CAR_INFO]\r\nPub_No=" + ToUtf8(pubNo) + "\r\nVersion=" + version +
                                  "\r\nModel_desc=Kombi\r\nModel_ID=KX1\r\nLang=EN\r\nLdup=1\r\nYear=2019\r\n"
                                  "Country=GB\r\n");
        workshop.Tree.PutFile(folder + L"\\install\\compare\\index.html");
        if (isUpdate) {
            workshop.Tree.PutFile(L"C:\\Manuals\\" + pubNo + L"\\contents\\index.html");
        }
    }
}

void Require(bool done, const char* step) {
    if (!done) {
        throw std::runtime_error(step);
    }
}

void OpenCatalogue(benchmark::State& state) {
    CatalogueWorkshop workshop(InstalledManuals(static_cast<int>(state.range(0))));
    for (auto _ : state) {
        Require(workshop.StartProgram(), "open");
    }
    state.SetComplexityN(state.range(0));
}

void LookUp(benchmark::State& state) {
    const int count = static_cast<int>(state.range(0));
    CatalogueWorkshop workshop(InstalledManuals(count));
    int number = 0;
    for (auto _ : state) {
        number = (number + 7919) % count;
        Require(FindInstalledRecord(workshop.Program(), PubNo(number)).Found(), "look up");
    }
    state.SetComplexityN(state.range(0));
}

void ScanDisc(benchmark::State& state) {
    const int count = static_cast<int>(state.range(0));
    CatalogueWorkshop workshop(InstalledManuals(count));
    PutDisc(workshop, count);
    for (auto _ : state) {
        Require(ScanDiscCatalogue(workshop.Program()), "scan");
    }
    Require(workshop.Program().DiscCatalogue.LastIndex() == count / 10, "scan of all");
    state.SetComplexityN(state.range(0));
}

void UpgradeCatalogue(benchmark::State& state) {
    CatalogueWorkshop workshop(InstalledManuals(static_cast<int>(state.range(0))));
    const std::string old = workshop.Tree.BytesOf(Workshop::MdbPath);
    for (auto _ : state) {
        state.PauseTiming();
        workshop.Program().CatalogDb.reset();
        workshop.Tree.PutFile(Workshop::MdbPath, old);
        Require(workshop.StartProgram(), "open");
        state.ResumeTiming();
        Require(CheckDatabaseVersion(workshop.Program()), "upgrade");
    }
    state.SetComplexityN(state.range(0));
}

void AddSizes(benchmark::internal::Benchmark* bench) {
    bench->Arg(200)->Arg(2'000)->Arg(20'000)->Unit(benchmark::kMillisecond);
}

BENCHMARK(OpenCatalogue)->Apply(AddSizes)->Complexity(benchmark::oN);
BENCHMARK(LookUp)->Apply(AddSizes)->Unit(benchmark::kMicrosecond)->Complexity(benchmark::oLogN);
BENCHMARK(ScanDisc)->Apply(AddSizes)->Complexity(benchmark::oN);
BENCHMARK(UpgradeCatalogue)->Apply(AddSizes)->Complexity(benchmark::oN);

}  // namespace
}  // namespace mip
