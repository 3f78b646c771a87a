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

    Registry& registry_ = host_->Registry();
    std::wstring key_ = host_->ScratchKey();
};

TEST_F(RegistryContract, WhatIsAbsentIsNothing) {
    EXPECT_EQ(std::nullopt, Read(L"InstallDir"));
    EXPECT_EQ(Values{}, registry_.ListValues(Hive::CurrentUser, key_));
    registry_.RemoveValue(Hive::CurrentUser, key_, L"InstallDir");
    registry_.RemoveKey(Hive::CurrentUser, key_);

    Write(L"Other", L"value");
    EXPECT_EQ(std::nullopt, Read(L"InstallDir"));
    EXPECT_EQ(std::nullopt, registry_.ReadString(Hive::LocalMachine, key_, L"Other"));
    registry_.RemoveValue(Hive::CurrentUser, key_, L"InstallDir");
}

TEST_F(RegistryContract, StringsComeBackWhole) {
    const struct {
        const char* Label;
        std::wstring Text;
    } cases[] = {
        {"empty", L""},
        {"path", L"C:\\Program Files\\Vantor\\Korvex"},
        {"blanks and quotes", L"  \"a\"  "},
        {"Japanese", L"C:\\サービス\\説明書"},
        {"long", std::wstring(3000, L'x')},
    };
    for (const auto& [label, text] : cases) {
        SCOPED_TRACE(label);
        Write(L"InstallDir", text);
        EXPECT_EQ(text, Read(L"InstallDir"));
    }
}

TEST_F(RegistryContract, NamesCompareWithoutRegardToCase) {
    Write(L"InstallDir", L"first");
    Write(L"INSTALLDIR", L"second");

    std::wstring otherCase = key_;
    otherCase.back() = L'K';
    EXPECT_EQ(L"second", registry_.ReadString(Hive::CurrentUser, otherCase, L"installdir"));
    EXPECT_EQ(1u, registry_.ListValues(Hive::CurrentUser, key_).size());
}

TEST_F(RegistryContract, OnlyStringsAreRead) {
    Write(L"Text", L"value");
    host_->PutRegistryNumber(key_, L"Number");

    EXPECT_EQ(std::nullopt, Read(L"Number"));
    EXPECT_EQ((Values{{L"Text", L"value"}}), registry_.ListValues(Hive::CurrentUser, key_));
}

TEST_F(RegistryContract, ValuesAreListedAndRemoved) {
    Write(L"Font", L"ＭＳ Ｐゴシック");
    Write(L"Left", L"");
    Write(L"Top", L"1");
    registry_.RemoveValue(Hive::CurrentUser, key_, L"TOP");

    EXPECT_EQ((Values{{L"Font", L"ＭＳ Ｐゴシック"}, {L"Left", L""}}), registry_.ListValues(Hive::CurrentUser, key_));
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
