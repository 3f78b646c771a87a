#include "tests/windows/automation/ScriptedObject.h"

#include <algorithm>

namespace mip {

namespace {

std::wstring Describe(const VARIANT& value) {
    switch (value.vt) {
        case VT_ERROR:
            return value.scode == DISP_E_PARAMNOTFOUND ? L"missing" : L"error";
        case VT_BSTR:
            return L"\"" + std::wstring(value.bstrVal, SysStringLen(value.bstrVal)) + L"\"";
        case VT_BOOL:
            return value.boolVal != VARIANT_FALSE ? L"true" : L"false";
        case VT_I4:
            return std::to_wstring(value.lVal);
        default:
            return L"type " + std::to_wstring(value.vt);
    }
}

HRESULT WINAPI FillIn(EXCEPINFO* raised) {
    raised->scode = E_ABORT;
    raised->bstrDescription = SysAllocString(L"filled in when asked");
    return S_OK;
}

HRESULT Raise(const Answer& answer, EXCEPINFO* raised) {
    if (answer.IsDeferred) {
        raised->pfnDeferredFillIn = FillIn;
        return DISP_E_EXCEPTION;
    }
    if (answer.Description.empty()) {
        return answer.Code;
    }
    // An own error number has no place in an HRESULT and goes into the 16-bit code.
    raised->wCode = answer.Code > 0 ? static_cast<WORD>(answer.Code) : WORD{0};
    raised->scode = answer.Code > 0 ? S_OK : answer.Code;
    raised->bstrDescription = SysAllocString(answer.Description.c_str());
    return DISP_E_EXCEPTION;
}

ComPointer<ITypeInfo> MakeTypeInfo(TYPEKIND kind, std::wstring name) {
    ICreateTypeLib2* library = nullptr;
    ThrowIfFailed(CreateTypeLib2(SYS_WIN32, L"scripted.tlb", &library), "CreateTypeLib2", name);
    const ComPointer<ICreateTypeLib2> owner(library);
    ICreateTypeInfo* made = nullptr;
    ThrowIfFailed(library->CreateTypeInfo(name.data(), kind, &made), "CreateTypeInfo", name);
    const ComPointer<ICreateTypeInfo> description(made);
    return QueryInterface<ITypeInfo>(*made);
}

/// An automation object by the script, and the class factory of such objects. Keeps properties and methods apart.
class ScriptedObject final : public IDispatch, public IProvideClassInfo, public IClassFactory {
  public:
    ScriptedObject(Script& script, std::wstring name) : script_(script), name_(std::move(name)) {
        ++script_.LiveObjects;
    }

    HRESULT WINAPI QueryInterface(REFIID wanted, void** found) override {
        *found = nullptr;
        if (wanted == IID_IUnknown || wanted == IID_IDispatch) {
            *found = static_cast<IDispatch*>(this);
        } else if (wanted == IID_IProvideClassInfo && !script_.Types[name_].first.empty()) {
            *found = static_cast<IProvideClassInfo*>(this);
        } else if (wanted == IID_IClassFactory) {
            *found = static_cast<IClassFactory*>(this);
        }
        references_ += *found == nullptr ? 0 : 1;
        return *found == nullptr ? E_NOINTERFACE : S_OK;
    }
    ULONG WINAPI AddRef() override { return ++references_; }
    ULONG WINAPI Release() override {
        const ULONG left = --references_;
        if (left == 0) {
            delete this;
        }
        return left;
    }

    HRESULT WINAPI CreateInstance(IUnknown*, REFIID wanted, void** made) override {
        if (const Answer answer = script_.Next(L"create " + name_); FAILED(answer.Code)) {
            return answer.Code;
        }
        return ComPointer<IDispatch>(new ScriptedObject(script_, name_))->QueryInterface(wanted, made);
    }
    HRESULT WINAPI LockServer(BOOL) override { return S_OK; }

    HRESULT WINAPI GetClassInfo(ITypeInfo** info) override {
        *info = MakeTypeInfo(TKIND_COCLASS, script_.Types[name_].first).release();
        return S_OK;
    }
    HRESULT WINAPI GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
    HRESULT WINAPI GetTypeInfo(UINT, LCID, ITypeInfo** info) override {
        const std::wstring& name = script_.Types[name_].second;
        *info = name.empty() ? nullptr : MakeTypeInfo(TKIND_DISPATCH, name).release();
        return name.empty() ? E_NOTIMPL : S_OK;
    }

