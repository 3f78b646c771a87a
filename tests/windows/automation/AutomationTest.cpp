#include <gtest/gtest.h>

#include "platform/PlatformError.h"
#include "platform/windows/ComApartment.h"
#include "platform/windows/ComAutomation.h"
#include "tests/windows/automation/ScriptedObject.h"

namespace mip {
namespace {

class Automation : public testing::Test {
  protected:
    ComApartment apartment_;
    Script script_;
};

TEST_F(Automation, CallsReachTheObjectByNameKindAndOrder) {
    const auto scripted = ScriptedObject::Make(script_, L"Thing");
    scripted->Method(L"Combine", [](ScriptedObject::Arguments) { return ComValue(L"かな"); })
        .Property(L"Item", [](ScriptedObject::Arguments arguments) { return ComValue(arguments[0].lVal * 2); })
        .Settable(L"Caption", [](ScriptedObject::Arguments) { return ComValue(); });
    const ComObject thing(Share(*scripted));

    EXPECT_EQ(thing.Call(L"Combine", {L"first", ComValue::Missing(), 3, true}).Text(), L"かな");
    EXPECT_EQ(thing.Get(L"Item", {21}).Integer(), 42);
    thing.Put(L"Caption", L"");

    const std::vector<std::wstring> expected = {L"call Thing.Combine(\"first\", missing, 3, true)",
                                                L"get Thing.Item(21)", L"put Thing.Caption(\"\")"};
    EXPECT_EQ(script_.Calls, expected);
}

TEST_F(Automation, ReferenceArgumentComesBackChanged) {
    const auto scripted = ScriptedObject::Make(script_, L"Thing");
    scripted->Method(L"Count", [](ScriptedObject::Arguments arguments) {
        EXPECT_EQ(arguments[1].vt, VT_BYREF | VT_VARIANT);
        arguments[1].pvarVal->lVal += 5;
        return ComValue();
    });
    ComValue affected(2);
    ComObject(Share(*scripted)).Call(L"Count", {L"in", ComValue::Reference(affected)});
    EXPECT_EQ(affected.Integer(), 7);
}

TEST_F(Automation, FailuresCarryTheObjectsOwnCodeAndDescription) {
    struct Case {
        const char* Label;
        ScriptedError Error;
        std::uint32_t Code;
        std::wstring Text;
    };
    const Case cases[] = {
        {"the call's own result", {RPC_E_DISCONNECTED}, 0x80010108, L""},
        {"raised with a result", {E_ACCESSDENIED, L"not now"}, 0x80070005, L"not now"},
        {"raised with a number of its own", {1004, L"no such sheet"}, 0x800A03EC, L"no such sheet"},
        {"raised and filled in on demand", {S_OK, L"", true}, 0x80004004, L"filled in when asked"},
    };
    for (const Case& each : cases) {
        SCOPED_TRACE(each.Label);
        const auto scripted = ScriptedObject::Make(script_, L"Thing");
        scripted->Method(L"Fail", [&each](ScriptedObject::Arguments) -> ComValue { throw each.Error; });
        try {
            ComObject(Share(*scripted)).Call(L"Fail");
            ADD_FAILURE() << "nothing was thrown";
        } catch (const PlatformError& error) {
            EXPECT_EQ(error.Code(), each.Code);
            EXPECT_EQ(error.Object(), L"Fail");
            EXPECT_EQ(error.Text(), each.Text);
        }
    }
}

TEST_F(Automation, WhatIsNotThereIsAnErrorOfItsKind) {
    const auto scripted = ScriptedObject::Make(script_, L"Thing");
    scripted->Property(L"Nothing", ObjectValue(nullptr)).Property(L"Word", ComValue(L"four"));
    const ComObject thing(Share(*scripted));
    EXPECT_EQ(CodeOf([&] { thing.Call(L"Absent"); }), static_cast<std::uint32_t>(DISP_E_UNKNOWNNAME));
    EXPECT_EQ(CodeOf([&] { thing.Put(L"Word", 1); }), static_cast<std::uint32_t>(DISP_E_MEMBERNOTFOUND));
    EXPECT_EQ(CodeOf([&] { thing.Get(L"Nothing").Object(); }), static_cast<std::uint32_t>(E_POINTER));
    EXPECT_EQ(CodeOf([&] { thing.Get(L"Word").Integer(); }), static_cast<std::uint32_t>(DISP_E_TYPEMISMATCH));
    EXPECT_EQ(CodeOf([] { ComObject::Create(L"Nobody.Registered.This"); }),
              static_cast<std::uint32_t>(CO_E_CLASSSTRING));
}

TEST_F(Automation, ValuesOwnWhatTheyHold) {
    {
        const ComValue object = ObjectValue(ScriptedObject::Make(script_, L"Thing"));
        ComValue copy = object;
        const ComValue moved = std::move(copy);
        copy = moved;
        const ComObject shared = moved.Object();
        EXPECT_EQ(script_.LiveObjects, 1);
    }
    EXPECT_EQ(script_.LiveObjects, 0);
}

}  // namespace
}  // namespace mip
