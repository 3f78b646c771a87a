#pragma once

#include <windows.h>
#include <ocidl.h>

#include <map>
#include <string>
#include <utility>
#include <vector>

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

/// How a set of automation objects answers, and what happened to them.
struct Script {
    /// By "get Recordset.EOF", "put Browser.Visible", "call Shell.Windows" or "create Browser": one answer after the
    /// other, the last one for ever. What does not stand here the object does not have.
    std::map<std::wstring, std::vector<Answer>> Answers{};
    /// The names in an object's type descriptions: of its class and of its interface, "" for none.
    std::map<std::wstring, std::pair<std::wstring, std::wstring>> Types{};
    std::vector<std::wstring> Calls{};
    int LiveObjects = 0;

    /// The calls since the last time.
    std::vector<std::wstring> TakeCalls() { return std::exchange(Calls, {}); }
    Answer Next(const std::wstring& call);
};

/// Makes a program identifier lead to new objects of this name for as long as the registration lives.
class RegisteredClass {
  public:
    RegisteredClass(const std::wstring& programId, Script& script, const std::wstring& objectName);
    ~RegisteredClass();
    RegisteredClass(const RegisteredClass&) = delete;
    RegisteredClass& operator=(const RegisteredClass&) = delete;

  private:
    std::wstring key_;
    Script& script_;
    DWORD registration_ = 0;
};

/// A new object, for a call of its own.
ComObject MakeScripted(Script& script, const std::wstring& name);
/// A value that should be an object and is none.
ComValue NoObject();

}  // namespace mip
