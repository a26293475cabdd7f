// A package of very many compounds whose lists all agree: the functions work on it as on three. Not a
// million: the heap of Wine 8 then takes minutes to free what was asked for in seconds.
#include "com/safe_array.h"
#include "tests/src/server/worksheet.h"

using namespace tests;

namespace {

constexpr std::size_t count = 100'000;

com::variant amounts() { return com::realArray(std::vector<double>(count, 1.0)); }

class ManyCompounds : public Worksheet {
  protected:
    void SetUp() override {
        Worksheet::SetUp();
        std::vector<scripted::Compound> compounds;
        for (std::size_t i = 1; i <= count; ++i) {
            const std::wstring number = std::to_wstring(i);
            compounds.push_back({L"I" + number, L"Compound " + number, L"", 300.0, 20.0, L""});
        }
        package->compounds(std::move(compounds));
        attach();
    }
    /// How many cells the result has, and what stands in the first and in the last.
    std::string ends(const wchar_t* function, std::vector<com::variant> arguments) {
        const com::variant result = call(function, std::move(arguments));
        switch (result.vt) {
        case VT_ARRAY | VT_VARIANT:
            return endsOf<VARIANT>(result, [](const VARIANT& cell) { return shown(cell); });
        case VT_ARRAY | VT_R8:
            return endsOf<double>(result, [](double cell) { return shown(number(cell)); });
        case VT_ARRAY | VT_BSTR:
            return endsOf<BSTR>(result, [](BSTR cell) { return scripted::narrow(com::viewOf(cell)); });
        default:
            return shown(result);
        }
    }
    template <typename Element, typename Show>
    static std::string endsOf(const com::variant& result, Show show) {
        const com::array_lock<Element> lock{result.parray};
        const auto cells = lock.elements();
        return std::to_string(cells.size()) + ": " + show(cells.front()) + " ... " + show(cells.back());
    }
    template <typename... Arguments>
    static std::vector<com::variant> with(Arguments&&... arguments) {
        std::vector<com::variant> given;
        (given.push_back(std::forward<Arguments>(arguments)), ...);
        return given;
    }
};

TEST_F(ManyCompounds, WorkLikeAFew) {
    EXPECT_EQ(ends(L"CapeOpenCompounds", with(text(L"P"))), "100000: I1 ... I100000");
    EXPECT_EQ(show(L"CapeOpenCompounds", text(L"P"), omitted(), text(L"COMPOUND 99999")), "list: I99999");
    EXPECT_EQ(ends(L"CapeOpenCompoundConstant", with(text(L"P"), text(L"criticalTemperature"))),
              "100000: 10010 ... 1010000");
    EXPECT_EQ(ends(L"CapeOpenTemperatureDependentProperty",
                   with(text(L"P"), text(L"idealGasEnthalpy"), number(300.0), text(L"mass"))),
              "100000: 1000515 ... 51000015");
    EXPECT_EQ(ends(L"CapeOpenMixtureProperty", with(text(L"P"), text(L"fugacityCoefficient"), text(L"Vapor"),
                                                    number(300.0), number(1e5), amounts())),
              "100000: 51010.3001 ... 1051000.3");
    EXPECT_EQ(
        ends(L"CapeOpenMixtureProperty", with(text(L"P"), text(L"enthalpy"), text(L"Vapor"), number(300.0),
                                              number(1e5), amounts(), omitted(), text(L"mass"))),
        "1050015.005");
    EXPECT_EQ(
        ends(L"CapeOpenPhaseEquilibrium", with(text(L"P"), amounts(), text(L"temperature"), number(300.0),
                                               text(L"pressure"), number(1e5), text(L"mass"))),
        "200004: 300 ... 1.125e-05");
    EXPECT_EQ(show(L"CapeOpenMixtureProperty", text(L"P"), text(L"enthalpy"), text(L"Vapor"), number(300.0),
                   number(1e5), cells({1.0, 1.0, 2.0})),
              "Unexpected number of values for composition");
    com::variant table;
    EXPECT_EQ(addIn->Persist(book(), &table), S_OK);
}

} // namespace
