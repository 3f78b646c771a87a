#pragma once

#include <gtest/gtest.h>

#include <windows.h>
#include <ocidl.h>

#include <deque>

#include "platform/windows/ComApartment.h"
#include "platform/windows/ComAutomation.h"

namespace mip {

/// What one call to a scripted object gives.
struct Answer {
    ComValue Value{};
    /// The name of a new object that is given in the value's place.
    std::wstring Object{};
    /// A failure. With a description the object raises it, as automation servers do, else the call itself fails.
    HRESULT Code = S_OK;
    std::wstring Description{};
    bool IsDeferred = false;  ///< raised by an object that fills in code and description when it is asked for them
};

class ScriptedObject;

/// The calls that a set of automation objects is to get, one after the other, and the answers to them: "create
/// Browser", "name Thing.Absent", "get Fields.Item(7)", "put Browser.Visible(true)", "call Connection.Execute("SELECT
/// 1", missing, 1)". The first two kinds succeed without an answer where they do not stand. Any other call is a failure
/// of the test.
struct Script {
    using Steps = std::deque<std::pair<std::wstring, Answer>>;

    ~Script() { Expect({}); }

    void Expect(Steps steps) {
        EXPECT_EQ(Rest.size(), 0U) << "calls were not made";
        Rest = std::move(steps);
    }
    Answer Take(const std::wstring& call, const Answer& otherwise = {.Code = E_UNEXPECTED}) {
        if (Rest.empty() || Rest.front().first != call) {
            EXPECT_NE(otherwise.Code, E_UNEXPECTED) << "not its turn: " << testing::PrintToString(call);
            return otherwise;
        }
        const Answer answer = Rest.front().second;
        Rest.pop_front();
        return answer;
    }
    inline ComPointer<IDispatch> MakeObject(const std::wstring& name);

    Steps Rest{};
    std::vector<std::unique_ptr<ScriptedObject>> Objects{};
};

/// An automation object by the script, and the class factory of such objects. Its type descriptions bear its name: that
/// of its class, and with "Disp" before it that of its interface. One whose name begins with I tells its interface
/// alone, by this name, and "Undescribed" tells nothing.
class ScriptedObject final : public IDispatch, public IProvideClassInfo, public IClassFactory {
  public:
    ScriptedObject(Script& script, std::wstring name) : script_(script), name_(std::move(name)) {}
    ~ScriptedObject() { EXPECT_EQ(references_, 0U) << testing::PrintToString(name_); }

    HRESULT WINAPI QueryInterface(REFIID wanted, void** found) override {
        *found = nullptr;
        if (wanted == IID_IUnknown || wanted == IID_IDispatch) {
            *found = static_cast<IDispatch*>(this);
        } else if (wanted == IID_IProvideClassInfo && name_[0] != L'I' && name_ != L"Undescribed") {
            *found = static_cast<IProvideClassInfo*>(this);
        } else if (wanted == IID_IClassFactory) {
            *found = static_cast<IClassFactory*>(this);
        }
        references_ += *found == nullptr ? 0 : 1;
        return *found == nullptr ? E_NOINTERFACE : S_OK;
    }
    ULONG WINAPI AddRef() override { return ++references_; }
    ULONG WINAPI Release() override { return --references_; }

    HRESULT WINAPI CreateInstance(IUnknown*, REFIID wanted, void** made) override {
        const HRESULT result = script_.Take(L"create " + name_, {}).Code;
        return FAILED(result) ? result : script_.MakeObject(name_)->QueryInterface(wanted, made);
    }
    HRESULT WINAPI LockServer(BOOL) override { return S_OK; }

    HRESULT WINAPI GetClassInfo(ITypeInfo** info) override { return Describe(TKIND_COCLASS, name_, info); }
    HRESULT WINAPI GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
    HRESULT WINAPI GetTypeInfo(UINT, LCID, ITypeInfo** info) override {
        return name_ == L"Undescribed" ? E_NOTIMPL
                                       : Describe(TKIND_DISPATCH, name_[0] == L'I' ? name_ : L"Disp" + name_, info);
    }

