#include "app/ClsRegstry.h"

namespace mip {

bool ClsRegstry::ChkReg() {
    return !GetAllReg().empty();
}

std::wstring ClsRegstry::GetReg(const std::wstring& key, const std::wstring& defaultValue) {
    if (const auto stored = registry_.ReadString(Hive::CurrentUser, StoreKey(), key)) {
        return *stored;
    }
    SavReg(key, defaultValue);
    return defaultValue;
}

void ClsRegstry::SavReg(const std::wstring& key, const std::wstring& value) {
    registry_.WriteString(Hive::CurrentUser, StoreKey(), key, value);
}

void ClsRegstry::DelReg(const std::wstring& key) {
    if (key.empty()) {
        registry_.RemoveKey(Hive::CurrentUser, StoreKey());
    } else {
        registry_.RemoveValue(Hive::CurrentUser, StoreKey(), key);
    }
}

std::vector<std::pair<std::wstring, std::wstring>> ClsRegstry::GetAllReg() {
    try {
        return registry_.ListValues(Hive::CurrentUser, StoreKey());
    } catch (const std::exception&) {
        return {};
    }
}

std::wstring ClsRegstry::StoreKey() const {
    return L"Software\\Vantor\\Settings\\" + AppName + L'\\' + Section;
}

}  // namespace mip
