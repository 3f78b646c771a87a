#include "tests/contract/ContractHost.h"

namespace mip {
namespace {

using Values = std::vector<std::pair<std::wstring, std::wstring>>;

class RegistryContract : public ContractTest {
  protected:
    void Write(const std::wstring& name, const std::wstring& value) {
        registry_.WriteString(Hive::CurrentUser, key_, name, value);
    }
    std::optional<std::wstring> Read(const std::wstring& name) {
        return registry_.ReadString(Hive::CurrentUser, key_, name);
    }
    Values List() { return registry_.ListValues(Hive::CurrentUser, key_); }

    Registry& registry_ = computer_.Registry;
    const std::wstring key_ = ContractKey;
};

TEST_F(RegistryContract, WhatIsAbsentIsNothing) {
    EXPECT_EQ(std::nullopt, Read(L"InstallDir"));
    EXPECT_EQ(Values{}, List());
    registry_.RemoveValue(Hive::CurrentUser, key_, L"InstallDir");
    registry_.RemoveKey(Hive::CurrentUser, key_);

    Write(L"Other", L"value");
    EXPECT_EQ(std::nullopt, Read(L"InstallDir"));
    EXPECT_EQ(std::nullopt, registry_.ReadString(Hive::LocalMachine, key_, L"Other"));
    registry_.RemoveValue(Hive::CurrentUser, key_, L"InstallDir");
}

TEST_F(RegistryContract, StringsComeBackWholeByNamesInAnyCase) {
    std::wstring otherCase = key_;
    otherCase.back() = L'K';
    for (const std::wstring& text : {std::wstring(), std::wstring(L"C:\\Program Files\\x"), std::wstring(L"  \"a\"  "),
                                     std::wstring(L"C:\\サービス\\説明書"), std::wstring(3000, L'x')}) {
        Write(L"InstallDir", L"before");
        Write(L"INSTALLDIR", text);
        EXPECT_EQ(text, registry_.ReadString(Hive::CurrentUser, otherCase, L"installdir"));
        EXPECT_EQ(1u, List().size());
    }
}

TEST_F(RegistryContract, StringsAloneAreReadListedAndRemoved) {
    Write(L"Font", L"ＭＳ Ｐゴシック");
    Write(L"Left", L"");
    Write(L"Top", L"1");
    host_->PutRegistryNumber(key_, L"Number");
    registry_.RemoveValue(Hive::CurrentUser, key_, L"TOP");
    EXPECT_EQ(std::nullopt, Read(L"Number"));
    EXPECT_EQ((Values{{L"Font", L"ＭＳ Ｐゴシック"}, {L"Left", L""}}), List());
}

TEST_F(RegistryContract, AKeyGoesWhenItsSubkeysAreGone) {
    Write(L"Name", L"value");
    registry_.WriteString(Hive::CurrentUser, key_ + L"\\Sub", L"Name", L"value");

    EXPECT_EQ(errors::AccessDenied, CodeOf([&] { registry_.RemoveKey(Hive::CurrentUser, key_); }));
    EXPECT_EQ(L"value", Read(L"Name"));
    registry_.RemoveKey(Hive::CurrentUser, key_ + L"\\Sub");
    registry_.RemoveKey(Hive::CurrentUser, key_);
    EXPECT_EQ(std::nullopt, Read(L"Name"));
}

}  // namespace
}  // namespace mip
