// The ways by which a user comes to a foreign call.
#include "tests/faults/stage.h"

#include "com/safe_array.h"
#include "tests/refusing_stream.h"

#include <algorithm>
#include <iterator>
#include <ranges>
#include <stdexcept>

namespace faults {

namespace {

using tests::cells;
using tests::number;
using tests::omitted;
using tests::text;
using Way = Stage::Way;

template <typename... Values>
std::vector<com::variant> list(Values&&... values) {
    std::vector<com::variant> result;
    (result.push_back(std::forward<Values>(values)), ...);
    return result;
}

com::variant object(const Stage& stage, const char* name) {
    return com::variant::object(stage.objectNamed(name)->dispatch());
}

void attachNew(Stage& stage) { stage.attachNew(); }

/// A way that can simply be gone once more.
Way repeated(std::function<void(Stage&)> prepare, const std::function<std::string(Stage&)>& go) {
    return {std::move(prepare), go, go};
}

/// A worksheet function of the package P; the arguments are made anew for each call.
Way function(const wchar_t* name, std::function<std::vector<com::variant>(Stage&)> arguments,
             std::function<void(Stage&)> prepare = attachNew) {
    return repeated(std::move(prepare), [name, arguments = std::move(arguments)](Stage& stage) {
        return stage.worksheet(name, arguments(stage));
    });
}

using Service = HRESULT (STDMETHODCALLTYPE IQuorvaneVSTOServices::*)(IUnknown*, BSTR, VARIANT*);

Way listing(Service service) {
    return repeated(attachNew, [service](Stage& stage) {
        SetErrorInfo(0, nullptr);
        com::variant result;
        const com::unique_bstr name = com::makeBstr(L"P");
        const HRESULT code = (stage.addIn.get()->*service)(stage.faultyBook(), name.get(), &result);
        return stage.service(code, [&] { return seen(result); });
    });
}

// --- The package's life
// --------------------------------------------------------------------------------------------

std::function<std::string(Stage&)> creation(CLSID clsid, CAPEOPENPackageManagerType type) {
    return [clsid, type](Stage& stage) {
        SetErrorInfo(0, nullptr);
        const com::unique_bstr maker = com::makeBstr(L"Scripted");
        const com::unique_bstr inner = com::makeBstr(L"First");
        const com::unique_bstr name = com::makeBstr(L"P");
        const HRESULT code = stage.addIn->CreateWorkbookPP(stage.faultyBook(), maker.get(), clsid, type,
                                                           inner.get(), name.get());
        return stage.service(code, [] { return std::string{"created"}; });
    };
}

void withoutStream(Stage& stage) { stage.package->omits(IID_IPersistStream); }

std::string deletePackage(Stage& stage) {
    SetErrorInfo(0, nullptr);
    const com::unique_bstr name = com::makeBstr(L"P");
    const HRESULT code = stage.addIn->DeleteWorkbookPP(stage.faultyBook(), name.get());
    return stage.service(code, [&] { return std::to_string(scripted::liveObjects()) + " left"; });
}

std::string persist(Stage& stage) {
    SetErrorInfo(0, nullptr);
    com::variant table;
    const HRESULT code = stage.addIn->Persist(stage.faultyBook(), &table);
    return stage.service(
        code, [&] { return seen(table); }, S_OK);
}

void save(Stage& stage) {
    stage.attachNew();
    stage.package->model.state = "scripted state";
    stage.savedTable.clear();
    ASSERT_EQ(stage.addIn->Persist(stage.faultyBook(), &stage.savedTable), S_OK);
    stage.remove();
    stage.package->model.state.clear();
}

std::string depersist(Stage& stage) {
    SetErrorInfo(0, nullptr);
    const HRESULT code = stage.addIn->Depersist(stage.faultyBook(), stage.savedTable);
    return stage.service(
        code,
        [&] {
            const std::string& state = stage.package->model.state;
            return "P, " + (state.empty() ? "nothing loaded" : state);
        },
        S_OK);
}

// A stream of somebody else's, into which the package copies its state.
class OwnStream final : public quorvane::test::RefusingStream {
  public:
    explicit OwnStream(HRESULT code) : code_{code} {}
    HRESULT STDMETHODCALLTYPE Write(const void*, ULONG count, ULONG* written) noexcept override {
        *written = count;
        return code_;
    }

