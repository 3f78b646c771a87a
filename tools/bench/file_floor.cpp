// The least that the system takes for a folder's files, by its bare calls: file_floor FOLDER NEW-FOLDER THREADS [FLUSH]
// Prints the seconds for reading every file, for reading each as an initialisation file by the system's service, and
// for writing each as a new one, the files shared among the threads. FLUSH also brings the new files to the drive:
// "close" flushes each before it is closed, "walk" opens and flushes each afterwards, "volume" flushes drive C: as a
// whole.

#include <windows.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

#include "tools/bench/Measure.h"

namespace mip {
namespace {

namespace fs = std::filesystem;

struct Content {
    std::wstring Name;
    std::string Bytes;
};

/// The names below the folder, each with room for its file's bytes.
std::vector<Content> List(const fs::path& folder) {
    std::vector<Content> files;
    for (const auto& entry : fs::recursive_directory_iterator(folder)) {
        if (entry.is_regular_file()) {
            files.push_back({entry.path().wstring().substr(folder.wstring().size()),
                             std::string(static_cast<std::size_t>(entry.file_size()), '\0')});
        }
    }
    return files;
}

void CopyFolders(const fs::path& source, const fs::path& destination) {
    fs::create_directories(destination);
    for (const auto& entry : fs::recursive_directory_iterator(source)) {
        if (entry.is_directory()) {
            fs::create_directory(destination.wstring() + entry.path().wstring().substr(source.wstring().size()));
        }
    }
}

void Require(bool condition, const char* operation) {
    if (!condition) {
        std::printf("%s failed: %lu\n", operation, GetLastError());
        std::exit(1);
    }
}

void Read(const std::wstring& path, std::string& bytes) {
    const HANDLE file = CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
    Require(file != INVALID_HANDLE_VALUE, "opening");
    DWORD read = 0;
    Require(ReadFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &read, nullptr), "reading");
    CloseHandle(file);
}

void ReadAsProfile(const std::wstring& path) {
    wchar_t lines[1024];
    GetPrivateProfileSectionW(L"CAR_INFO", lines, 1024, path.c_str());
}

void Flush(const std::wstring& path) {
    const HANDLE file = CreateFileW(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                    OPEN_EXISTING, 0, nullptr);
    Require(file != INVALID_HANDLE_VALUE, "opening to flush");
    Require(FlushFileBuffers(file), "flushing");
    CloseHandle(file);
}

void Write(const std::wstring& path, const std::string& bytes, bool flush) {
    const HANDLE file = CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, 0, nullptr);
    Require(file != INVALID_HANDLE_VALUE, "creating");
    DWORD written = 0;
    Require(WriteFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr), "writing");
    FILE_BASIC_INFO basic{};
    basic.LastWriteTime.QuadPart = 130'000'000'000'000'000;
    Require(SetFileInformationByHandle(file, FileBasicInfo, &basic, sizeof basic), "setting the time");
    Require(!flush || FlushFileBuffers(file), "flushing");
    CloseHandle(file);
}

double SecondsOnThreads(std::vector<Content>& files, unsigned threads, const auto& work) {
    std::atomic<std::size_t> next = 0;
    return SecondsOf([&] {
        std::vector<std::jthread> workers;
        for (unsigned i = 0; i < threads; ++i) {
            workers.emplace_back([&] {
                for (std::size_t index = next++; index < files.size(); index = next++) {
                    work(files[index]);
                }
            });
        }
    });
}

}  // namespace
}  // namespace mip

int main(int count, char** arguments) {
    using namespace mip;
    if (count != 4 && count != 5) {
        std::puts("file_floor FOLDER NEW-FOLDER THREADS [close|walk|volume]");
        return 2;
    }
    const std::wstring source = Widen(arguments[1]);
    const std::wstring destination = Widen(arguments[2]);
    const auto threads = static_cast<unsigned>(std::atoi(arguments[3]));
    CopyFolders(source, destination);
    std::vector<Content> files = List(source);
    const double reading =
        SecondsOnThreads(files, threads, [&](Content& file) { Read(source + file.Name, file.Bytes); });
    const double profiles =
        SecondsOnThreads(files, threads, [&](const Content& file) { ReadAsProfile(source + file.Name); });
    const std::string flush = count == 5 ? arguments[4] : "";
    const double writing = SecondsOnThreads(
        files, threads, [&](Content& file) { Write(destination + file.Name, file.Bytes, flush == "close"); });
    double flushing = 0;
    if (flush == "walk") {
        flushing = SecondsOnThreads(files, threads, [&](Content& file) { Flush(destination + file.Name); });
    } else if (flush == "volume") {
        flushing = SecondsOf([] { Flush(L"\\\\.\\C:"); });
    }
    std::printf("files %u read %.4f profile %.4f write %.4f flush %.4f\n", static_cast<unsigned>(files.size()), reading,
                profiles, writing, flushing);
    return 0;
}
