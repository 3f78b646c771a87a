#pragma once

#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "platform/Clock.h"
#include "platform/Files.h"
#include "platform/PlatformError.h"
#include "platform/Processes.h"
#include "platform/ProfileFiles.h"
#include "platform/Registry.h"

namespace mip {

/// What the contract tests run on: the real adapters on a Windows, or the in-memory one. Each build links one host.
class ContractHost {
  public:
    virtual ~ContractHost() = default;

    virtual mip::Files& Files() = 0;
    virtual mip::Folders& Folders() = 0;
    virtual mip::Volumes& Volumes() = 0;
    virtual mip::ProfileFiles& ProfileFiles() = 0;
    virtual mip::Registry& Registry() = 0;
    virtual mip::Processes& Processes() = 0;
    virtual mip::Clock& Clock() = 0;

    /// A folder that is there, is empty, and goes with the host.
    virtual std::wstring Scratch() = 0;
    /// A registry key below the current user that nothing uses; it may be absent.
    virtual std::wstring ScratchKey() = 0;
    /// The disc's RmDir.bat, in a folder with a blank in its name.
    virtual std::wstring RmDirBat() = 0;
    virtual std::wstring CommandThatExitsWith(std::uint32_t code) = 0;
    /// False under Wine, which lets read-only files be written and replaced, and removes what a link points to.
    virtual bool IsStrict() = 0;
    /// Holds the file open for reading, as a viewer does, until the result goes.
    virtual std::shared_ptr<void> OpenElsewhere(const std::wstring& path) = 0;
    /// Makes a link to a folder. False where this computer has no way to.
    virtual bool MakeLink(const std::wstring& path, const std::wstring& target) = 0;
    virtual void SetModified(const std::wstring& path, FileTime time) = 0;
    virtual void PutRegistryNumber(const std::wstring& key, const std::wstring& name) = 0;
};

std::unique_ptr<ContractHost> MakeContractHost();

/// The base of every contract test.
class ContractTest : public testing::Test {
  protected:
    std::wstring At(const std::wstring& name) const { return host_->Scratch() + L"\\" + name; }
    mip::Files& Files() { return host_->Files(); }
    mip::Folders& Folders() { return host_->Folders(); }

    std::unique_ptr<ContractHost> host_ = MakeContractHost();
};

}  // namespace mip