  private:
    HRESULT code_;
};

// What the package's own stream answers is scripted as a method of the package.
void saveForACopy(Stage& stage) {
    save(stage);
    stage.package->hook("Load", [&stage](scripted::Call& call) -> HRESULT {
        const scripted::Failure* const failure = stage.package->failureOf("Write");
        const auto own = com::make<OwnStream>(failure == nullptr ? S_OK : failure->code);
        const auto given = com::queryFor<IStream>(call.in[0].punkVal);
        ULARGE_INTEGER all{};
        all.QuadPart = 1000;
        const HRESULT code = given->CopyTo(own.get(), all, nullptr, nullptr);
        return FAILED(code) ? code : S_OK;
    });
}

std::string edit(Stage& stage) {
    SetErrorInfo(0, nullptr);
    VARIANT_BOOL changed = VARIANT_FALSE;
    const com::unique_bstr name = com::makeBstr(L"P");
    const HRESULT code = stage.addIn->EditWorkbookPP(stage.faultyBook(), name.get(), &changed);
    return stage.service(code, [&] { return std::string{changed != VARIANT_FALSE ? "true" : "false"}; });
}

// --- Questions and calculations
// ------------------------------------------------------------------------------------

std::string checkSinglePhase(Stage& stage) {
    SetErrorInfo(0, nullptr);
    VARIANT_BOOL supported = VARIANT_FALSE;
    const com::unique_bstr name = com::makeBstr(L"P");
    const com::unique_bstr property = com::makeBstr(L"enthalpy");
    const com::unique_bstr phase = com::makeBstr(L"Liquid");
    const HRESULT code = stage.addIn->CheckSinglePhaseProperty(stage.faultyBook(), name.get(), property.get(),
                                                               phase.get(), &supported);
    return stage.service(code, [&] { return std::string{supported == VARIANT_TRUE ? "true" : "false"}; });
}

std::string checkTwoPhase(Stage& stage) {
    SetErrorInfo(0, nullptr);
    VARIANT_BOOL supported = VARIANT_FALSE;
    const com::unique_bstr name = com::makeBstr(L"P");
    const com::unique_bstr property = com::makeBstr(L"kvalue");
    const com::unique_bstr phase1 = com::makeBstr(L"Vapor");
    const com::unique_bstr phase2 = com::makeBstr(L"Liquid");
    const HRESULT code = stage.addIn->CheckTwoPhaseProperty(stage.faultyBook(), name.get(), property.get(),
                                                            phase1.get(), phase2.get(), &supported);
    return stage.service(code, [&] { return std::string{supported == VARIANT_TRUE ? "true" : "false"}; });
}

Way mixture(const wchar_t* property, com::variant (*basis)(), const char* composition = nullptr) {
    return function(L"CapeOpenMixtureProperty", [=](Stage& stage) {
        return list(text(L"P"), text(property), text(L"Liquid"), number(350.0), number(1e5),
                    composition == nullptr ? cells({1.0, 1.0, 2.0}) : object(stage, composition), omitted(),
                    basis());
    });
}

com::variant byMass() { return text(L"mass"); }

Way twoPhase(const wchar_t* property) {
    return function(L"CapeOpenTwoPhaseProperty", [=](Stage&) {
        return list(text(L"P"), text(property), text(L"Vapor"), text(L"Liquid"), number(350.0), number(1e5),
                    cells({1.0, 1.0, 2.0}), cells({1.0, 2.0, 1.0}));
    });
}

Way flash(const wchar_t* options, const char* filler = nullptr) {
    return function(L"CapeOpenPhaseEquilibrium", [=](Stage& stage) {
        return list(text(L"P"), cells({1.0, 1.0, 2.0}), text(L"temperature"), number(300.0),
                    text(L"pressure"), number(1e5), omitted(), text(options),
                    filler == nullptr ? text(L"#") : object(stage, filler), text(L"matrix"));
    });
}

std::vector<com::variant> onlyPackage(Stage&) { return list(text(L"P")); }

Way failingCompounds(const wchar_t* description) {
    return function(L"CapeOpenCompounds", onlyPackage, [=](Stage& stage) {
        stage.attachNew();
        stage.package->fails("GetCompoundList", static_cast<HRESULT>(ECapeComputationHR), description,
                             L"the name");
    });
}

// --- Excel
// ---------------------------------------------------------------------------------------------------------

std::string valueFromRange(Stage& stage) {
    SetErrorInfo(0, nullptr);
    com::variant value;
    const HRESULT code = stage.addIn->ValueFromRange(stage.objectNamed("cell")->dispatch(), &value);
    return stage.service(code, [&] { return seen(value); });
}

// Another add-in, whose front end has no services yet.
void startAnew(Stage& stage) { stage.startAnew(); }

std::map<std::string, Way> allWays() {
    const auto alone = creation(scripted::packageInProcess, StandAlonePackage11);
    const auto fromManager = creation(scripted::managerInProcess, PropertyPackageManager11);
    const auto removeFirst = [](Stage& stage) { stage.remove(); };
    const auto both = [](auto first, auto second) {
        return [=](Stage& stage) {
            first(stage);
            second(stage);
        };
    };
    std::map<std::string, Way> ways;
    ways["CreateWorkbookPP"] = repeated(removeFirst, alone);
    ways["CreateWorkbookPP from the manager"] = repeated(removeFirst, fromManager);
    ways["CreateWorkbookPP without IPersistStream"] = repeated(both(removeFirst, withoutStream), alone);
    ways["DeleteWorkbookPP"] = {attachNew, deletePackage, {}};
    ways["Persist"] = repeated(attachNew, persist);
    ways["Persist without IPersistStream"] = repeated(both(withoutStream, attachNew), persist);
    ways["Depersist"] = repeated(save, depersist);
    ways["Depersist without IPersistStream"] = repeated(both(withoutStream, save), depersist);
    ways["Depersist with a copy of the state"] = repeated(saveForACopy, depersist);
    ways["EditWorkbookPP"] = repeated(attachNew, edit);
    ways["CapeOpenCompounds"] = function(L"CapeOpenCompounds", onlyPackage);
    ways["CapeOpenPhases"] = function(L"CapeOpenPhases", onlyPackage);
    ways["CompoundConstantNames"] = listing(&IQuorvaneVSTOServices::CompoundConstantNames);
    ways["TemperatureDependentPropertyNames"] =
        listing(&IQuorvaneVSTOServices::TemperatureDependentPropertyNames);
    ways["SinglePhasePropertyNames"] = listing(&IQuorvaneVSTOServices::SinglePhasePropertyNames);
    ways["TwoPhasePropertyNames"] = listing(&IQuorvaneVSTOServices::TwoPhasePropertyNames);
    ways["PhaseEquilibriumConditionNames"] = listing(&IQuorvaneVSTOServices::PhaseEquilibriumConditionNames);
    // What a package offers is asked for once; one that cannot tell offers the plain conditions until it is
    // edited.
    ways["PhaseEquilibriumConditionNames"].again = {};
    ways["CapeOpenCompoundConstant"] = function(
        L"CapeOpenCompoundConstant", [](Stage&) { return list(text(L"P"), text(L"criticalTemperature")); });
    ways["CapeOpenTemperatureDependentProperty"] =
        function(L"CapeOpenTemperatureDependentProperty",
                 [](Stage&) { return list(text(L"P"), text(L"vaporPressure"), number(300.0)); });
    ways["CapeOpenTemperatureDependentProperty by mass"] =
        function(L"CapeOpenTemperatureDependentProperty", [](Stage&) {
            return list(text(L"P"), text(L"idealGasEnthalpy"), number(300.0), text(L"mass"));
        });
    ways["CheckSinglePhaseProperty"] = repeated(attachNew, checkSinglePhase);
    ways["CheckTwoPhaseProperty"] = repeated(attachNew, checkTwoPhase);
    ways["CapeOpenMixtureProperty"] = mixture(L"enthalpy", omitted);
    ways["CapeOpenMixtureProperty by mass"] = mixture(L"enthalpy", byMass);
    ways["CapeOpenMixtureProperty of compounds"] = mixture(L"fugacityCoefficient", omitted);
    ways["CapeOpenMixtureProperty of a derivative by mass"] = mixture(L"enthalpy.DmolFraction", byMass);
    // The second conversion of a derivative on one package is refused, failures or not.
    ways["CapeOpenMixtureProperty of a derivative by mass"].again = {};
    ways["CapeOpenMixtureProperty of derivatives"] = mixture(L"enthalpy.DmolFraction", omitted);
    ways["CapeOpenMixtureProperty of derivatives of compounds"] =
        mixture(L"fugacityCoefficient.DmolFraction", omitted);
    ways["CapeOpenTwoPhaseProperty"] = twoPhase(L"kvalue");
    ways["CapeOpenTwoPhaseProperty of derivatives"] = twoPhase(L"kvalue.DmolFraction");
    ways["CapeOpenPhaseEquilibrium"] = flash(L"");
    ways["CapeOpenPhaseEquilibrium with a filler"] = flash(L"", "cell");
    ways["CapeOpenPhaseEquilibrium with enthalpies"] = flash(L"enthalpy");
    ways["CapeOpenCompounds of a failing package"] = failingCompounds(L"the description");
    ways["CapeOpenCompounds of a package without words"] = failingCompounds(L"");
    ways["CapeOpenCompounds in a column"] = function(L"CapeOpenCompounds", onlyPackage, [](Stage& stage) {
        stage.attachNew();
        stage.objectNamed("application")->answers(L"Caller", stage.objectNamed("caller")->dispatch());
    });
    ways["CapeOpenCompounds of a cell"] = function(L"CapeOpenCompounds", [](Stage& stage) {
        return list(text(L"P"), omitted(), object(stage, "cell"));
    });
    ways["CapeOpenMixtureProperty of cells"] = mixture(L"enthalpy", omitted, "cells");
    ways["CapeOpenMixtureProperty of unreadable cells"] = mixture(L"enthalpy", omitted, "cells");
    ways["CapeOpenMixtureProperty of unreadable cells"].prepare = [](Stage& stage) {
        stage.attachNew();
        stage.objectNamed("cells")->failsToRead(L"Value", E_UNEXPECTED);
        stage.objectNamed("cells")->describes(S_OK, L"the cells are busy");
    };
    ways["CapeOpenMixtureProperty by mass of cells"] = mixture(L"enthalpy", byMass, "cells");
    ways["CapeOpenMixtureProperty by mass of cells with an object"] = mixture(L"enthalpy", byMass, "cells");
    ways["CapeOpenMixtureProperty by mass of cells with an object"].prepare = [](Stage& stage) {
        stage.attachNew();
        stage.objectNamed("cells")->answers(L"Value", [element = stage.objectNamed("element")] {
            com::unique_safearray array = com::makeMatrix(VT_VARIANT, 1, 3);
            const com::array_lock<VARIANT> lock{array.get()};
            lock.elements()[0] = com::variant::object(element->dispatch()).release();
            lock.elements()[1] = com::variant{1.0}.release();
            lock.elements()[2] = com::variant{2.0}.release();
            return com::variant::array(std::move(array), VT_VARIANT);
        });
    };
    ways["ValueFromRange"] = repeated(attachNew, valueFromRange);
    ways["OnConnection"] = {startAnew, [](Stage& stage) { return stage.connect(); },
                            [](Stage& stage) { return stage.connect(); }};
    return ways;
}

const std::map<std::string, Way>& everyWay() {
    static const std::map<std::string, Way> all = allWays();
    return all;
}

} // namespace

const Way& Stage::wayNamed(const std::string& name) {
    const auto found = everyWay().find(name);
    if (found == everyWay().end()) {
        throw std::invalid_argument{"There is no way " + name};
    }
    return found->second;
}

std::vector<std::string> Stage::wayNames() {
    std::vector<std::string> names;
    for (const auto& [name, way] : everyWay()) {
        names.push_back(name);
    }
    return names;
}

} // namespace faults
