#include "tests/windows/automation/ScriptedObject.h"

#include <algorithm>

#include "platform/PlatformError.h"

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

std::wstring Describe(WORD kind, const std::wstring& object, const std::wstring& member,
                      ScriptedObject::Arguments arguments) {
    std::wstring text = kind == DISPATCH_PROPERTYGET ? L"get " : kind == DISPATCH_METHOD ? L"call " : L"put ";
    text += object + L"." + member + L"(";
    for (std::size_t index = 0; index < arguments.size(); ++index) {
        text += (index > 0 ? L", " : L"") + Describe(arguments[index]);
    }
    return text + L")";
}

constexpr wchar_t DeferredDescription[] = L"filled in when asked";

HRESULT WINAPI FillIn(EXCEPINFO* raised) {
    raised->scode = E_ABORT;
    raised->bstrDescription = SysAllocString(DeferredDescription);
    return S_OK;
}

HRESULT Raise(const ScriptedError& error, EXCEPINFO* raised) {
    if (error.IsDeferred) {
        raised->pfnDeferredFillIn = FillIn;
        return DISP_E_EXCEPTION;
    }
    if (error.Description.empty()) {
        return error.Code;
    }
    // An own error number has no place in an HRESULT and goes into the 16-bit code.
    if (error.Code > 0) {
        raised->wCode = static_cast<WORD>(error.Code);
    } else {
        raised->scode = error.Code;
    }
    raised->bstrDescription = SysAllocString(error.Description.c_str());
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

class ClassFactory final : public IClassFactory {
  public:
    explicit ClassFactory(RegisteredClass::Maker maker) : maker_(std::move(maker)) {}

    HRESULT WINAPI QueryInterface(REFIID wanted, void** found) override {
        if (wanted != IID_IUnknown && wanted != IID_IClassFactory) {
            *found = nullptr;
            return E_NOINTERFACE;
        }
        AddRef();
        *found = this;
        return S_OK;
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
        try {
            return maker_()->QueryInterface(wanted, made);
        } catch (const ScriptedError& error) {
            return error.Code;
        }
    }
    HRESULT WINAPI LockServer(BOOL) override { return S_OK; }

  private:
    ~ClassFactory() = default;

    RegisteredClass::Maker maker_;
    ULONG references_ = 1;
};

}  // namespace

ScriptedObject::ScriptedObject(Script& script, std::wstring name) : script_(script), name_(std::move(name)) {
    ++script_.LiveObjects;
}

ScriptedObject::~ScriptedObject() {
    --script_.LiveObjects;
}

ComPointer<ScriptedObject> ScriptedObject::Make(Script& script, std::wstring name) {
    return ComPointer<ScriptedObject>(new ScriptedObject(script, std::move(name)));
}

ScriptedObject& ScriptedObject::Add(WORD kind, const std::wstring& name, Handler handler) {
    memberNames_.push_back(name);
    members_[{kind, name}] = std::move(handler);
    return *this;
}

ScriptedObject& ScriptedObject::Property(const std::wstring& name, Handler getter) {
    return Add(DISPATCH_PROPERTYGET, name, std::move(getter));
}

ScriptedObject& ScriptedObject::Property(const std::wstring& name, ComValue value) {
    return Property(name, [value](Arguments) { return value; });
}

ScriptedObject& ScriptedObject::Settable(const std::wstring& name, Handler setter) {
    return Add(DISPATCH_PROPERTYPUT, name, std::move(setter));
}

ScriptedObject& ScriptedObject::Method(const std::wstring& name, Handler handler) {
    return Add(DISPATCH_METHOD, name, std::move(handler));
}

ScriptedObject& ScriptedObject::Described(const std::wstring& className, const std::wstring& interfaceName) {
    classInfo_ = className.empty() ? nullptr : MakeTypeInfo(TKIND_COCLASS, className);
    interfaceInfo_ = interfaceName.empty() ? nullptr : MakeTypeInfo(TKIND_DISPATCH, interfaceName);
    return *this;
}