    HRESULT WINAPI GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID, DISPID* ids) override {
        members_.push_back(name_ + L"." + names[0]);
        ids[0] = static_cast<DISPID>(members_.size());
        return script_.Take(L"name " + members_.back(), {}).Code;
    }
    HRESULT WINAPI Invoke(DISPID id, REFIID, LCID, WORD kind, DISPPARAMS* parameters, VARIANT* result,
                          EXCEPINFO* raised, UINT*) override {
        const bool isPut = parameters->cNamedArgs == 1 && parameters->rgdispidNamedArgs[0] == DISPID_PROPERTYPUT;
        std::wstring call = isPut != (kind == DISPATCH_PROPERTYPUT) ? L"wrong kind "
                            : kind == DISPATCH_PROPERTYGET          ? L"get "
                            : kind == DISPATCH_METHOD               ? L"call "
                                                                    : L"put ";
        call += members_.at(static_cast<std::size_t>(id - 1)) + L"(";
        for (UINT index = parameters->cArgs; index-- > 0;) {
            call += TextOf(parameters->rgvarg[index]) + (index == 0 ? L"" : L", ");
        }
        const Answer answer = script_.Take(call + L")");
        if (answer.Code != S_OK || answer.IsDeferred) {
            return Raise(answer, raised);
        }
        if (result && !answer.Object.empty()) {
            result->vt = VT_DISPATCH;
            result->pdispVal = script_.MakeObject(answer.Object).release();
            return S_OK;
        }
        return result ? VariantCopy(result, const_cast<VARIANT*>(&answer.Value.Raw())) : S_OK;
    }

  private:
    static std::wstring TextOf(const VARIANT& value) {
        return value.vt == VT_BSTR   ? L"\"" + std::wstring(value.bstrVal, SysStringLen(value.bstrVal)) + L"\""
               : value.vt == VT_I4   ? std::to_wstring(value.lVal)
               : value.vt == VT_BOOL ? (value.boolVal != VARIANT_FALSE ? L"true" : L"false")
               : value.vt == VT_ERROR && value.scode == DISP_E_PARAMNOTFOUND ? L"missing"
                                                                             : L"unknown";
    }
    static HRESULT Raise(const Answer& answer, EXCEPINFO* raised) {
        if (answer.IsDeferred) {
            raised->pfnDeferredFillIn = [](EXCEPINFO* info) WINAPI {
                info->scode = E_ABORT;
                info->bstrDescription = SysAllocString(L"filled in when asked");
                return S_OK;
            };
        } else if (answer.Description.empty()) {
            return answer.Code;
        } else {
            // An own error number has no place in an HRESULT and goes into the 16-bit code.
            raised->wCode = answer.Code > 0 ? static_cast<WORD>(answer.Code) : WORD{0};
            raised->scode = answer.Code > 0 ? S_OK : answer.Code;
            raised->bstrDescription = SysAllocString(answer.Description.c_str());
        }
        return DISP_E_EXCEPTION;
    }
    static HRESULT Describe(TYPEKIND kind, std::wstring name, ITypeInfo** info) {
        ICreateTypeLib2* library = nullptr;
        ThrowIfFailed(CreateTypeLib2(SYS_WIN32, L"scripted.tlb", &library), "CreateTypeLib2", name);
        const ComPointer<ICreateTypeLib2> owner(library);
        ICreateTypeInfo* made = nullptr;
        ThrowIfFailed(library->CreateTypeInfo(name.data(), kind, &made), "CreateTypeInfo", name);
        *info = mip::QueryInterface<ITypeInfo>(*ComPointer<ICreateTypeInfo>(made)).release();
        return S_OK;
    }

    Script& script_;
    std::wstring name_;
    ULONG references_ = 0;
    std::vector<std::wstring> members_;
};

ComPointer<IDispatch> Script::MakeObject(const std::wstring& name) {
    Objects.push_back(std::make_unique<ScriptedObject>(*this, name));
    Objects.back()->AddRef();
    return ComPointer<IDispatch>(Objects.back().get());
}

/// Makes a program identifier of the system's lead to new objects of this name for as long as it lives.
class RegisteredClass {
  public:
    RegisteredClass(const wchar_t* programId, Script& script, const wchar_t* name) {
        CLSID classId{};
        ThrowIfFailed(CLSIDFromProgID(programId, &classId), "CLSIDFromProgID", programId);
        const ComPointer<IDispatch> factory = script.MakeObject(name);
        const HRESULT result =
            CoRegisterClassObject(classId, factory.get(), CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE, &registration_);
        ThrowIfFailed(result, "CoRegisterClassObject", programId);
    }
    ~RegisteredClass() { CoRevokeClassObject(registration_); }
    RegisteredClass(const RegisteredClass&) = delete;
    RegisteredClass& operator=(const RegisteredClass&) = delete;

  private:
    DWORD registration_ = 0;
};

/// At the end every call of the script was made and every reference released.
class AutomationTest : public testing::Test {
  protected:
    ComApartment apartment_;
    Script script_;
};

}  // namespace mip
