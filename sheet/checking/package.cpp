#include "sheet/checking/package.h"

#include <algorithm>
#include <cmath>

namespace sheet::checking {

namespace {

using formula::Argument;
using formula::Block;
using formula::numberIn;
using formula::Omitted;
using formula::Result;
using formula::Value;

bool sameName(std::string_view a, std::string_view b) {
    const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; };
    return std::ranges::equal(a, b, {}, lower, lower);
}

std::string failureOf(const Result& result) {
    if (!result.failed) {
        return {};
    }
    const std::string shown = formula::exactText(result.values.at(0, 0));
    return result.reason.empty() ? shown : shown + " (" + result.reason + ")";
}

Answer answerOf(const Result& result) {
    Answer answer{{}, failureOf(result)};
    if (!answer.failed()) {
        std::ranges::transform(result.values.values, std::back_inserter(answer.values), numberIn);
    }
    return answer;
}

} // namespace

const ListedProperty* Offer::find(std::span<const std::string_view> names) const {
    for (const std::vector<ListedProperty>* list : {&singlePhase, &twoPhase, &temperatureDependent}) {
        for (const ListedProperty& listed : *list) {
            if (std::ranges::any_of(names, [&](std::string_view n) { return sameName(n, listed.name); })) {
                return &listed;
            }
        }
    }
    return nullptr;
}

// Values of several compounds stand with those of the last one next to each other.
bool Place::isOfAbsent(std::size_t value, int rank) const {
    const std::size_t compounds = compositions.front().size();
    for (; rank > 0 && compounds > 0; --rank, value /= compounds) {
        const auto isAbsent = [&](const Composition& x) { return x.at(value % compounds) == 0.0; };
        if (std::ranges::all_of(compositions, isAbsent)) {
            return true;
        }
    }
    return false;
}

Package::Package(std::string name, Offer offer, formula::Calculate calculate)
    : name_{std::move(name)}, offer_{std::move(offer)}, calculate_{std::move(calculate)} {
    compounds_ = texts("CapeOpenCompounds");
    phases_ = texts("CapeOpenPhases");
}

// The compositions stand in columns from A on, as they would in a worksheet.
Result Package::ask(const char* function, Arguments arguments,
                    const std::vector<Composition>& columns) const {
    formula::Worksheet sheet;
    for (std::size_t column = 0; column < columns.size(); ++column) {
        for (std::size_t row = 0; row < columns[column].size(); ++row) {
            sheet.constants.push_back({{row, column}, columns[column][row]});
        }
    }
    sheet.formulas.push_back({{{0, columns.size()}}, false, {function, std::move(arguments)}});
    return calculate_(sheet.formulas.front(), formula::Grid{sheet});
}

std::vector<std::string> Package::texts(const char* function) {
    const Result result = ask(function, {name_, std::string{"vertical"}});
    if (result.failed) {
        problem_ = failureOf(result);
        return {};
    }
    std::vector<std::string> texts;
    std::ranges::transform(result.values.values, std::back_inserter(texts), formula::exactText);
    return texts;
}

Answer Package::property(const std::string& name, const Place& place, int byPhase) const {
    const auto column = [&](std::size_t i) {
        return Argument{Block{{0, i}, std::max<std::size_t>(place.compositions[i].size(), 1), 1}};
    };
    if (place.phases.size() == 1) {
        return answerOf(ask("CapeOpenMixtureProperty",
                            {name_, name, place.phases[0], place.temperature, place.pressure, column(0),
                             Omitted{}, Omitted{}, std::string{"vertical"}},
                            place.compositions));
    }
    const Argument selected = byPhase == 0 ? Argument{Omitted{}} : Argument{double(byPhase)};
    return answerOf(ask("CapeOpenTwoPhaseProperty",
                        {name_, name, place.phases[0], place.phases[1], place.temperature, place.pressure,
                         column(0), column(1), Omitted{}, std::string{"vertical"}, selected},
                        place.compositions));
}

Answer Package::constant(const std::string& name) const {
    return answerOf(ask("CapeOpenCompoundConstant", {name_, name, Omitted{}, std::string{"vertical"}}));
}

Answer Package::temperatureDependent(const std::string& name, double temperature) const {
    return answerOf(ask("CapeOpenTemperatureDependentProperty",
                        {name_, name, temperature, Omitted{}, std::string{"vertical"}}));
}

Equilibrium Package::equilibrium(const Composition& overall, Condition one, Condition other) const {
    const Result result = ask("CapeOpenPhaseEquilibrium",
                              {name_, Block{{0, 0}, std::max<std::size_t>(overall.size(), 1), 1},
                               std::string{one.name}, one.value, std::string{other.name}, other.value,
                               Omitted{}, std::string{"overallResults"}, Omitted{}, std::string{"matrix"}},
                              {overall});
    Equilibrium found;
    found.failure = failureOf(result);
    const formula::Matrix& table = result.values;
    // Temperature, pressure and phase fraction stand before the fractions; the mixture before its phases.
    if (found.failure.empty() &&
        (table.columns != 3 + compounds_.size() || table.rows != 1 + phases_.size())) {
        found.failure = "the table of the phase equilibrium has an unexpected size";
    }
    if (!found.failure.empty()) {
        return found;
    }
    found.temperature = numberIn(table.at(0, 0));
    found.pressure = numberIn(table.at(0, 1));
    for (std::size_t i = 0; i < phases_.size(); ++i) {
        PhaseOfEquilibrium phase{phases_[i],
                                 numberIn(table.at(i + 1, 2)),
                                 numberIn(table.at(i + 1, 0)),
                                 numberIn(table.at(i + 1, 1)),
                                 {}};
        for (std::size_t c = 0; c < compounds_.size(); ++c) {
            phase.composition.push_back(numberIn(table.at(i + 1, 3 + c)));
        }
        const bool isThere =
            std::isfinite(phase.fraction) &&
            std::ranges::all_of(phase.composition, [](double x) { return std::isfinite(x); });
        if (isThere) {
            found.phases.push_back(std::move(phase));
        }
    }
    return found;
}

} // namespace sheet::checking
