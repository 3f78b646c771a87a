#pragma once

#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "platform/Clock.h"
#include "platform/Files.h"
#include "platform/Platform.h"
#include "platform/PlatformError.h"
#include "platform/Processes.h"
#include "platform/ProfileFiles.h"
#include "platform/Registry.h"

namespace mip {

/// What the contract tests run on: the real adapters on a Windows, or the in-memory one. Each build links one host.
class ContractHost {
  public:
    virtual ~ContractHost() = default;

    virtual const Platform& Computer() = 0;
    /// A folder that is there, is empty, and goes with the host.
    virtual std::wstring Scratch() = 0;
    /// The disc's RmDir.bat, in a folder with a blank in its name.
    virtual std::wstring RmDirBat() = 0;
    /// Holds the file open for reading, as a viewer does, until the result goes.
    virtual std::shared_ptr<void> OpenElsewhere(const std::wstring& path) = 0;
    /// Makes a link to a folder.
    virtual void MakeLink(const std::wstring& path, const std::wstring& target) = 0;
    virtual void SetModified(const std::wstring& path, FileTime time) = 0;
    /// Below the current user, whose key ContractKey is the host's own and goes with it.
    virtual void PutRegistryNumber(const std::wstring& key, const std::wstring& name) = 0;
};

inline constexpr wchar_t ContractKey[] = L"Software\\Contract k";

std::unique_ptr<ContractHost> MakeContractHost();

/// The base of every contract test.
class ContractTest : public testing::Test {
  protected:
    std::wstring At(const std::wstring& name) const { return host_->Scratch() + L"\\" + name; }

    std::unique_ptr<ContractHost> host_ = MakeContractHost();
    const Platform& computer_ = host_->Computer();
    Files& files_ = computer_.Files;
    Folders& folders_ = computer_.Folders;
};

}  // namespace mip
