#pragma once

#include <filesystem>
#include <string>

#include "text/DateTime.h"

namespace mip {

/// Makes the image of a disc's folder by xorriso, with Joliet's long names, so that Windows shows every name as it is.
/// The same folder gives the same bytes. The image appears, or is replaced, when it is complete. Throws
/// std::runtime_error when the program is not there or fails.
void WriteImage(const std::filesystem::path& disc, const std::filesystem::path& image, const std::wstring& label,
                DateTime date);

/// True when Windows finds long names in an image (the Joliet volume descriptor of ISO 9660 images).
bool HasJolietNames(const std::filesystem::path& image);

/// An image's files in a temporary folder, which goes with this object. Names are those that Windows shows. Throws
/// std::exception for a file that is no image, and for names that no folder takes.
class UnpackedImage {
  public:
    explicit UnpackedImage(const std::filesystem::path& image);
    UnpackedImage(const UnpackedImage&) = delete;
    UnpackedImage& operator=(const UnpackedImage&) = delete;
    ~UnpackedImage();

    const std::filesystem::path& Folder() const { return folder_; }

  private:
    std::filesystem::path folder_;
};

}  // namespace mip
