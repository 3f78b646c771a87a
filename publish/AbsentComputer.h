#pragma once

#include "platform/Clock.h"
#include "platform/Computer.h"
#include "platform/FileVersions.h"
#include "platform/Files.h"
#include "platform/MessageBoxes.h"
#include "platform/PlatformError.h"
#include "platform/Processes.h"
#include "platform/Registry.h"
#include "platform/Security.h"
#include "platform/Shell.h"
#include "text/TextTools.h"

namespace mip {

/// What a disc does not have: the workshop's computer. Whatever is asked of it and cannot be left out throws
/// PlatformError (NotSupported).
class AbsentComputer : public Volumes,
                       public FileVersions,
                       public Registry,
                       public Processes,
                       public Clock,
                       public Computer,
                       public AccountNames,
                       public AccessControl,
                       public Shell,
                       public Browsers,
                       public MessageBoxes {
  public:
    std::wstring DriveName(const std::wstring&) override { return L"D:"; }
    double FreeBytes(const std::wstring& root) override { Refuse(root); }
    std::wstring FileSystemName(const std::wstring& root) override { Refuse(root); }
    void Flush(const std::wstring&) override {}
    bool IsOneVolume(const std::wstring&, const std::wstring&) override { return false; }

    FixedFileVersion Read(const std::wstring& path) override { Refuse(path); }

    std::optional<std::wstring> ReadString(Hive, const std::wstring&, const std::wstring&) override { return {}; }
    void WriteString(Hive, const std::wstring& key, const std::wstring&, const std::wstring&) override { Refuse(key); }
    void RemoveValue(Hive, const std::wstring&, const std::wstring&) override {}
    void RemoveKey(Hive, const std::wstring&) override {}
    std::vector<std::pair<std::wstring, std::wstring>> ListValues(Hive, const std::wstring&) override { return {}; }

    std::optional<std::vector<std::wstring>> Snapshot() override { return {}; }
    std::unique_ptr<RunningProcess> StartHidden(const std::wstring& commandLine) override { Refuse(commandLine); }
    void StartVisible(const std::wstring& commandLine) override { Refuse(commandLine); }

    DateTime Now() override { return ZeroDate; }
    void Sleep(std::chrono::milliseconds) override {}
    void YieldToMessages() override {}

    std::wstring ProgramFolder() override { return L"D:\\programs\\setup"; }
    std::wstring UserName() override { Refuse(L"user"); }
    std::wstring LanguageIdentifier() override { return L"0409"; }
    bool IsPreviousInstanceRunning() override { return false; }
    void ShowPreviousInstance() override {}
    void StayAwake(bool) noexcept override {}
    /// Each workshop has a code page of its own. UTF-8 here, so that a finding can show the text.
    std::string ToSystemCodePage(const std::wstring& text) override { return ToUtf8(text); }
    std::wstring FromSystemCodePage(const std::string& bytes) override { return FromUtf8(bytes); }
    [[noreturn]] void EndProcess(std::uint32_t) override { Refuse(L"process"); }

    Sid MakeSid(const std::vector<std::uint32_t>&) override { Refuse(L"account"); }
    bool LookupSid(const Sid&, std::wstring&, std::uint32_t&, std::wstring&, std::uint32_t&) override { return false; }

    std::unique_ptr<AccessList> ReadList(const std::wstring& path) override { Refuse(path); }
    std::unique_ptr<AccessList> MergeEntry(const AccessList&, const ExplicitAccess&) override { Refuse(L"list"); }
    void SetList(const std::wstring& path, const AccessList&) override { Refuse(path); }
    std::optional<std::vector<AccessEntry>> ReadEntries(const std::wstring& path) override { Refuse(path); }
    std::wstring MessageText(std::uint32_t, const std::wstring&) override { return {}; }

    std::intptr_t OpenDocument(const std::wstring&, const std::wstring&, int) override { return 0; }
    std::wstring SpecialFolder(int) override { return {}; }
    void SaveShortcut(const std::wstring& file, const std::vector<ShortcutProperty>&,
                      std::optional<std::int16_t>) override {
        Refuse(file);
    }

    std::vector<OpenWindow> OpenWindows() override { return {}; }
    std::unique_ptr<BrowserWindow> StartBrowser() override { Refuse(L"browser"); }

    int Show(const std::wstring&, int, const std::wstring&) override { return boxes::AnswerNo; }

  private:
    [[noreturn]] static void Refuse(const std::wstring& object) {
        constexpr std::uint32_t NotSupported = 50;
        throw PlatformError("asking a computer that is not there", object, NotSupported);
    }
};

}  // namespace mip
