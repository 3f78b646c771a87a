#include <fcntl.h>
#include <iconv.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cwctype>
#include <locale>

#include "platform/PlatformError.h"
#include "tests/native/archive/TestSystem.h"

namespace mip {

namespace {

[[noreturn]] void ThrowErrno(const char* operation, const std::wstring& path) {
    const int code = errno;
    throw PlatformError(operation, path, code == ENOENT ? errors::PathNotFound : errors::AccessDenied);
}

class Descriptor {
  public:
    explicit Descriptor(int value) : value_(value) {}
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor() {
        if (value_ >= 0) {
            close(value_);
        }
    }
    int Get() const { return value_; }

  private:
    int value_;
};

class NativeArchiveBytes : public ArchiveBytes {
  public:
    explicit NativeArchiveBytes(const std::wstring& path) : file_(open(PathOf(path).c_str(), O_RDONLY)) {
        struct stat status {};
        if (file_.Get() < 0 || fstat(file_.Get(), &status) != 0) {
            ThrowErrno("open", path);
        }
        size_ = static_cast<std::uint64_t>(status.st_size);
    }

    std::uint64_t Size() override { return size_; }
    std::size_t ReadAt(std::uint64_t offset, std::span<char> buffer) override {
        const ssize_t size = pread(file_.Get(), buffer.data(), buffer.size(), static_cast<off_t>(offset));
        if (size < 0) {
            ThrowErrno("pread", L"");
        }
        return static_cast<std::size_t>(size);
    }

  private:
    Descriptor file_;
    std::uint64_t size_ = 0;
};

class NativeExtractedFile : public ExtractedFile {
  public:
    explicit NativeExtractedFile(const std::wstring& path)
        : path_(PathOf(path)), file_(open(path_.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644)) {
        if (file_.Get() < 0) {
            ThrowErrno("open", path);
        }
    }
    ~NativeExtractedFile() override {
        if (!finished_) {
            unlink(path_.c_str());
        }
    }
    NativeExtractedFile(const NativeExtractedFile&) = delete;
    NativeExtractedFile& operator=(const NativeExtractedFile&) = delete;

    void Write(std::span<const char> bytes) override {
        if (write(file_.Get(), bytes.data(), bytes.size()) != static_cast<ssize_t>(bytes.size())) {
            ThrowErrno("write", L"");
        }
    }
    void Finish(const std::optional<FileTime>& modified) override {
        if (modified) {
            const auto seconds = std::chrono::floor<std::chrono::seconds>(*modified).time_since_epoch().count();
            const timespec times[2] = {{0, UTIME_OMIT}, {seconds, 0}};
            futimens(file_.Get(), times);
        }
        finished_ = true;
    }

  private:
    std::filesystem::path path_;
    Descriptor file_;
    bool finished_ = false;
};

class NativeArchiveSystem : public ArchiveSystem {
  public:
    /// The reading library gives wide names by way of the C library's locale.
    explicit NativeArchiveSystem(unsigned codePage) : codePage_(codePage) {
        std::locale::global(std::locale("C.UTF-8"));
    }

    std::unique_ptr<ArchiveBytes> OpenArchive(const std::wstring& path) override {
        return std::make_unique<NativeArchiveBytes>(path);
    }
    void CreateFolder(const std::wstring& folder) override {
        const std::filesystem::path path = PathOf(folder);
        if (mkdir(path.c_str(), 0755) != 0 && !(errno == EEXIST && std::filesystem::is_directory(path))) {
            ThrowErrno("mkdir", folder);
        }
    }
    std::unique_ptr<ExtractedFile> CreateNewFile(const std::wstring& path) override {
        return std::make_unique<NativeExtractedFile>(path);
    }
    std::uint64_t FreeBytes(const std::wstring& folder) override {
        return std::filesystem::space(PathOf(folder)).available;
    }
    unsigned NameCodePage() override { return codePage_; }
    std::optional<std::wstring> Decode(std::string_view bytes, unsigned codePage) override {
        const std::string charset = codePage == 65001 ? "UTF-8" : "CP" + std::to_string(codePage);
        const iconv_t converter = iconv_open("WCHAR_T", charset.c_str());
        std::wstring text(bytes.size(), L'\0');
        char* input = const_cast<char*>(bytes.data());
        char* output = reinterpret_cast<char*>(text.data());
        std::size_t inputLeft = bytes.size();
        std::size_t outputLeft = text.size() * sizeof(wchar_t);
        const std::size_t result = iconv(converter, &input, &inputLeft, &output, &outputLeft);
        iconv_close(converter);
        if (result == static_cast<std::size_t>(-1)) {
            return std::nullopt;
        }
        text.resize(text.size() - outputLeft / sizeof(wchar_t));
        return text;
    }
    std::wstring FoldCase(std::wstring name) override {
        std::ranges::transform(name, name.begin(), [](wchar_t c) {
            return static_cast<wchar_t>(std::towupper(static_cast<std::wint_t>(c)));
        });
        return name;
    }

  private:
    unsigned codePage_;
};

}  // namespace

std::unique_ptr<ArchiveSystem> MakeTestSystem(unsigned codePage) {
    return std::make_unique<NativeArchiveSystem>(codePage);
}

}  // namespace mip
