#include "tests/random/packages.h"

#include "packages/peng_robinson/com/identity.h"
#include "tests/random/values.h"
#include "tests/scripted_package/manager_object.h"
#include "tests/scripted_package/package_object.h"

#include <array>
#include <stdexcept>

namespace chance {

namespace {

using scripted::Script;

// {7C0C0A57-5D0E-4F53-9B0B-0C8B8B3C55B0} and following: one class a kind.
constexpr CLSID classNumber(unsigned char number) {
    return {0x7C0C0A57,
            0x5D0E,
            0x4F53,
            {0x9B, 0x0B, 0x0C, 0x8B, 0x8B, 0x3C, 0x55, static_cast<unsigned char>(0xB0 + number)}};
}

constexpr std::array methods = {"GetCompoundList",
                                "GetPhaseList",
                                "GetConstPropList",
                                "GetTDependentPropList",
                                "GetSinglePhasePropList",
                                "GetTwoPhasePropList",
                                "GetCompoundConstant",
                                "GetTDependentProperty",
                                "SetMaterial",
                                "UnsetMaterial",
                                "CalcSinglePhaseProp",
                                "CalcTwoPhaseProp",
                                "CalcEquilibrium",
                                "CheckSinglePhasePropSpec",
                                "CheckTwoPhasePropSpec",
                                "Initialize",
                                "Terminate",
                                "Edit",
                                "Save",
                                "Load",
                                "InitNew",
                                "GetSizeMax",
                                "IsDirty",
                                "get_description",
                                "get_name",
                                "get_ComponentName"};

std::vector<std::wstring> namesOf(const std::vector<scripted::Property>& properties) {
    std::vector<std::wstring> names;
    names.reserve(properties.size());
    for (const scripted::Property& property : properties) {
        names.push_back(property.name);
    }
    return names;
}

Vocabulary vocabularyOf(const scripted::Model& model) {
    Vocabulary words;
    for (const scripted::Compound& compound : model.compounds) {
        words.compounds.push_back(compound.id);
    }
    for (const scripted::Phase& phase : model.phases) {
        words.phases.push_back(phase.label);
    }
    words.constants = model.constants;
    words.temperatureDependent = model.temperatureDependent;
    words.singlePhase = namesOf(model.singlePhase);
    words.twoPhase = namesOf(model.twoPhase);
    return words;
}

template <typename Object, typename... Arguments>
IUnknown* newObject(Arguments... arguments) {
    return static_cast<ICapeIdentification*>(com::make<Object>(std::move(arguments)...).release());
}

Script onePhaseOfOne() {
    Script script;
    script.compounds({{L"Water", L"Water", L"H2O", 373.15, 18.015, L"7732-18-5"}});
    script.phases({{L"Brine", L"Liquid"}});
    return script;
}

Script weightless() {
    Script script;
    constexpr double unknown = std::numeric_limits<double>::quiet_NaN();
    script.compounds({{L"Oil", L"Oil", L"", 500.0, unknown, L""},
                      {L"Gas", L"Gas", L"", 100.0, 0.0, L""},
                      {L"Ash", L"Ash", L"", 900.0, 60.0, L""},
                      {L"\x6c34", L"\x6c34", L"", 373.0, 18.0, L""}});
    script.phases({{L"Vapor", L"Vapor"}, {L"Oil", L"Liquid"}, {L"Sludge", L"Solid"}, {L"?", L"Unknown"}});
    return script;
}

} // namespace

const std::vector<HRESULT> failureCodes = [] {
    std::vector<HRESULT> codes = {E_FAIL,
                                  E_NOTIMPL,
                                  E_OUTOFMEMORY,
                                  E_POINTER,
                                  E_UNEXPECTED,
                                  static_cast<HRESULT>(RPC_E_CALL_REJECTED),
                                  static_cast<HRESULT>(0x8004FFFFU)};
    for (unsigned code = ECapeUnknownHR; code <= static_cast<unsigned>(ECapeThrmPropertyNotAvailableHR);
         ++code) {
        codes.push_back(static_cast<HRESULT>(code));
    }
    return codes;
}();

Packages::Packages(const std::wstring& bundled) {
    addScripted(L"Plain", classNumber(0), {});
    addScripted(L"Faulty", classNumber(1), {});
    addScripted(L"Single", classNumber(2), onePhaseOfOne());
    addScripted(L"Weightless", classNumber(3), weightless());
    addManaged();
    addBundled(bundled);
}

void Packages::addScripted(std::wstring name, const CLSID& clsid, Script script) {
    const auto shared = std::make_shared<Script>(std::move(script));
    registrations_.push_back(std::make_unique<scripted::Registration>(
        clsid, [shared, clsid] { return newObject<scripted::PackageObject>(shared, clsid); }));
    kinds_.push_back({std::move(name), clsid, StandAlonePackage11, {}, vocabularyOf(shared->model), shared});
}

void Packages::addManaged() {
    const auto script = std::make_shared<Script>();
    const auto manager = std::make_shared<Script>();
    registrations_.push_back(std::make_unique<scripted::Registration>(classNumber(4), [script, manager] {
        return newObject<scripted::ManagerObject>(manager, script, classNumber(0));
    }));
    kinds_.push_back({L"Managed", classNumber(4), PropertyPackageManager11, L"First",
                      vocabularyOf(script->model), script});
    managers_.push_back(manager);
}

void Packages::addBundled(const std::wstring& path) {
    const HMODULE module = LoadLibraryW(path.c_str()); // kept to the end of the process
    const auto entry = module == nullptr ? nullptr : GetProcAddress(module, "DllGetClassObject");
    if (entry == nullptr) {
        throw std::runtime_error{"PengRobinson.dll beside the program cannot be used"};
    }
    const auto getClassObject =
        reinterpret_cast<HRESULT(STDAPICALLTYPE*)(REFCLSID, REFIID, void**)>(reinterpret_cast<void*>(entry));
    registrations_.push_back(std::make_unique<scripted::Registration>(
        peng_robinson::managerClsid, [getClassObject]() -> IUnknown* {
            com::com_ptr<IClassFactory> factory;
            IUnknown* made = nullptr;
            HRESULT code = getClassObject(peng_robinson::managerClsid, IID_IClassFactory, factory.putVoid());
            if (SUCCEEDED(code)) {
                code = factory->CreateInstance(nullptr, IID_IUnknown, reinterpret_cast<void**>(&made));
            }
            if (FAILED(code)) {
                throw scripted::Failure{code, {}, {}};
            }
            return made;
        }));
    kinds_.push_back({L"Bundled",
                      peng_robinson::managerClsid,
                      PropertyPackageManager11,
                      L"Air separation",
                      {{L"nitrogen", L"oxygen", L"argon"},
                       {L"Vapor", L"Liquid"},
                       {L"criticalTemperature", L"molecularWeight", L"casRegistryNumber"},
                       {L"idealGasEnthalpy", L"vaporPressure"},
                       {L"enthalpy", L"entropy", L"volume", L"density", L"fugacityCoefficient", L"viscosity"},
                       {L"kvalue", L"surfaceTension"}},
                      nullptr});
}

void Packages::disturb(Dice& dice, const std::function<void()>& inside) {
    Script& script = faulty();
    const char* const method = dice.of(methods);
    switch (dice.below(8)) {
    case 0:
    case 1:
        script = Script{}; // it recovers
        break;
    case 2:
    case 3: {
        const HRESULT code = dice.of(failureCodes);
        const std::wstring words = std::wstring{packagesOwnWords} + L" no";
        script.fails(method, code, dice.percent(50) ? words : L"", dice.percent(50) ? words : L"");
        break;
    }
    case 4: {
        std::vector<com::variant> outputs;
        for (std::size_t i = 1 + dice.below(3); i > 0; --i) {
            outputs.push_back(anyValue(dice, 3));
        }
        script.answers(method, std::move(outputs));
        break;
    }
    case 5:
        script.hook(method, [inside](scripted::Call& call) {
            inside();
            return call.healthy();
        });
        break;
    case 6:
        script.hook(method, [code = dice.percent(50) ? S_OK : S_FALSE](scripted::Call& call) {
            scripted::leaveErrorInformation(L"left behind");
            const HRESULT healthy = call.healthy();
            return FAILED(healthy) ? healthy : code;
        });
        break;
    default: {
        constexpr std::array<const IID*, 6> interfaces = {&__uuidof(ICapeThermoMaterialContext),
                                                          &__uuidof(ICapeThermoPhases),
                                                          &__uuidof(ICapeUtilities),
                                                          &__uuidof(ECapeUser),
                                                          &IID_IPersistStream,
                                                          &IID_IPersistStreamInit};
        script.omits(*dice.of(interfaces));
    }
    }
}

void Packages::forget() {
    faulty() = Script{};
    for (const Kind& kind : kinds_) {
        if (kind.script) {
            kind.script->forgetCalls();
            kind.script->model.state = "scripted state";
        }
    }
    for (const auto& manager : managers_) {
        manager->forgetCalls();
    }
}

} // namespace chance
