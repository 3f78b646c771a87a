#include "platform/windows/ComAutomation.h"

#include <objbase.h>

#include <new>
#include <utility>
#include <vector>

#include "platform/PlatformError.h"

namespace mip {

namespace {

/// What an object says about an error that it raised.
class RaisedError {
  public:
    RaisedError() = default;
    ~RaisedError() {
        SysFreeString(info_.bstrSource);
        SysFreeString(info_.bstrDescription);
        SysFreeString(info_.bstrHelpFile);
    }
    RaisedError(const RaisedError&) = delete;
    RaisedError& operator=(const RaisedError&) = delete;

    EXCEPINFO* Receive() { return &info_; }

    [[noreturn]] void Throw(const std::wstring& member) {
        if (info_.pfnDeferredFillIn) {
            info_.pfnDeferredFillIn(&info_);
        }
        const std::wstring text(info_.bstrDescription ? info_.bstrDescription : L"",
                                SysStringLen(info_.bstrDescription));
        throw PlatformError("Automation call", member, Code(), text);
    }

  private:
    /// An object gives an HRESULT, or the 16-bit number of an error of its own.
    std::uint32_t Code() const {
        return static_cast<std::uint32_t>(
            info_.scode != 0 ? info_.scode : MAKE_HRESULT(SEVERITY_ERROR, FACILITY_CONTROL, info_.wCode));
    }

    EXCEPINFO info_{};
};

/// The system's calls only read their source, although their declarations do not say so.
VARIANT* Source(const VARIANT& value) {
    return const_cast<VARIANT*>(&value);
}

DISPID FindMember(IDispatch& object, const std::wstring& name) {
    std::wstring text = name;
    LPOLESTR names[] = {text.data()};
    DISPID member = DISPID_UNKNOWN;
    ThrowIfFailed(object.GetIDsOfNames(IID_NULL, names, 1, LOCALE_USER_DEFAULT, &member), "GetIDsOfNames", name);
    return member;
}

}  // namespace

void ThrowIfFailed(HRESULT result, std::string_view operation, std::wstring_view object) {
    if (FAILED(result)) {
        throw PlatformError(operation, std::wstring(object), static_cast<std::uint32_t>(result));
    }
}

ComValue::ComValue(std::wstring_view text) : ComValue() {
    value_.bstrVal = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
    if (!value_.bstrVal) {
        throw std::bad_alloc();
    }
    value_.vt = VT_BSTR;
}

ComValue::ComValue(std::int32_t number) noexcept : ComValue() {
    value_.vt = VT_I4;
    value_.lVal = number;
}

ComValue::ComValue(const ComValue& other) : ComValue() {
    ThrowIfFailed(VariantCopy(&value_, Source(other.value_)), "VariantCopy", L"");
}

ComValue& ComValue::operator=(const ComValue& other) {
    if (this != &other) {
        *this = ComValue(other);
    }
    return *this;
}

ComValue::ComValue(ComValue&& other) noexcept : ComValue() {
    std::swap(value_, other.value_);
}

ComValue& ComValue::operator=(ComValue&& other) noexcept {
    std::swap(value_, other.value_);
    return *this;
}

ComValue ComValue::Missing() {
    ComValue missing;
    missing.value_.vt = VT_ERROR;
    missing.value_.scode = DISP_E_PARAMNOTFOUND;
    return missing;
}

VARIANT* ComValue::Receive() {
    VariantClear(&value_);
    return &value_;
}

ComValue ComValue::As(VARTYPE type) const {
    ComValue converted;
    ThrowIfFailed(VariantChangeType(&converted.value_, Source(value_), 0, type), "VariantChangeType", L"");
    return converted;
}

std::wstring ComValue::Text() const {
    const ComValue text = As(VT_BSTR);
    return std::wstring(text.value_.bstrVal ? text.value_.bstrVal : L"", SysStringLen(text.value_.bstrVal));
}

std::int32_t ComValue::Integer() const {
    return As(VT_I4).value_.lVal;
}

bool ComValue::Boolean() const {
    return As(VT_BOOL).value_.boolVal != VARIANT_FALSE;
}

ComObject ComValue::Object() const {
    const ComValue object = As(VT_DISPATCH);
    if (!object.value_.pdispVal) {
        ThrowIfFailed(E_POINTER, "Automation object", L"");
    }
    object.value_.pdispVal->AddRef();
    return ComObject(ComPointer<IDispatch>(object.value_.pdispVal));
}

ComObject ComObject::Create(const std::wstring& programId) {
    CLSID classId{};
    ThrowIfFailed(CLSIDFromProgID(programId.c_str(), &classId), "CLSIDFromProgID", programId);
    return Create(classId);
}

ComObject ComObject::Create(const CLSID& classId) {
    void* object = nullptr;
    const HRESULT result = CoCreateInstance(classId, nullptr, CLSCTX_SERVER, IID_IDispatch, &object);
    ThrowIfFailed(result, "CoCreateInstance", L"");
    return ComObject(ComPointer<IDispatch>(static_cast<IDispatch*>(object)));
}

ComValue ComObject::Get(const std::wstring& property, std::initializer_list<ComValue> arguments) const {
    return Invoke(property, DISPATCH_PROPERTYGET, arguments);
}

void ComObject::Put(const std::wstring& property, const ComValue& value) const {
    Invoke(property, DISPATCH_PROPERTYPUT, std::span(&value, 1));
}

ComValue ComObject::Call(const std::wstring& method, std::initializer_list<ComValue> arguments) const {
    return Invoke(method, DISPATCH_METHOD, arguments);
}

ComValue ComObject::Invoke(const std::wstring& member, WORD kind, std::span<const ComValue> arguments) const {
    const DISPID id = FindMember(*object_, member);
    // Automation takes the arguments last first, and only borrows them.
    std::vector<VARIANT> reversed(arguments.size());
    for (std::size_t index = 0; index < arguments.size(); ++index) {
        reversed[arguments.size() - 1 - index] = arguments[index].Raw();
    }
    DISPID putValue = DISPID_PROPERTYPUT;
    DISPPARAMS parameters{};
    parameters.rgvarg = reversed.data();
    parameters.cArgs = static_cast<UINT>(reversed.size());
    if (kind == DISPATCH_PROPERTYPUT) {
        parameters.rgdispidNamedArgs = &putValue;
        parameters.cNamedArgs = 1;
    }

    ComValue returned;
    RaisedError raised;
    VARIANT* const receiver = kind == DISPATCH_PROPERTYPUT ? nullptr : returned.Receive();
    const HRESULT result =
        object_->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, kind, &parameters, receiver, raised.Receive(), nullptr);
    if (result == DISP_E_EXCEPTION) {
        raised.Throw(member);
    }
    ThrowIfFailed(result, "Automation call", member);
    return returned;
}

}  // namespace mip
