// Identity, compounds, phases, constants and saved state of the scripted package.
#include "tests/scripted_package/package_object.h"

#include <algorithm>
#include <array>

namespace scripted {

namespace {

// The molar gas constant, J/(mol K). Source: CODATA 2018, exact by definition of the SI.
constexpr double molarGasConstant = 8.31446261815324;

std::vector<std::wstring> namesOf(const std::vector<Property>& properties) {
    std::vector<std::wstring> names;
    std::ranges::transform(properties, std::back_inserter(names), &Property::name);
    return names;
}

template <typename T, typename Field>
com::variant textColumn(const std::vector<T>& rows, Field field) {
    std::vector<std::wstring> column;
    std::ranges::transform(rows, std::back_inserter(column), field);
    return com::textArray(column);
}

com::variant realColumn(const std::vector<Compound>& rows, double Compound::*field) {
    std::vector<double> column;
    std::ranges::transform(rows, std::back_inserter(column), field);
    return com::realArray(column);
}

} // namespace

void* PackageObject::findInterface(REFIID iid) noexcept {
    return script().hides(iid) ? nullptr : implements::findInterface(iid);
}

void PackageObject::giveNames(VARIANT* out, const std::vector<std::wstring>& names) const {
    *out = com::textArray(names).release();
}

std::vector<std::size_t> PackageObject::compoundsNamed(const VARIANT& ids) const {
    std::vector<std::size_t> positions;
    if (ids.vt == VT_EMPTY) {
        for (std::size_t i = 0; i < model().compounds.size(); ++i) {
            positions.push_back(i);
        }
        return positions;
    }
    for (const std::wstring& id : textsOf(ids)) {
        const auto found = std::ranges::find(model().compounds, id, &Compound::id);
        if (found == model().compounds.end()) {
            throw Refusal{static_cast<HRESULT>(ECapeInvalidArgumentHR), L"There is no compound " + id};
        }
        positions.push_back(static_cast<std::size_t>(found - model().compounds.begin()));
    }
    return positions;
}

// A flat array: the values of the first property for all compounds, then those of the second.
template <typename ValueOf>
void PackageObject::giveCompoundValues(VARIANT* out, Out::Kind kind, const VARIANT& properties,
                                       const VARIANT& ids, const std::vector<std::wstring>& offered,
                                       ValueOf&& valueOf) const {
    using Value = decltype(valueOf(std::size_t{}, std::size_t{}));
    std::vector<Value> values;
    const std::vector<std::size_t> compounds = compoundsNamed(ids);
    for (const std::wstring& name : textsOf(properties)) {
        const auto found =
            std::ranges::find_if(offered, [&](const std::wstring& known) { return sameName(known, name); });
        if (found == offered.end()) {
            throw Refusal{static_cast<HRESULT>(ECapeThrmPropertyNotAvailableHR),
                          L"There is no property " + name};
        }
        for (const std::size_t compound : compounds) {
            values.push_back(valueOf(static_cast<std::size_t>(found - offered.begin()), compound));
        }
    }
    if constexpr (std::is_same_v<Value, double>) {
        Out{out, kind}.give(com::realArray(values));
    } else {
        com::unique_safearray array = com::makeVector(VT_VARIANT, values.size());
        {
            const com::array_lock<VARIANT> lock{array.get()};
            std::ranges::transform(values, lock.elements().begin(),
                                   [](com::variant& value) { return value.release(); });
        }
        Out{out, kind}.give(com::variant::array(std::move(array), VT_VARIANT));
    }
}

namespace {

double coded(std::size_t property, std::size_t compound) {
    return 10000.0 * static_cast<double>(property + 1) + 10.0 * static_cast<double>(compound + 1);
}

} // namespace

HRESULT STDMETHODCALLTYPE PackageObject::GetCompoundConstant(VARIANT properties, VARIANT ids,
                                                             VARIANT* values) noexcept {
    return respond("GetCompoundConstant", {properties, ids}, {{values, Out::Kind::Fresh}}, [&] {
        giveCompoundValues(values, Out::Kind::Fresh, properties, ids, model().constants,
                           [&](std::size_t property, std::size_t compound) {
                               return sameName(model().constants[property], L"casRegistryNumber")
                                          ? com::variant{std::wstring_view{model().compounds[compound].cas}}
                                          : com::variant{coded(property, compound)};
                           });
    });
}

HRESULT STDMETHODCALLTYPE PackageObject::GetCompoundList(VARIANT* ids, VARIANT* formulae, VARIANT* names,
                                                         VARIANT* boilingPoints, VARIANT* molecularWeights,
                                                         VARIANT* casNumbers) noexcept {
    const std::array<Out, 6> out = {Out{ids, Out::Kind::InOut},
                                    Out{formulae, Out::Kind::InOut},
                                    Out{names, Out::Kind::InOut},
                                    Out{boilingPoints, Out::Kind::InOut},
                                    Out{molecularWeights, Out::Kind::InOut},
                                    Out{casNumbers, Out::Kind::InOut}};
    return respond("GetCompoundList", {}, {out[0], out[1], out[2], out[3], out[4], out[5]}, [&] {
        const auto& compounds = model().compounds;
        out[0].give(textColumn(compounds, &Compound::id));
        out[1].give(textColumn(compounds, &Compound::formula));
        out[2].give(textColumn(compounds, &Compound::name));
        out[3].give(realColumn(compounds, &Compound::boilingPoint));
        out[4].give(realColumn(compounds, &Compound::molecularWeight));
        out[5].give(textColumn(compounds, &Compound::cas));
    });
}

HRESULT STDMETHODCALLTYPE PackageObject::GetConstPropList(VARIANT* names) noexcept {
    return respond("GetConstPropList", {}, {{names, Out::Kind::Fresh}},
                   [&] { giveNames(names, model().constants); });
}

HRESULT STDMETHODCALLTYPE PackageObject::GetNumCompounds(LONG* count) noexcept {
    return respond("GetNumCompounds", {}, {count},
                   [&] { *count = static_cast<LONG>(model().compounds.size()); });
}

HRESULT STDMETHODCALLTYPE PackageObject::GetPDependentProperty(VARIANT properties, double P, VARIANT ids,
                                                               VARIANT* values) noexcept {
    return respond(
        "GetPDependentProperty", {properties, argument(P), ids}, {{values, Out::Kind::InOut}}, [&] {
            giveCompoundValues(values, Out::Kind::InOut, properties, ids, model().pressureDependent,
                               [&](std::size_t property, std::size_t compound) {
                                   return coded(property, compound) + P / 1e9;
                               });
        });
}

HRESULT STDMETHODCALLTYPE PackageObject::GetPDependentPropList(VARIANT* names) noexcept {
    return respond("GetPDependentPropList", {}, {{names, Out::Kind::Fresh}},
                   [&] { giveNames(names, model().pressureDependent); });
}

HRESULT STDMETHODCALLTYPE PackageObject::GetTDependentProperty(VARIANT properties, double T, VARIANT ids,
                                                               VARIANT* values) noexcept {
    return respond(
        "GetTDependentProperty", {properties, argument(T), ids}, {{values, Out::Kind::InOut}}, [&] {
            giveCompoundValues(values, Out::Kind::InOut, properties, ids, model().temperatureDependent,
                               [&](std::size_t property, std::size_t compound) {
                                   return coded(property, compound) + T / 1000.0;
                               });
        });
}

HRESULT STDMETHODCALLTYPE PackageObject::GetTDependentPropList(VARIANT* names) noexcept {
    return respond("GetTDependentPropList", {}, {{names, Out::Kind::Fresh}},
                   [&] { giveNames(names, model().temperatureDependent); });
}

HRESULT STDMETHODCALLTYPE PackageObject::GetNumPhases(LONG* count) noexcept {
    return respond("GetNumPhases", {}, {count}, [&] { *count = static_cast<LONG>(model().phases.size()); });
}

HRESULT STDMETHODCALLTYPE PackageObject::GetPhaseInfo(BSTR label, BSTR attribute, VARIANT* value) noexcept {
    return respond("GetPhaseInfo", {argument(label), argument(attribute)}, {{value, Out::Kind::Fresh}}, [&] {
        const int number = requirePhase(com::viewOf(label));
        if (!sameName(com::viewOf(attribute), L"StateOfAggregation")) {
            throw Refusal{static_cast<HRESULT>(ECapeNoImplHR), L"Only StateOfAggregation is known"};
        }
        const Phase& phase = model().phases[static_cast<std::size_t>(number - 1)];
        *value = com::variant{std::wstring_view{phase.state}}.release();
    });
}

HRESULT STDMETHODCALLTYPE PackageObject::GetPhaseList(VARIANT* labels, VARIANT* states,
                                                      VARIANT* keyCompounds) noexcept {
    const std::array<Out, 3> out = {Out{labels, Out::Kind::InOut}, Out{states, Out::Kind::InOut},
                                    Out{keyCompounds, Out::Kind::InOut}};
    return respond("GetPhaseList", {}, {out[0], out[1], out[2]}, [&] {
        out[0].give(textColumn(model().phases, &Phase::label));
        out[1].give(textColumn(model().phases, &Phase::state));
        out[2].give(com::textArray(std::vector<std::wstring>(model().phases.size())));
    });
}

HRESULT STDMETHODCALLTYPE PackageObject::GetSinglePhasePropList(VARIANT* names) noexcept {
    return respond("GetSinglePhasePropList", {}, {{names, Out::Kind::Fresh}},
                   [&] { giveNames(names, namesOf(model().singlePhase)); });
}

HRESULT STDMETHODCALLTYPE PackageObject::GetTwoPhasePropList(VARIANT* names) noexcept {
    return respond("GetTwoPhasePropList", {}, {{names, Out::Kind::Fresh}},
                   [&] { giveNames(names, namesOf(model().twoPhase)); });
}

HRESULT STDMETHODCALLTYPE PackageObject::GetUniversalConstant(BSTR name, VARIANT* value) noexcept {
    return respond("GetUniversalConstant", {argument(name)}, {{value, Out::Kind::Fresh}}, [&] {
        if (!sameName(com::viewOf(name), L"molarGasConstant")) {
            throw Refusal{static_cast<HRESULT>(ECapeInvalidArgumentHR), L"Only molarGasConstant is known"};
        }
        *value = com::variant{molarGasConstant}.release();
    });
}

HRESULT STDMETHODCALLTYPE PackageObject::GetUniversalConstantList(VARIANT* names) noexcept {
    return respond("GetUniversalConstantList", {}, {{names, Out::Kind::Fresh}},
                   [&] { giveNames(names, {L"molarGasConstant"}); });
}

HRESULT STDMETHODCALLTYPE PackageObject::GetClassID(CLSID* clsid) noexcept {
    if (clsid == nullptr) {
        return E_POINTER;
    }
    return respond("GetClassID", {}, {}, [&] { *clsid = clsid_; });
}

HRESULT STDMETHODCALLTYPE PackageObject::IsDirty() noexcept {
    return respond("IsDirty", {}, {}, [] {});
}

HRESULT STDMETHODCALLTYPE PackageObject::Load(IStream* stream) noexcept {
    return respond("Load", {argument(stream)}, {}, [&] {
        std::string state;
        std::array<char, 256> buffer{};
        ULONG read = 0;
        do {
            if (FAILED(stream->Read(buffer.data(), static_cast<ULONG>(buffer.size()), &read))) {
                throw Refusal{static_cast<HRESULT>(ECapePersistenceHR), L"The stream cannot be read"};
            }
            state.append(buffer.data(), read);
        } while (read == buffer.size());
        script().model.state = std::move(state);
    });
}

HRESULT STDMETHODCALLTYPE PackageObject::Save(IStream* stream, BOOL clearDirty) noexcept {
    return respond("Save", {argument(stream), argument(clearDirty != FALSE)}, {}, [&] {
        const std::string& state = model().state;
        if (FAILED(stream->Write(state.data(), static_cast<ULONG>(state.size()), nullptr))) {
            throw Refusal{static_cast<HRESULT>(ECapePersistenceHR), L"The stream cannot be written"};
        }
    });
}

HRESULT STDMETHODCALLTYPE PackageObject::GetSizeMax(ULARGE_INTEGER* size) noexcept {
    if (size == nullptr) {
        return E_POINTER;
    }
    return respond("GetSizeMax", {}, {}, [&] { size->QuadPart = model().state.size(); });
}

HRESULT STDMETHODCALLTYPE PackageObject::InitNew() noexcept {
    return respond("InitNew", {}, {}, [] {});
}

} // namespace scripted
