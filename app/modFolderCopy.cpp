#include "app/modFolderCopy.h"

#include <cstddef>
#include <exception>
#include <utility>
#include <vector>

#include "app/Failure.h"
#include "app/Messages.h"
#include "app/modFile.h"
#include "platform/Clock.h"
#include "platform/Files.h"
#include "platform/PlatformError.h"
#include "text/Checked.h"
#include "text/TextTools.h"

namespace mip {

namespace {

constexpr std::int32_t Failed = -1;

std::int32_t AddCount(std::int32_t count, std::size_t more) {
    const std::int64_t sum = count + static_cast<std::int64_t>(more);
    if (sum > INT32_MAX) {
        throw OverflowError();
    }
    return static_cast<std::int32_t>(sum);
}

/// A drive's root and a folder alike, so that what follows the root in a path begins with the backslash.
std::wstring WithoutEndingBackslash(std::wstring folder) {
    if (folder.ends_with(L'\\')) {
        folder.pop_back();
    }
    return folder;
}

/// One run over a folder tree.
class FolderCopy {
  public:
    FolderCopy(Platform& platform, CopyMode mode, std::int32_t startValue, const CopyProgress& progress)
        : platform_(platform),
          countsOnly_(mode == CopyMode::CountOnly),
          fileTotal_(startValue),
          fileDone_(startValue),
          progress_(progress) {}

    void Run(const std::wstring& sourceRoot, const std::wstring& destRoot) {
        Visit(sourceRoot, destRoot);
        // The root is the user's choice; below it a link would lead the files to another place.
        refusesLinks_ = true;
        while (!folderStack_.empty()) {
            const std::wstring source = std::move(folderStack_.back());
            folderStack_.pop_back();
            Visit(source, ReplaceAll(source, sourceRoot, destRoot));
        }
    }

    std::int32_t FileTotal() const { return fileTotal_; }

  private:
    void Visit(const std::wstring& source, const std::wstring& destination) {
        if (!countsOnly_) {
            PrepareFolder(destination);
        }
        const FolderListing listing = platform_.Folders.List(source);
        fileTotal_ = AddCount(fileTotal_, listing.Files.size());
        for (const std::wstring& subfolder : listing.Subfolders) {
            folderStack_.push_back(JoinPath(source, subfolder));
        }
        if (!countsOnly_) {
            CopyFiles(listing.Files, source, destination);
        }
    }

    void PrepareFolder(const std::wstring& destination) {
        if (!platform_.Folders.Exists(destination)) {
            MakeFolderPath(platform_, destination);
        } else if (refusesLinks_ && platform_.Folders.IsLink(destination)) {
            throw Failure(messages::ManualFailed, "the folder to copy into is a link: " + ToUtf8(destination));
        }
    }

    void CopyFiles(const std::vector<std::wstring>& names, const std::wstring& source,
                   const std::wstring& destination) {
        platform_.Files.CopyAllToNew(source, names, destination, [&](const std::wstring& name, std::uint32_t code) {
            if (code == errors::FileExists) {
                CopyOverExisting(platform_, JoinPath(source, name), JoinPath(destination, name));
            } else if (code != 0) {
                throw PlatformError("CopyAllToNew", JoinPath(destination, name), code);
            }
            fileDone_ = AddCount(fileDone_, 1);
            if (progress_) {
                progress_(fileDone_);
            }
            platform_.Clock.YieldToMessages();
        });
    }

    Platform& platform_;
    bool countsOnly_;
    bool refusesLinks_ = false;
    std::int32_t fileTotal_;
    std::int32_t fileDone_;
    const CopyProgress& progress_;
    std::vector<std::wstring> folderStack_;
};

}  // namespace

std::int32_t CopyFolderWithProgress(Platform& platform, CopyMode mode, std::int32_t startValue,
                                    const std::wstring& sourceRoot, const std::wstring& destRoot,
                                    const CopyProgress& progress) {
    try {
        FolderCopy copy(platform, mode, startValue, progress);
        copy.Run(WithoutEndingBackslash(sourceRoot), WithoutEndingBackslash(destRoot));
        return mode == CopyMode::CountOnly ? copy.FileTotal() : 0;
    } catch (const std::exception& error) {
        platform.FaultLog.Trapped(mode == CopyMode::CountOnly ? "counting a folder's files" : "copying a folder",
                                  error);
        return Failed;
    }
}

std::int32_t CountFiles(Platform& platform, const std::wstring& folder) {
    return CopyFolderWithProgress(platform, CopyMode::CountOnly, 0, folder, folder);  // no target is looked at
}

}  // namespace mip
