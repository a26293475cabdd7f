// Late calls that the add-in makes without Automation's dispatcher, beside the same calls made with it.
#include "src/server/direct_functions.h"
#include "tests/src/com/type_information.h"
#include "tests/src/server/worksheet.h"

#include <algorithm>
#include <array>

using namespace tests;

namespace {

class DirectFunctions : public Worksheet {
  protected:
    void SetUp() override {
        Worksheet::SetUp();
        attach();
        com::com_ptr<ITypeLib> library;
        ASSERT_EQ(LoadTypeLib(AddIn::instance().path().c_str(), library.put()), S_OK);
        info = quorvane::typeNamed(library.get(), L"IQuorvaneUDF");
    }

    com::com_ptr<ITypeInfo> info; // in its vtable form, as the dispatcher wants it
};

// What the type library says of a function's arguments, from the table: a letter each, small when optional.
std::wstring letters(const com::DirectMethod<IQuorvaneUDF>& method) {
    std::wstring text;
    for (std::size_t i = 0; i < method.types.size(); ++i) {
        const bool isRequired = i < method.required;
        text += method.types[i] == VT_BSTR ? (isRequired ? L'T' : L't')
                : method.types[i] == VT_R8 ? (isRequired ? L'N' : L'n')
                                           : (isRequired ? L'V' : L'v');
    }
    return text;
}

// "propertyName BSTR, [basis VARIANT], -> unit BSTR*" likewise.
std::wstring letters(std::wstring_view arguments) {
    std::wstring text;
    for (;;) {
        const std::size_t end = std::min(arguments.find(L", "), arguments.size());
        const std::wstring_view one = arguments.substr(0, end);
        if (one.starts_with(L"-> ")) {
            return text;
        }
        const bool isRequired = !one.starts_with(L"[");
        text += one.find(L" BSTR") != one.npos     ? (isRequired ? L'T' : L't')
                : one.find(L" double") != one.npos ? (isRequired ? L'N' : L'n')
                                                   : (isRequired ? L'V' : L'v');
        arguments.remove_prefix(std::min(end + 2, arguments.size()));
    }
}

TEST_F(DirectFunctions, AreDeclaredAsInTheTypeLibrary) {
    const std::vector<quorvane::LibraryMember> members = quorvane::membersOf(info.get());
    ASSERT_EQ(members.size(), quorvane::directFunctions.size());
    for (std::size_t i = 0; i < members.size(); ++i) {
        EXPECT_EQ(quorvane::directFunctions[i].member, members[i].id) << i;
        EXPECT_EQ(letters(quorvane::directFunctions[i]), letters(members[i].arguments)) << i;
    }
}

// A way to call, and what the caller is given back.
struct Way {
    const char* name;
    WORD flags = DISPATCH_METHOD;
    DISPID member = 0x60020003; // the phases
    bool hasResult = true;
    bool hasException = true;
    bool hasArgument = true;
    IID iid = IID_NULL;
};

void PrintTo(const Way& way, std::ostream* out) { *out << way.name; }

struct Outcome {
    HRESULT code;
    std::string result;
    WORD raised;
    UINT argument;

    bool operator==(const Outcome&) const = default;
};

void PrintTo(const Outcome& outcome, std::ostream* out) {
    *out << outcome.code << ' ' << outcome.result << ' ' << outcome.raised << ' ' << outcome.argument;
}

class WayToCall : public DirectFunctions, public ::testing::WithParamInterface<Way> {
  protected:
    template <typename Invoke>
    static Outcome outcome(Invoke&& invoke) {
        com::variant name = text(L"P");
        com::variant orientation = text(L"vertical");
        com::variant leftOut = omitted();
        VARIANT lastFirst[] = {leftOut, orientation, name};
        DISPPARAMS parameters{lastFirst, nullptr, 3, 0};
        com::variant result{7L};
        EXCEPINFO exception{};
        exception.wCode = 8;
        UINT argument = 9;
        const Way& way = GetParam();
        const HRESULT code =
            invoke(&parameters, way.hasResult ? &result : nullptr, way.hasException ? &exception : nullptr,
                   way.hasArgument ? &argument : nullptr);
        return {code, shown(result), exception.wCode, argument};
    }
};

TEST_P(WayToCall, GivesWhatAutomationsDispatcherGives) {
    const Way& way = GetParam();
    const Outcome found =
        outcome([&](DISPPARAMS* given, VARIANT* result, EXCEPINFO* exception, UINT* argument) {
            return addIn->Invoke(way.member, way.iid, LOCALE_USER_DEFAULT, way.flags, given, result,
                                 exception, argument);
        });
    const Outcome expected = outcome([&](DISPPARAMS* given, VARIANT* result, EXCEPINFO* exception,
                                         UINT* argument) {
        return DispInvoke(addIn.get(), info.get(), way.member, way.flags, given, result, exception, argument);
    });
    EXPECT_EQ(found, expected);
}

INSTANTIATE_TEST_SUITE_P(
    Late, WayToCall,
    ::testing::Values(Way{"Usual"}, Way{"AsAScript", DISPATCH_METHOD | DISPATCH_PROPERTYGET},
                      Way{"AsAProperty", DISPATCH_PROPERTYGET}, Way{"AsAPropertyToPut", DISPATCH_PROPERTYPUT},
                      Way{"AsAPropertyToRefer", DISPATCH_PROPERTYPUTREF}, Way{"AsNothing", 0},
                      Way{.name = "OfAnUnknownMember", .member = 0x60020009},
                      Way{.name = "OfCompounds", .member = 0x60020002},
                      Way{.name = "WithoutAResult", .hasResult = false},
                      Way{.name = "WithoutAnException", .hasException = false},
                      Way{.name = "WithoutAnArgument", .hasArgument = false},
                      Way{.name = "OfAnotherInterface", .iid = IID_IUnknown}),
    [](const auto& tested) { return std::string{tested.param.name}; });

} // namespace
