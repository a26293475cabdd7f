// ICapeThermoCompounds: all compounds of the package, whichever of them a material has.
#include "com/safe_array.h"
#include "packages/peng_robinson/com/compound_table.h"
#include "packages/peng_robinson/com/property_package.h"
#include "packages/peng_robinson/eos/errors.h"

#include <cmath>
#include <limits>

namespace peng_robinson {
namespace {

constexpr const wchar_t* compoundsInterface = L"ICapeThermoCompounds";

// Below and above, the heat capacity correlations and the equation say nothing about real substances.
constexpr double lowestTemperature = 10.0, highestTemperature = 3000.0;

constexpr double missingNumber = std::numeric_limits<double>::quiet_NaN();

std::vector<const eos::Compound*> readCompounds(const Configuration& configuration, const VARIANT& compIds,
                                                short position) {
    std::vector<const eos::Compound*> compounds;
    if (isUndefined(compIds)) {
        for (std::size_t i = 0; i < configuration.size(); ++i) {
            compounds.push_back(&configuration.compound(i));
        }
        return compounds;
    }
    for (const std::wstring& id : readTexts(compIds, L"compound identifiers", position)) {
        const std::optional<std::size_t> found = configuration.find(narrow(id));
        if (!found) {
            throw ArgumentError{position, L"\"" + id + L"\" is not a compound of this package"};
        }
        compounds.push_back(&configuration.compound(*found));
    }
    return compounds;
}

std::vector<std::wstring> readProperties(const VARIANT& props) {
    return readTexts(props, L"property names", 1);
}

template <typename Rows>
com::variant namesOf(const Rows& rows) {
    std::vector<std::wstring_view> names;
    for (const auto& row : rows) {
        names.push_back(row.name);
    }
    return com::textArray(names);
}

[[noreturn]] void refuseProperty(const std::wstring& property, const wchar_t* kind) {
    throw CapeError{ECapeLimitedImplHR, L"\"" + property + L"\" is not a " + kind + L" of this package"};
}

void requireComplete(const std::wstring& missing) {
    if (!missing.empty()) {
        throw CapeError{ECapeThrmPropertyNotAvailableHR,
                        L"No value for " + missing + L"; the other values are valid"};
    }
}

std::wstring valueOf(const std::wstring& property, const eos::Compound& compound) {
    return property + L" of " + widen(compound.name);
}

/// A table of properties that depend on one number, and what its properties are called in messages.
struct DependentTable {
    std::span<const DependentRow> rows;
    const wchar_t* kind;
};

// Values of the properties, each for all compounds, one property after the other.
com::variant dependentValues(const Configuration& configuration, const DependentTable& table,
                             const VARIANT& props, const VARIANT& compIds, double at, std::wstring& missing) {
    const std::vector<std::wstring> properties = readProperties(props);
    const std::vector<const eos::Compound*> compounds = readCompounds(configuration, compIds, 3);
    std::vector<double> values;
    for (const std::wstring& property : properties) {
        const DependentRow* row = findRow(table.rows, property);
        if (row == nullptr) {
            refuseProperty(property, table.kind);
        }
        for (const eos::Compound* compound : compounds) {
            const std::optional<double> value = row->value(*compound, configuration.constants(), at);
            if (!value && missing.empty()) {
                missing = valueOf(property, *compound);
            }
            values.push_back(value.value_or(missingNumber));
        }
    }
    return com::realArray(values);
}

// A number or a text. What the compound lacks is not a number, or an empty text: an empty VARIANT would show
// in a cell as 0, which looks like a value.
com::variant constantOf(const ConstantRow& row, const eos::Compound& compound,
                        const eos::EquationConstants& equation) {
    if (row.text != nullptr) {
        return com::variant{widen(compound.*row.text)};
    }
    return com::variant{row.number(compound, equation).value_or(missingNumber)};
}

bool isMissing(const VARIANT& constant) {
    return constant.vt == VT_BSTR ? com::viewOf(constant.bstrVal).empty() : std::isnan(constant.dblVal);
}

} // namespace

HRESULT STDMETHODCALLTYPE PropertyPackage::GetCompoundConstant(VARIANT props, VARIANT compIds,
                                                               VARIANT* propVals) noexcept {
    return call(compoundsInterface, L"GetCompoundConstant", [&] {
        returnValue(propVals, com::variant{});
        const auto configuration = configuration_;
        const std::vector<std::wstring> properties = readProperties(props);
        const std::vector<const eos::Compound*> compounds = readCompounds(*configuration, compIds, 2);
        std::wstring missing;
        com::unique_safearray values = com::makeVector(VT_VARIANT, properties.size() * compounds.size());
        {
            const com::array_lock<VARIANT> lock{values.get()};
            auto element = lock.elements().begin();
            for (const std::wstring& property : properties) {
                const ConstantRow* row = findConstant(property);
                if (row == nullptr) {
                    refuseProperty(property, L"constant");
                }
                for (const eos::Compound* compound : compounds) {
                    com::variant value = constantOf(*row, *compound, configuration->constants());
                    if (isMissing(value) && missing.empty()) {
                        missing = valueOf(property, *compound);
                    }
                    *element++ = value.release();
                }
            }
        }
        returnValue(propVals, com::variant::array(std::move(values), VT_VARIANT));
        requireComplete(missing);
    });
}

HRESULT STDMETHODCALLTYPE PropertyPackage::GetCompoundList(VARIANT* compIds, VARIANT* formulae,
                                                           VARIANT* names, VARIANT* boilTemps,
                                                           VARIANT* molwts, VARIANT* casnos) noexcept {
    return call(compoundsInterface, L"GetCompoundList", [&] {
        for (const VARIANT* out : {compIds, formulae, names, boilTemps, molwts, casnos}) {
            requirePointer(out);
        }
        const auto texts = [this](std::string_view eos::Compound::*member) {
            std::vector<std::wstring> values;
            for (std::size_t i = 0; i < configuration_->size(); ++i) {
                values.push_back(widen(configuration_->compound(i).*member));
            }
            return com::textArray(values);
        };
        const auto numbers = [this](double eos::Compound::*member) {
            std::vector<double> values;
            for (std::size_t i = 0; i < configuration_->size(); ++i) {
                values.push_back(configuration_->compound(i).*member);
            }
            return com::realArray(values);
        };
        replaceValue(compIds, texts(&eos::Compound::name));
        replaceValue(formulae, texts(&eos::Compound::formula));
        // The names by which clients let their users select compounds: the same as the identifiers that they
        // show.
        replaceValue(names, texts(&eos::Compound::name));
        replaceValue(boilTemps, numbers(&eos::Compound::normalBoilingPoint));
        replaceValue(molwts, numbers(&eos::Compound::molecularWeight));
        replaceValue(casnos, texts(&eos::Compound::cas));
    });
}

HRESULT STDMETHODCALLTYPE PropertyPackage::GetConstPropList(VARIANT* props) noexcept {
    return call(compoundsInterface, L"GetConstPropList",
                [&] { returnValue(props, namesOf(constantRows())); });
}

HRESULT STDMETHODCALLTYPE PropertyPackage::GetNumCompounds(LONG* num) noexcept {
    return call(compoundsInterface, L"GetNumCompounds", [&] {
        requirePointer(num);
        *num = static_cast<LONG>(configuration_->size());
    });
}

HRESULT STDMETHODCALLTYPE PropertyPackage::GetPDependentProperty(VARIANT props, double pressure,
                                                                 VARIANT compIds,
                                                                 VARIANT* propVals) noexcept {
    return call(compoundsInterface, L"GetPDependentProperty", [&] {
        requirePointer(propVals);
        if (!(pressure > 0.0) || !std::isfinite(pressure)) {
            throw eos::OutOfRange{"The pressure must be a positive number of pascal", pressure, 0.0,
                                  std::numeric_limits<double>::infinity()};
        }
        std::wstring missing;
        replaceValue(propVals,
                     dependentValues(*configuration_, {pressureRows(), L"pressure-dependent property"}, props,
                                     compIds, pressure, missing));
        requireComplete(missing);
    });
}

HRESULT STDMETHODCALLTYPE PropertyPackage::GetPDependentPropList(VARIANT* props) noexcept {
    return call(compoundsInterface, L"GetPDependentPropList",
                [&] { returnValue(props, namesOf(pressureRows())); });
}

HRESULT STDMETHODCALLTYPE PropertyPackage::GetTDependentProperty(VARIANT props, double temperature,
                                                                 VARIANT compIds,
                                                                 VARIANT* propVals) noexcept {
    return call(compoundsInterface, L"GetTDependentProperty", [&] {
        requirePointer(propVals);
        if (!(temperature >= lowestTemperature && temperature <= highestTemperature)) {
            throw eos::OutOfRange{"Temperature-dependent properties are available from 10 K to 3000 K",
                                  temperature, lowestTemperature, highestTemperature};
        }
        std::wstring missing;
        replaceValue(propVals,
                     dependentValues(*configuration_, {temperatureRows(), L"temperature-dependent property"},
                                     props, compIds, temperature, missing));
        requireComplete(missing);
    });
}

HRESULT STDMETHODCALLTYPE PropertyPackage::GetTDependentPropList(VARIANT* props) noexcept {
    return call(compoundsInterface, L"GetTDependentPropList",
                [&] { returnValue(props, namesOf(temperatureRows())); });
}

} // namespace peng_robinson
