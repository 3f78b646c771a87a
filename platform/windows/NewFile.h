#pragma once

#include <optional>
#include <span>
#include <string>

#include "platform/Files.h"
#include "platform/windows/Handle.h"

namespace mip {

/// A file while it is written. Destroying it before `Finish` removes it. Every operation throws PlatformError.
class NewFile {
  public:
    enum class Existing { Refuse, Replace };

    /// Creates the file. An existing one is refused with FileExists, or replaced, be it read-only or not.
    NewFile(const std::wstring& path, Existing existing);
    NewFile(const NewFile&) = delete;
    NewFile& operator=(const NewFile&) = delete;
    ~NewFile();

    void Write(std::span<const char> bytes);
    /// Sets the modification time, when there is one, clears all attributes and closes.
    void Finish(const std::optional<FileTime>& modified);

  private:
    void Create(DWORD disposition);

    std::wstring path_;
    FileHandle file_;
};

}  // namespace mip
