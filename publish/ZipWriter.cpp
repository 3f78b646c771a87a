#include "publish/ZipWriter.h"

#include <zlib.h>

#include <algorithm>
#include <new>
#include <span>
#include <stdexcept>

#include "publish/PathText.h"

namespace mip {
namespace {

constexpr std::size_t BlockSize = 256 * 1024;
constexpr std::uint64_t LargestArchive = 0xFFFF'FFFF;
constexpr std::size_t MostEntries = 0xFFFF;

/// Numbers in a ZIP file, least significant byte first.
class Bytes {
  public:
    explicit Bytes(std::string_view signature) : bytes_(signature) {}

    Bytes& Two(std::uint64_t number) { return Number(number, 2); }
    Bytes& Four(std::uint64_t number) { return Number(number, 4); }
    Bytes& Text(std::string_view text) {
        bytes_ += text;
        return *this;
    }
    std::string Get() const { return bytes_; }

  private:
    Bytes& Number(std::uint64_t number, int size) {
        for (; size > 0; --size, number >>= 8U) {
            bytes_ += static_cast<char>(number & 0xFFU);
        }
        return *this;
    }

    std::string bytes_;
};

/// Date and time as a FAT file system keeps them.
std::uint32_t DosTime(DateTime time) {
    const auto day = std::chrono::floor<std::chrono::days>(time);
    const std::chrono::year_month_day date(day);
    const std::chrono::hh_mm_ss clock(time - day);
    const auto number = [](auto value) { return static_cast<std::uint32_t>(value); };
    const std::uint32_t year = number(std::clamp(static_cast<int>(date.year()), 1980, 2107) - 1980);
    return year << 25U | static_cast<unsigned>(date.month()) << 21U | static_cast<unsigned>(date.day()) << 16U |
           number(clock.hours().count()) << 11U | number(clock.minutes().count()) << 5U |
           number(clock.seconds().count()) / 2;
}

bool IsAscii(std::string_view text) {
    return std::ranges::all_of(text, [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

/// A raw deflate stream.
class Deflater {
  public:
    Deflater() {
        constexpr int RawWindow = -MAX_WBITS;
        constexpr int DefaultMemory = 8;
        if (deflateInit2(&stream_, Z_DEFAULT_COMPRESSION, Z_DEFLATED, RawWindow, DefaultMemory, Z_DEFAULT_STRATEGY) !=
            Z_OK) {
            throw std::bad_alloc();
        }
    }
    Deflater(const Deflater&) = delete;
    Deflater& operator=(const Deflater&) = delete;
    ~Deflater() { deflateEnd(&stream_); }

    void Pack(std::span<char> input, bool last, const auto& write) {
        stream_.next_in = reinterpret_cast<Bytef*>(input.data());
        stream_.avail_in = static_cast<uInt>(input.size());
        do {
            stream_.next_out = reinterpret_cast<Bytef*>(output_.data());
            stream_.avail_out = static_cast<uInt>(output_.size());
            deflate(&stream_, last ? Z_FINISH : Z_NO_FLUSH);
            write(std::string_view(output_.data(), output_.size() - stream_.avail_out));
        } while (stream_.avail_out == 0);
    }

  private:
    z_stream stream_{};
    std::vector<char> output_ = std::vector<char>(BlockSize);
};

}  // namespace

ZipWriter::ZipWriter(const std::filesystem::path& file, DateTime time)
    : path_(file), stream_(file, std::ios::binary), time_(DosTime(time)) {
    Write({});
}

void ZipWriter::Write(std::string_view bytes) {
    position_ += bytes.size();
    if (!stream_.write(bytes.data(), static_cast<std::streamsize>(bytes.size()))) {
        throw std::runtime_error("cannot write " + Utf8Of(path_));
    }
    if (position_ >= LargestArchive) {
        throw std::runtime_error(Utf8Of(path_) + " grows beyond 4 GB");
    }
}

/// What a local header and a directory record have in common.
std::string ZipWriter::HeaderOf(const Entry& entry) const {
    constexpr unsigned VersionForDeflate = 20;
    constexpr unsigned Utf8Names = 0x800;
    return Bytes("")
        .Two(VersionForDeflate)
        .Two(IsAscii(entry.Name) ? 0 : Utf8Names)
        .Two(Z_DEFLATED)
        .Four(time_)
        .Four(entry.Checksum)
        .Four(entry.PackedSize)
        .Four(entry.Size)
        .Two(entry.Name.size())
        .Two(0)
        .Get();
}

void ZipWriter::Add(const std::wstring& name, const std::filesystem::path& source) {
    Entry entry{ToUtf8(name), position_};
    const auto header = [&] { return Bytes("PK\x03\x04").Text(HeaderOf(entry)).Text(entry.Name).Get(); };
    Write(header());
    Deflate(entry, source);
    stream_.seekp(static_cast<std::streamoff>(entry.Offset));
    const std::uint64_t end = position_;
    Write(header());
    stream_.seekp(static_cast<std::streamoff>(end));
    position_ = end;
    entries_.push_back(std::move(entry));
    if (entries_.size() >= MostEntries) {
        throw std::runtime_error(Utf8Of(path_) + " grows beyond 65534 files");
    }
}

void ZipWriter::Deflate(Entry& entry, const std::filesystem::path& source) {
    std::ifstream input(source, std::ios::binary);
    std::vector<char> block(BlockSize);
    Deflater deflater;
    const std::uint64_t start = position_;
    bool last = !input;
    if (last) {
        throw std::runtime_error("cannot read " + Utf8Of(source));
    }
    while (!last) {
        input.read(block.data(), static_cast<std::streamsize>(block.size()));
        const auto read = static_cast<std::size_t>(input.gcount());
        last = read < block.size();
        entry.Checksum = static_cast<std::uint32_t>(
            crc32(entry.Checksum, reinterpret_cast<const Bytef*>(block.data()), static_cast<uInt>(read)));
        entry.Size += read;
        deflater.Pack({block.data(), read}, last, [&](std::string_view bytes) { Write(bytes); });
    }
    if (input.bad()) {
        throw std::runtime_error("cannot read " + Utf8Of(source));
    }
    if (entry.Size > LargestArchive) {
        throw std::runtime_error(Utf8Of(source) + " is larger than 4 GB");
    }
    entry.PackedSize = position_ - start;
}

void ZipWriter::Finish() {
    const std::uint64_t start = position_;
    for (const Entry& entry : entries_) {
        constexpr unsigned MadeOnFat = 20;
        Write(Bytes("PK\x01\x02")
                  .Two(MadeOnFat)
                  .Text(HeaderOf(entry))
                  .Two(0)   // comment
                  .Two(0)   // volume
                  .Two(0)   // internal attributes
                  .Four(0)  // attributes
                  .Four(entry.Offset)
                  .Text(entry.Name)
                  .Get());
    }
    const std::uint64_t size = position_ - start;
    const std::size_t count = entries_.size();
    Write(Bytes("PK\x05\x06").Two(0).Two(0).Two(count).Two(count).Four(size).Four(start).Two(0).Get());
    stream_.close();
    if (!stream_) {
        throw std::runtime_error("cannot write " + Utf8Of(path_));
    }
}

}  // namespace mip
