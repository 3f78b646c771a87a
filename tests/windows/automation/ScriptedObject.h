#pragma once

#include <windows.h>
#include <ocidl.h>

#include <functional>
#include <map>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "platform/windows/ComAutomation.h"

namespace mip {

/// What happened to a set of scripted objects: every call as text in order, and how many of the objects still live.
struct Script {
    std::vector<std::wstring> Calls;
    int LiveObjects = 0;
};

/// Thrown by a script to make a call fail. With a description the object raises the error, as automation servers do;
/// without one the call itself gives the code.
struct ScriptedError {
    HRESULT Code;
    std::wstring Description{};
    bool IsDeferred = false;  ///< fills in code and description only when it is asked for them
};

/// An automation object made of lambdas. It keeps properties and methods apart and counts its references.
class ScriptedObject final : public IDispatch, public IProvideClassInfo {
  public:
    using Arguments = std::span<const VARIANT>;
    using Handler = std::function<ComValue(Arguments)>;

    /// The new object holds the reference that the caller takes over.
    static ComPointer<ScriptedObject> Make(Script& script, std::wstring name);

    ScriptedObject& Property(const std::wstring& name, Handler getter);
    ScriptedObject& Property(const std::wstring& name, ComValue value);
    ScriptedObject& Settable(const std::wstring& name, Handler setter);
    ScriptedObject& Method(const std::wstring& name, Handler handler);
    /// Type descriptions with these names; "" for none.
    ScriptedObject& Described(const std::wstring& className, const std::wstring& interfaceName);

    HRESULT WINAPI QueryInterface(REFIID wanted, void** found) override;
    ULONG WINAPI AddRef() override;
    ULONG WINAPI Release() override;
    HRESULT WINAPI GetTypeInfoCount(UINT* count) override;
    HRESULT WINAPI GetTypeInfo(UINT index, LCID language, ITypeInfo** info) override;
    HRESULT WINAPI GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID language, DISPID* ids) override;
    HRESULT WINAPI Invoke(DISPID id, REFIID, LCID language, WORD kind, DISPPARAMS* parameters, VARIANT* result,
                          EXCEPINFO* raised, UINT* badArgument) override;
    HRESULT WINAPI GetClassInfo(ITypeInfo** info) override;

  private:
    ScriptedObject(Script& script, std::wstring name);
    ~ScriptedObject();

    ScriptedObject& Add(WORD kind, const std::wstring& name, Handler handler);

    Script& script_;
    std::wstring name_;
    ULONG references_ = 1;
    std::vector<std::wstring> memberNames_;
    std::map<std::pair<WORD, std::wstring>, Handler> members_;
    ComPointer<ITypeInfo> classInfo_;
    ComPointer<ITypeInfo> interfaceInfo_;
};

/// An object as a value that owns the reference.
ComValue ObjectValue(ComPointer<ScriptedObject> object);
/// Another reference to the object.
ComPointer<IDispatch> Share(ScriptedObject& object);

/// Makes a program identifier lead to a maker of objects in this process for as long as the registration lives.
class RegisteredClass {
  public:
    using Maker = std::function<ComPointer<IDispatch>()>;

    RegisteredClass(const std::wstring& programId, Maker maker);
    ~RegisteredClass();
    RegisteredClass(const RegisteredClass&) = delete;
    RegisteredClass& operator=(const RegisteredClass&) = delete;

  private:
    std::wstring key_;
    DWORD registration_ = 0;
};

}  // namespace mip
