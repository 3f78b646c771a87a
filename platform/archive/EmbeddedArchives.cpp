#include "platform/archive/EmbeddedArchives.h"

#include <exception>

#include "platform/archive/BadArchive.h"
#include "platform/archive/SevenZipCommand.h"
#include "platform/archive/Unpacking.h"

namespace mip {

namespace {

constexpr std::int32_t Done = 0;
constexpr std::int32_t Failed = 2;
constexpr std::int32_t UnknownCommand = 7;
constexpr std::uint32_t InvalidParameter = 87;

PlatformError UnknownCommandLine(const std::wstring& commandLine) {
    return {"reading an extraction's command line", commandLine, InvalidParameter};
}

/// The archive of the command line, looked at by a function that takes its path.
ArchiveFacts LookAt(const std::wstring& commandLine, const auto& look) {
    const auto command = ParseSevenZipCommand(commandLine);
    if (!command) {
        throw UnknownCommandLine(commandLine);
    }
    try {
        return look(command->Archive);
    } catch (const BadArchive& fault) {
        throw fault.In(command->Archive);
    }
}

}  // namespace

std::int32_t EmbeddedArchives::SevenZip(const std::wstring& commandLine, FaultLog& log) {
    const auto command = ParseSevenZipCommand(commandLine);
    if (!command) {
        log.Trapped("extracting an archive", UnknownCommandLine(commandLine));
        return UnknownCommand;
    }
    try {
        ExtractArchiveTo(command->Archive, command->OutputFolder, system_, clock_);
        return Done;
    } catch (const BadArchive& fault) {
        log.Trapped("extracting an archive", fault.In(command->Archive));
    } catch (const std::exception& error) {
        log.Trapped("extracting an archive", error);
    }
    return Failed;
}

ArchiveFacts EmbeddedArchives::Inspect(const std::wstring& commandLine) {
    return LookAt(commandLine, [&](const std::wstring& path) { return InspectArchive(path, system_, clock_); });
}

ArchiveFacts EmbeddedArchives::Test(const std::wstring& commandLine) {
    return LookAt(commandLine, [&](const std::wstring& path) { return TestArchive(path, system_, clock_); });
}

}  // namespace mip
