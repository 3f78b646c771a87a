#pragma once

#include <string>

namespace mip {

/// A folder below the temporary folder, empty at the start and removed with all it holds at the end.
class ScratchFolder {
  public:
    explicit ScratchFolder(const std::wstring& name);
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;
    ~ScratchFolder();

    const std::wstring& Path() const { return path_; }

  private:
    std::wstring path_;
};

}  // namespace mip
