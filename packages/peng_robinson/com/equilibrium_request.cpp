#include "packages/peng_robinson/com/equilibrium_request.h"

#include <utility>
#include <vector>

namespace peng_robinson {
namespace {

using Kind = Specification::Kind;
using Flash = EquilibriumRequest::Flash;

struct KindRow {
    std::wstring_view property;
    Kind kind;
};
constexpr KindRow kinds[] = {
    {L"temperature", Kind::temperature}, {L"pressure", Kind::pressure},
    {L"enthalpy", Kind::enthalpy},       {L"enthalpyNF", Kind::enthalpy},
    {L"enthalpyF", Kind::enthalpyF},     {L"phaseFraction", Kind::phaseFraction},
};

struct FlashRow {
    Kind first, second;
    Flash flash;
};
constexpr FlashRow flashes[] = {
    {Kind::temperature, Kind::pressure, Flash::TP},
    {Kind::temperature, Kind::phaseFraction, Flash::TVaporFraction},
    {Kind::pressure, Kind::phaseFraction, Flash::PVaporFraction},
    {Kind::pressure, Kind::enthalpy, Flash::PEnthalpy},
    {Kind::pressure, Kind::enthalpyF, Flash::PEnthalpy},
};

Specification readSpecification(const VARIANT& value, short position) {
    const std::vector<std::wstring> texts = readTexts(value, L"equilibrium specification", position);
    if (texts.size() < 3 || texts.size() > 4) {
        throw ArgumentError{
            position, L"An equilibrium specification has three or four elements: property, basis, phase "
                      L"label and perhaps a compound"};
    }
    if (texts.size() == 4 && !isUndefined(texts[3])) {
        throw CapeError{ECapeLimitedImplHR, L"A flash at a value for a single compound is not available"};
    }
    for (const auto& [property, kind] : kinds) {
        if (!isSameName(property, texts[0])) {
            continue;
        }
        const Basis basis = readBasis(texts[1], position);
        const bool isOverall = isUndefined(texts[2]) || isSameName(texts[2], L"Overall");
        if (kind != Kind::phaseFraction && !isOverall) {
            throw CapeError{ECapeLimitedImplHR, L"A flash at the " + texts[0] +
                                                    L" of one phase is not available; specify it overall"};
        }
        if (kind == Kind::phaseFraction && isOverall) {
            throw ArgumentError{position, L"A phase fraction is specified for a phase, not overall"};
        }
        return {kind, texts[0], texts[2], basis, isOverall ? nullptr : &requirePhase(texts[2], position)};
    }
    throw CapeError{ECapeLimitedImplHR,
                    L"A flash at given \"" + texts[0] +
                        L"\" is not available; specify temperature, pressure, enthalpy or "
                        L"phaseFraction"};
}

eos::SolutionType readSolutionType(std::wstring_view text) {
    if (isUndefined(text) || isSameName(text, L"Unspecified")) {
        return eos::SolutionType::any;
    }
    if (isSameName(text, L"Normal")) {
        return eos::SolutionType::normal;
    }
    if (isSameName(text, L"Retrograde")) {
        return eos::SolutionType::retrograde;
    }
    throw ArgumentError{3, L"A solution type is Unspecified, Normal or Retrograde, not \"" +
                               std::wstring{text} + L"\""};
}

} // namespace

EquilibriumRequest EquilibriumRequest::read(const VARIANT& specification1, const VARIANT& specification2,
                                            BSTR solutionType) {
    Specification one = readSpecification(specification1, 1);
    Specification two = readSpecification(specification2, 2);
    const eos::SolutionType solution = readSolutionType(com::viewOf(solutionType));
    for (const FlashRow& row : flashes) {
        if (row.first == two.kind && row.second == one.kind) {
            std::swap(one, two);
        }
        if (row.first == one.kind && row.second == two.kind) {
            return {row.flash, std::move(one), std::move(two), solution};
        }
    }
    throw CapeError{
        ECapeLimitedImplHR,
        L"A flash at given " + one.property + L" and " + two.property +
            L" is not available; available are temperature and pressure, temperature and phase fraction, "
            L"pressure and phase fraction, pressure and enthalpy"};
}

} // namespace peng_robinson
