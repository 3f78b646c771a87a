#pragma once

#include <filesystem>
#include <string>

#include "text/DateTime.h"

namespace mip {

/// By whose rules an image has its long names, besides the short ones of ISO 9660.
enum class ImageNames {
    Joliet,        ///< by xorriso: the same folder gives the same bytes
    JolietAndUdf,  ///< by genisoimage, which writes the time of making into the image
};

struct ImageLabel {
    std::wstring Name;
    DateTime Date;
};

/// Makes the image of a disc's folder. It appears, or is replaced, when it is complete. Throws std::runtime_error when
/// the program that makes it is not there or fails.
void WriteImage(const std::filesystem::path& disc, const std::filesystem::path& image, const ImageLabel& label,
                ImageNames names);

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