    HRESULT WINAPI GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID, DISPID* ids) override {
        const std::wstring member = name_ + L"." + names[0];
        for (const wchar_t* const kind : {L"get ", L"put ", L"call "}) {
            if (script_.Answers.contains(kind + member)) {
                members_.push_back(member);
                ids[0] = static_cast<DISPID>(members_.size());
                return S_OK;
            }
        }
        return DISP_E_UNKNOWNNAME;
    }
    HRESULT WINAPI Invoke(DISPID id, REFIID, LCID, WORD kind, DISPPARAMS* parameters, VARIANT* result,
                          EXCEPINFO* raised, UINT*) override {
        const std::wstring call = (kind == DISPATCH_PROPERTYGET ? L"get "
                                   : kind == DISPATCH_METHOD    ? L"call "
                                                                : L"put ") +
                                  members_.at(static_cast<std::size_t>(id - 1));
        std::wstring arguments;
        for (UINT index = parameters->cArgs; index-- > 0;) {
            arguments += (arguments.empty() ? L"" : L", ") + Describe(parameters->rgvarg[index]);
        }
        script_.Calls.push_back(call + L"(" + arguments + L")");
        const bool isPut = parameters->cNamedArgs == 1 && parameters->rgdispidNamedArgs[0] == DISPID_PROPERTYPUT;
        if (!script_.Answers.contains(call) || isPut != (kind == DISPATCH_PROPERTYPUT)) {
            return DISP_E_MEMBERNOTFOUND;
        }
        const Answer answer = script_.Next(call);
        if (answer.Code != S_OK || answer.IsDeferred) {
            return Raise(answer, raised);
        }
        if (result && !answer.Object.empty()) {
            result->vt = VT_DISPATCH;
            result->pdispVal = new ScriptedObject(script_, answer.Object);
            return S_OK;
        }
        return result ? VariantCopy(result, const_cast<VARIANT*>(&answer.Value.Raw())) : S_OK;
    }

  private:
    ~ScriptedObject() { --script_.LiveObjects; }

    Script& script_;
    std::wstring name_;
    ULONG references_ = 1;
    std::vector<std::wstring> members_;
};

}  // namespace

Answer Script::Next(const std::wstring& call) {
    const auto answers = Answers.find(call);
    if (answers == Answers.end()) {
        return {};
    }
    Answer next = answers->second.front();
    if (answers->second.size() > 1) {
        answers->second.erase(answers->second.begin());
    }
    return next;
}

RegisteredClass::RegisteredClass(const std::wstring& programId, Script& script, const std::wstring& objectName)
    : key_(L"Software\\Classes\\" + programId), script_(script) {
    CLSID classId{};
    if (FAILED(CLSIDFromProgID(programId.c_str(), &classId))) {
        CoCreateGuid(&classId);
        wchar_t text[40] = L"";
        const int length = StringFromGUID2(classId, text, 40);
        RegSetKeyValueW(HKEY_CURRENT_USER, (key_ + L"\\CLSID").c_str(), nullptr, REG_SZ, text,
                        static_cast<DWORD>(length) * sizeof(wchar_t));
    }
    const ComPointer<IClassFactory> factory(new ScriptedObject(script, objectName));
    --script_.LiveObjects;  // the factory does not count
    ThrowIfFailed(
        CoRegisterClassObject(classId, factory.get(), CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE, &registration_),
        "CoRegisterClassObject", programId);
}

RegisteredClass::~RegisteredClass() {
    ++script_.LiveObjects;
    CoRevokeClassObject(registration_);
    RegDeleteTreeW(HKEY_CURRENT_USER, key_.c_str());
}

ComObject MakeScripted(Script& script, const std::wstring& name) {
    return ComObject(ComPointer<IDispatch>(new ScriptedObject(script, name)));
}

ComValue NoObject() {
    ComValue value;
    value.Receive()->vt = VT_DISPATCH;
    return value;
}

}  // namespace mip
