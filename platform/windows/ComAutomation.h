#pragma once

#include <windows.h>
#include <oleauto.h>

#include <concepts>
#include <cstdint>
#include <initializer_list>
#include <memory>
#include <span>
#include <string>
#include <string_view>

namespace mip {

/// Throws PlatformError with the HRESULT as its code when that is a failure.
void ThrowIfFailed(HRESULT result, std::string_view operation, std::wstring_view object);

struct ComRelease {
    template <typename Interface>
    void operator()(Interface* object) const {
        object->Release();
    }
};
/// One counted reference to a COM interface.
template <typename Interface>
using ComPointer = std::unique_ptr<Interface, ComRelease>;

/// Another interface of the same object; null when it has none.
template <typename Interface>
ComPointer<Interface> QueryInterface(IUnknown& object) {
    void* found = nullptr;
    if (FAILED(object.QueryInterface(__uuidof(Interface), &found))) {
        return nullptr;
    }
    return ComPointer<Interface>(static_cast<Interface*>(found));
}

class ComObject;

/// A value that goes into or comes out of an automation call. Owns what it holds.
class ComValue {
  public:
    ComValue() noexcept { VariantInit(&value_); }
    ComValue(std::wstring_view text);
    ComValue(const std::wstring& text) : ComValue(std::wstring_view(text)) {}
    ComValue(const wchar_t* text) : ComValue(std::wstring_view(text)) {}
    ComValue(std::int32_t number) noexcept;
    template <std::same_as<bool> Boolean>
    ComValue(Boolean flag) noexcept : ComValue() {
        value_.vt = VT_BOOL;
        value_.boolVal = flag ? VARIANT_TRUE : VARIANT_FALSE;
    }
    ~ComValue() { VariantClear(&value_); }

    ComValue(const ComValue& other);
    ComValue& operator=(const ComValue& other);
    ComValue(ComValue&& other) noexcept;
    ComValue& operator=(ComValue&& other) noexcept;

    /// An optional argument that is left out.
    static ComValue Missing();

    const VARIANT& Raw() const { return value_; }
    /// Emptied, for a call that fills it.
    VARIANT* Receive();

    /// Null, or nothing at all.
    bool IsNull() const { return value_.vt == VT_NULL || value_.vt == VT_EMPTY; }
    /// The value converted as automation converts. Throw PlatformError with an HRESULT when it cannot be.
    ComValue As(VARTYPE type) const;
    std::wstring Text() const;
    std::int32_t Integer() const;
    bool Boolean() const;
    ComObject Object() const;

  private:
    VARIANT value_;
};

/// An automation object whose members are reached by name. Every operation throws PlatformError with the HRESULT of
/// the call, or the object's own error code where it raised one; the error's object is the member, its text the
/// object's description of what went wrong.
class ComObject {
  public:
    /// A new object by its program identifier ("WScript.Shell").
    static ComObject Create(const std::wstring& programId);
    static ComObject Create(const CLSID& classId);
    /// Takes over one reference.
    explicit ComObject(ComPointer<IDispatch> object) : object_(std::move(object)) {}

    ComValue Get(const std::wstring& property, std::initializer_list<ComValue> arguments = {}) const;
    void Put(const std::wstring& property, const ComValue& value) const;
    ComValue Call(const std::wstring& method, std::initializer_list<ComValue> arguments = {}) const;

    IDispatch& Raw() const { return *object_; }

  private:
    ComValue Invoke(const std::wstring& member, WORD kind, std::span<const ComValue> arguments) const;

    ComPointer<IDispatch> object_;
};

}  // namespace mip