HRESULT ScriptedObject::QueryInterface(REFIID wanted, void** found) {
    if (wanted == IID_IUnknown || wanted == IID_IDispatch) {
        *found = static_cast<IDispatch*>(this);
    } else if (wanted == IID_IProvideClassInfo && classInfo_) {
        *found = static_cast<IProvideClassInfo*>(this);
    } else {
        *found = nullptr;
        return E_NOINTERFACE;
    }
    AddRef();
    return S_OK;
}

ULONG ScriptedObject::AddRef() {
    return ++references_;
}

ULONG ScriptedObject::Release() {
    const ULONG left = --references_;
    if (left == 0) {
        delete this;
    }
    return left;
}

HRESULT ScriptedObject::GetTypeInfoCount(UINT* count) {
    *count = interfaceInfo_ ? 1 : 0;
    return S_OK;
}

HRESULT ScriptedObject::GetTypeInfo(UINT, LCID, ITypeInfo** info) {
    if (!interfaceInfo_) {
        return E_NOTIMPL;
    }
    interfaceInfo_->AddRef();
    *info = interfaceInfo_.get();
    return S_OK;
}

HRESULT ScriptedObject::GetClassInfo(ITypeInfo** info) {
    classInfo_->AddRef();
    *info = classInfo_.get();
    return S_OK;
}

HRESULT ScriptedObject::GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID, DISPID* ids) {
    const auto member = std::ranges::find(memberNames_, std::wstring(names[0]));
    if (member == memberNames_.end()) {
        return DISP_E_UNKNOWNNAME;
    }
    ids[0] = static_cast<DISPID>(member - memberNames_.begin()) + 1;
    return S_OK;
}

HRESULT ScriptedObject::Invoke(DISPID id, REFIID, LCID, WORD kind, DISPPARAMS* parameters, VARIANT* result,
                               EXCEPINFO* raised, UINT*) {
    const std::wstring& member = memberNames_.at(static_cast<std::size_t>(id - 1));
    std::vector<VARIANT> arguments(parameters->rgvarg, parameters->rgvarg + parameters->cArgs);
    std::ranges::reverse(arguments);
    script_.Calls.push_back(Describe(kind, name_, member, arguments));
    const auto handler = members_.find({kind, member});
    const bool isPut = parameters->cNamedArgs == 1 && parameters->rgdispidNamedArgs[0] == DISPID_PROPERTYPUT;
    if (handler == members_.end() || isPut != (kind == DISPATCH_PROPERTYPUT)) {
        return DISP_E_MEMBERNOTFOUND;
    }
    try {
        const ComValue returned = handler->second(arguments);
        return result ? VariantCopy(result, const_cast<VARIANT*>(&returned.Raw())) : S_OK;
    } catch (const ScriptedError& error) {
        return Raise(error, raised);
    }
}

ComValue ObjectValue(ComPointer<ScriptedObject> object) {
    ComValue value;
    VARIANT* const raw = value.Receive();
    raw->vt = VT_DISPATCH;
    raw->pdispVal = object.release();
    return value;
}

ComPointer<IDispatch> Share(ScriptedObject& object) {
    object.AddRef();
    return ComPointer<IDispatch>(&object);
}

RegisteredClass::RegisteredClass(const std::wstring& programId, Maker maker)
    : key_(L"Software\\Classes\\" + programId) {
    CLSID classId{};
    if (FAILED(CLSIDFromProgID(programId.c_str(), &classId))) {
        CoCreateGuid(&classId);
        wchar_t text[40] = L"";
        const int length = StringFromGUID2(classId, text, 40);
        RegSetKeyValueW(HKEY_CURRENT_USER, (key_ + L"\\CLSID").c_str(), nullptr, REG_SZ, text,
                        static_cast<DWORD>(length) * sizeof(wchar_t));
    }
    const ComPointer<IClassFactory> factory(new ClassFactory(std::move(maker)));
    ThrowIfFailed(
        CoRegisterClassObject(classId, factory.get(), CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE, &registration_),
        "CoRegisterClassObject", programId);
}

RegisteredClass::~RegisteredClass() {
    CoRevokeClassObject(registration_);
    RegDeleteTreeW(HKEY_CURRENT_USER, key_.c_str());
}

}  // namespace mip
