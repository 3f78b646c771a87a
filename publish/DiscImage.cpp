#include "publish/DiscImage.h"

#include <archive.h>
#include <archive_entry.h>

#include <array>
#include <chrono>
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <random>
#include <stdexcept>

#include "platform/ScopeGuard.h"
#include "platform/archive/EntryName.h"
#include "publish/FileTools.h"
#include "publish/PathText.h"

namespace mip {
namespace {

namespace fs = std::filesystem;

#ifdef _WIN32
constexpr char Quote = '"';
#else
constexpr char Quote = '\'';
#endif

/// One argument of the system's command interpreter.
std::string Argument(const std::string& text) {
    if (text.find(Quote) != std::string::npos) {
        throw std::runtime_error(text + " has a quote in its name");
    }
    return std::string(" ") + Quote + text + Quote;
}

int RunCommand(const std::string& command) {
#ifdef _WIN32
    // The interpreter takes the outermost quotes away.
    return _wsystem((L"\"" + FromUtf8(command) + L"\"").c_str());
#else
    return std::system(command.c_str());  // NOLINT(bugprone-command-processor): there is no other way to start it
#endif
}

/// "2023100208000000"
std::string VolumeDate(DateTime date) {
    const auto day = std::chrono::floor<std::chrono::days>(date);
    const std::chrono::year_month_day ymd(day);
    const std::chrono::hh_mm_ss time(date - day);
    std::array<char, 40> text{};
    std::snprintf(text.data(), text.size(), "%04d%02u%02u%02d%02d%02d00", static_cast<int>(ymd.year()),
                  static_cast<unsigned>(ymd.month()), static_cast<unsigned>(ymd.day()),
                  static_cast<int>(time.hours().count()), static_cast<int>(time.minutes().count()),
                  static_cast<int>(time.seconds().count()));
    return text.data();
}

struct ReaderCloser {
    void operator()(archive* reader) const { archive_read_free(reader); }
};
using Reader = std::unique_ptr<archive, ReaderCloser>;

void Require(archive* reader, int result) {
    if (result < ARCHIVE_WARN) {
        const char* text = archive_error_string(reader);
        throw std::runtime_error(std::string("cannot read the image: ") + (text != nullptr ? text : "damaged"));
    }
}

Reader OpenImage(const fs::path& image) {
    constexpr std::size_t BlockSize = 256 * 1024;
    Reader reader(archive_read_new());
    Require(reader.get(), archive_read_support_format_iso9660(reader.get()));
    if (HasJolietNames(image)) {
        // Windows does not know the other names.
        Require(reader.get(), archive_read_set_options(reader.get(), "iso9660:!rockridge"));
    }
#ifdef _WIN32
    Require(reader.get(), archive_read_open_filename_w(reader.get(), image.c_str(), BlockSize));
#else
    Require(reader.get(), archive_read_open_filename(reader.get(), image.c_str(), BlockSize));
#endif
    return reader;
}

void WriteEntry(archive* reader, const fs::path& file) {
    std::ofstream stream(file, std::ios::binary);
    const void* block = nullptr;
    std::size_t size = 0;
    la_int64_t offset = 0;
    int result = archive_read_data_block(reader, &block, &size, &offset);
    for (; result >= ARCHIVE_WARN && result != ARCHIVE_EOF;
         result = archive_read_data_block(reader, &block, &size, &offset)) {
        stream.seekp(offset);
        stream.write(static_cast<const char*>(block), static_cast<std::streamsize>(size));
    }
    Require(reader, result == ARCHIVE_EOF ? ARCHIVE_OK : result);
    stream.close();
    if (!stream) {
        throw std::runtime_error("cannot write " + Utf8Of(file));
    }
}

void Unpack(const fs::path& image, const fs::path& folder) {
    const Reader reader = OpenImage(image);
    archive_entry* entry = nullptr;
    int result = archive_read_next_header(reader.get(), &entry);
    for (; result != ARCHIVE_EOF; result = archive_read_next_header(reader.get(), &entry)) {
        Require(reader.get(), result);
        const wchar_t* name = archive_entry_pathname_w(entry);
        if (name == nullptr) {
            throw std::runtime_error("an image's name cannot be read");
        }
        if (name == std::wstring_view(L".")) {
            continue;
        }
        const fs::path place = folder / PathOf(ReplaceAll(CheckedEntryName(name), L"\\", L"/"));
        if (archive_entry_filetype(entry) == AE_IFDIR) {
            fs::create_directories(place);
        } else {
            fs::create_directories(place.parent_path());
            WriteEntry(reader.get(), place);
        }
    }
}

}  // namespace

void WriteImage(const fs::path& disc, const fs::path& image, const ImageLabel& label, ImageNames names) {
    fs::path partial = image;
    partial += ".partial";
    fs::path log = image;
    log += ".log";
    const ScopeGuard removeUnfinished([&] {
        std::error_code ignored;
        fs::remove(partial, ignored);
        fs::remove(log, ignored);
    });
    const std::string maker =
        names == ImageNames::Joliet
            ? "xorriso -as mkisofs --set_all_file_dates set_to_mtime --modification-date=" + VolumeDate(label.Date)
            : "genisoimage -udf";
    const std::string command = maker + " -quiet -J -joliet-long -r -V" + Argument(ToUtf8(label.Name)) + " -o" +
                                Argument(Utf8Of(partial)) + Argument(Utf8Of(disc)) + " 2>" + Argument(Utf8Of(log));
    if (RunCommand(command) != 0) {
        throw std::runtime_error("the image could not be made: " + ReadWhole(log));
    }
    fs::rename(partial, image);
}

bool HasJolietNames(const fs::path& image) {
    constexpr std::size_t Sector = 2048;
    constexpr int FirstDescriptor = 16;
    constexpr char Supplementary = 2;
    constexpr char Last = '\xFF';
    constexpr std::size_t EscapeSequences = 88;
    std::ifstream stream(image, std::ios::binary);
    stream.seekg(static_cast<std::streamoff>(FirstDescriptor * Sector));
    std::array<char, Sector> descriptor{};
    while (stream.read(descriptor.data(), Sector) && descriptor[0] != Last) {
        const std::string_view escape(descriptor.data() + EscapeSequences, 3);
        if (descriptor[0] == Supplementary && (escape == "%/@" || escape == "%/C" || escape == "%/E")) {
            return true;
        }
    }
    return false;
}

UnpackedImage::UnpackedImage(const fs::path& image)
    : folder_(fs::temp_directory_path() / ("checkdisc-" + std::to_string(std::random_device{}()))) {
    // By it the reading library makes wide names; Windows has no such locale and needs none.
    std::setlocale(LC_CTYPE, "C.UTF-8");
    fs::create_directory(folder_);
    ScopeGuard removeFolder([&] {
        std::error_code ignored;
        fs::remove_all(folder_, ignored);
    });
    Unpack(image, folder_);
    removeFolder.Dismiss();
}

UnpackedImage::~UnpackedImage() {
    std::error_code ignored;
    fs::remove_all(folder_, ignored);
}

}  // namespace mip
