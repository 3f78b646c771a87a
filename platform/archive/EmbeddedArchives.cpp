#include "platform/archive/EmbeddedArchives.h"

#include <exception>
#include <memory>
#include <optional>

#include "platform/Clusters.h"
#include "platform/PlatformError.h"
#include "platform/archive/ArchiveSystem.h"
#include "platform/archive/SevenZipCommand.h"
#include "platform/archive/Unpacking.h"
#include "platform/archive/ZipDirectory.h"

namespace mip {

namespace {

constexpr std::int32_t Done = 0;
constexpr std::int32_t Failed = 2;
constexpr std::int32_t UnknownCommand = 7;

/// A path may come quoted, as it would stand in a command line.
std::wstring Unquoted(std::wstring path) {
    std::erase(path, L'"');
    return path;
}

}  // namespace

std::int32_t EmbeddedArchives::SevenZip(const std::wstring& commandLine) {
    try {
        const auto command = ParseSevenZipCommand(commandLine);
        if (!command) {
            return UnknownCommand;
        }
        ExtractArchiveTo(command->Archive, command->OutputFolder, system_, clock_);
        return Done;
    } catch (const std::exception&) {
        return Failed;
    }
}

bool EmbeddedArchives::IsWhole(const std::wstring& archive) {
    try {
        return TestArchive(Unquoted(archive), system_, clock_) > 0;
    } catch (const std::exception&) {
        return false;
    }
}

std::uint64_t EmbeddedArchives::DeclaredSize(const std::wstring& archive) {
    const auto bytes = system_.OpenArchive(Unquoted(archive));
    std::uint64_t total = 0;
    VisitZipRecords(*bytes, FindZipDirectory(*bytes), [&](const ZipRecord& record) {
        const std::uint64_t size = SizeInClusters(record.Size);
        total = size > UINT64_MAX - total ? UINT64_MAX : total + size;
    });
    return total;
}

}  // namespace mip
