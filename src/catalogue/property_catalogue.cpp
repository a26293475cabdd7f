#include "src/catalogue/property_catalogue.h"

#include "src/catalogue/property_tables.h"
#include "src/foundation/exceptions.h"
#include "src/foundation/text.h"

#include <algorithm>
#include <utility>

namespace quorvane {

namespace {

PropertyInfo condition(const wchar_t* name, const wchar_t* unitMole, const wchar_t* unitMass,
                       EnumPropertyType type) {
    return {name, unitMole, unitMass, Derivative_None, type, 0, 1, false, false};
}

struct Derivative {
    const wchar_t* suffix;
    EnumDerivativeType type;
    const wchar_t* unitSuffix; ///< null: the units of the property itself
    std::int32_t addedRank;
};

constexpr Derivative derivatives[] = {
    {L".Dtemperature", Derivative_Temperature, L"/K", 0},
    {L".Dpressure", Derivative_Pressure, L"/Pa", 0},
    {L".DmolFraction", Derivative_MolFraction, nullptr, 1},
    {L".Dmoles", Derivative_MoleNumber, L"/mol", 1},
};

} // namespace

std::size_t PropertyCatalogue::Hash::operator()(std::wstring_view name) const noexcept {
    std::uint32_t hash = 0x811C9DC5U;
    for (const wchar_t unit : name) {
        hash = (hash * 0x01000193U) ^ static_cast<std::uint32_t>(foldAscii(unit));
    }
    return hash;
}

bool PropertyCatalogue::Equal::operator()(std::wstring_view a, std::wstring_view b) const noexcept {
    return equalsFoldingAscii(a, b);
}

PropertyCatalogue::PropertyCatalogue() {
    add(condition(L"temperature", L"K", L"K", PropType_Temperature));
    add(condition(L"pressure", L"Pa", L"Pa", PropType_Pressure));
    add(condition(L"fraction", L"mol/mol", L"kg/kg", PropType_Fraction));
    add(condition(L"phaseFraction", L"mol/mol", L"kg/kg", PropType_PhaseFraction));
    add(condition(L"vaporFraction", L"mol/mol", L"kg/kg", PropType_VaporFraction));

    for (const wchar_t* name : tables::textConstants) {
        add({name, nullptr, nullptr, Derivative_None, PropType_StringConstant, 0, 1, false, false});
    }
    for (const tables::Constant& row : tables::realConstants) {
        add({row.name, row.unit, keepMassUnit(row.unit), Derivative_None, PropType_RealConstant,
             row.moleConversion, 1, false, false});
    }
    for (const tables::Constant& row : tables::temperatureDependent) {
        const PropertyInfo info{row.name,
                                row.unit,
                                keepMassUnit(row.unit),
                                Derivative_None,
                                PropType_TemperatureDependent,
                                row.moleConversion,
                                1,
                                false,
                                false};
        add(info);
        addDerivatives(info);
    }
    const auto addWithAlias = [this](PropertyInfo info, const wchar_t* alias) {
        add(info);
        addDerivatives(info);
        if (alias != nullptr) {
            info.propName = alias;
            add(info);
            addDerivatives(info);
        }
    };
    static_assert(std::ranges::all_of(
                      tables::singlePhase,
                      [](const tables::SinglePhase& row) { return !row.overall || row.moleConversion != 0; }),
                  "a condition of an equilibrium has a basis");
    for (const tables::SinglePhase& row : tables::singlePhase) {
        addWithAlias({row.name, row.unit, keepMassUnit(row.unit), Derivative_None, PropType_SinglePhase,
                      row.moleConversion, row.rank, row.extensive, row.overall},
                     row.alias);
    }
    for (const tables::TwoPhase& row : tables::twoPhase) {
        addWithAlias(
            {row.name, row.unit, row.unit, Derivative_None, PropType_TwoPhase, 0, row.rank, false, false},
            row.alias);
    }
}

const PropertyInfo* PropertyCatalogue::find(std::wstring_view name) const noexcept {
    const auto entry = entries_.find(name);
    return entry == entries_.end() ? nullptr : &entry->second;
}

const wchar_t* PropertyCatalogue::keep(std::wstring text) {
    return pool_.emplace_back(std::move(text)).c_str();
}

const wchar_t* PropertyCatalogue::keepMassUnit(const wchar_t* unitMole) {
    return unitMole == nullptr ? nullptr : keep(massUnitOf(unitMole));
}

const wchar_t* PropertyCatalogue::keepDerivativeUnit(const wchar_t* unit, std::wstring_view suffix) {
    return keep(derivativeUnit(unit, suffix));
}

void PropertyCatalogue::add(const PropertyInfo& entry) { entries_.emplace(entry.propName, entry); }

void PropertyCatalogue::addDerivatives(const PropertyInfo& base) {
    for (const Derivative& derivative : derivatives) {
        PropertyInfo entry = base;
        entry.propName = keep(joined(base.propName, derivative.suffix));
        entry.derivType = derivative.type;
        entry.rank += derivative.addedRank;
        entry.overall = false;
        if (derivative.type == Derivative_MoleNumber && base.extensive) {
            // The mole unit on both bases: the derivative of an extensive total is never converted to mass
            // basis.
            entry.unitMass = base.unitMole;
        } else if (derivative.unitSuffix != nullptr) {
            entry.unitMole = keepDerivativeUnit(base.unitMole, derivative.unitSuffix);
            entry.unitMass = keepDerivativeUnit(base.unitMass, derivative.unitSuffix);
        }
        add(entry);
        if (base.propType == PropType_TemperatureDependent) {
            return; // it depends on nothing but temperature, the first of the list
        }
    }
}

const PropertyCatalogue& catalogue() {
    static const PropertyCatalogue instance;
    return instance;
}

const PropertyInfo& lookupProperty(const wchar_t* name) {
    if (name == nullptr) {
        throw CWStrException{L"Property name not specified"};
    }
    const PropertyInfo* info = catalogue().find(name);
    if (info == nullptr) {
        throw WStrException{joined(L"Invalid/unknown property \"", name, L"\"")};
    }
    return *info;
}

std::wstring massUnitOf(std::wstring_view unit) {
    constexpr std::wstring_view mole = L"mol";
    std::wstring mass{unit};
    for (std::size_t at = mass.find(mole); at != std::wstring::npos; at = mass.find(mole, at + 2)) {
        mass.replace(at, mole.size(), L"kg");
    }
    return mass;
}

std::wstring derivativeUnit(const wchar_t* unit, std::wstring_view suffix) {
    std::wstring result{unit == nullptr ? L"" : unit};
    const std::size_t at = result.find(suffix);
    if (unit == nullptr || at == std::wstring::npos) {
        return result.append(suffix);
    }
    return result.insert(at + suffix.size(), L"2");
}

} // namespace quorvane
