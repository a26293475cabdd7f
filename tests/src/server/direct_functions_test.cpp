// Late calls that the add-in makes without Automation's dispatcher, beside the same calls made with it.
#include "src/server/direct_functions.h"
#include "tests/src/com/type_information.h"
#include "tests/src/server/worksheet.h"

#include <regex>

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

// As the type library's arguments are written: "BSTR, [VARIANT], ".
std::wstring written(const com::DirectMethod<IQuorvaneUDF>& method) {
    std::wstring text;
    for (std::size_t i = 0; i < method.types.size(); ++i) {
        const std::wstring type = method.types[i] == VT_BSTR ? L"BSTR"
                                  : method.types[i] == VT_R8 ? L"double"
                                                             : L"VARIANT";
        text += (i < method.required ? type : L'[' + type + L']') + L", ";
    }
    return text;
}

// "propertyName BSTR, [basis VARIANT], -> unit BSTR*" without the names and without the result.
std::wstring withoutNames(const std::wstring& arguments) {
    const std::wstring given = arguments.substr(0, arguments.find(L"-> "));
    return std::regex_replace(given, std::wregex{L"\\w+ (\\w+)"}, L"$1");
}

TEST_F(DirectFunctions, AreDeclaredAsInTheTypeLibrary) {
    const std::vector<quorvane::LibraryMember> members = quorvane::membersOf(info.get());
    ASSERT_EQ(members.size(), quorvane::directFunctions.size());
    for (std::size_t i = 0; i < members.size(); ++i) {
        EXPECT_EQ(quorvane::directFunctions[i].member, members[i].id) << i;
        EXPECT_EQ(written(quorvane::directFunctions[i]), withoutNames(members[i].arguments)) << i;
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
