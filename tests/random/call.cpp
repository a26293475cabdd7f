#include "tests/random/call.h"

#include <algorithm>
#include <stdexcept>

namespace chance {

namespace {

using conformance::Role;

com::variant text(std::wstring_view words) { return com::variant{words}; }
com::variant number(double value) { return com::variant{value}; }

// A call that may succeed, seen from one of its arguments.
class Fitting {
  public:
    Fitting(Dice& dice, const Kind& kind) : dice_{dice}, kind_{kind}, words_{kind.vocabulary} {}

    /// An optional argument is left out as often as not.
    com::variant value(Role role) {
        switch (role) {
        case Role::package:
            return text(nameOfPackage(dice_, kind_));
        case Role::property:
            return property();
        case Role::constant:
            return text(anyCase(dice_, dice_.of(words_.constants)));
        case Role::unit:
            return dice_.percent(50) ? derivative(dice_.of(words_.singlePhase)) : property();
        case Role::phase:
            return text(anyCase(dice_, words_.phases[phase_++ % words_.phases.size()]));
        case Role::freeReal:
        case Role::temperature:
            return number(temperature());
        case Role::pressure:
            return number(pressure());
        case Role::condition1:
            return text(anyCase(dice_, L"temperature"));
        case Role::conditionValue1:
            return number(temperature());
        case Role::condition2:
            isPressure_ = dice_.percent(70);
            return text(anyCase(dice_, isPressure_ ? L"pressure" : L"vaporFraction"));
        case Role::conditionValue2:
            return number(isPressure_ ? pressure() : static_cast<double>(dice_.below(5)) / 4.0);
        case Role::composition:
            return composition();
        default:
            return dice_.percent(50) ? com::variant::missing() : chosen(role);
        }
    }

    void calls(const conformance::Function& function) {
        function_ = function.name;
        phase_ = function_ == "TwoPhaseProperty" ? 0 : dice_.below(words_.phases.size());
    }

  private:
    com::variant chosen(Role role) {
        switch (role) {
        case Role::basis:
            return text(anyCase(dice_, dice_.percent(50) ? L"mass" : L"mole"));
        case Role::unreadOrientation:
            return number(1.0);
        case Role::compound:
            return selection(words_.compounds);
        case Role::phaseSelection:
            return selection(words_.phases);
        case Role::derivativePhase:
            return dice_.percent(50) ? number(static_cast<double>(dice_.below(3)))
                                     : text(anyCase(dice_, dice_.percent(50) ? L"phase 2" : L"both"));
        case Role::flag:
            return com::variant{dice_.percent(50)};
        case Role::options:
            return text(options());
        case Role::filler:
            return dice_.percent(50) ? text(L"-") : number(-1.0);
        default:
            throw std::logic_error{"a role without values"};
        }
    }

    com::variant derivative(const std::wstring& name) {
        constexpr std::array suffixes = {L"",       L"", L".Dtemperature", L".Dpressure", L".DmolFraction",
                                         L".Dmoles"};
        return text(anyCase(dice_, name + dice_.of(suffixes)));
    }

    com::variant property() {
        if (function_ == "TemperatureDependentProperty") {
            return text(anyCase(dice_, dice_.of(words_.temperatureDependent)));
        }
        return derivative(dice_.of(function_ == "TwoPhaseProperty" ? words_.twoPhase : words_.singlePhase));
    }

    com::variant selection(const std::vector<std::wstring>& names) {
        return dice_.percent(50) ? number(static_cast<double>(dice_.below(names.size() + 1)))
                                 : text(anyCase(dice_, dice_.of(names)));
    }

    com::variant composition() {
        std::vector<com::variant> cells;
        for (std::size_t i = 0; i < words_.compounds.size(); ++i) {
            cells.push_back(number(static_cast<double>(1 + dice_.below(9))));
        }
        return cellsOf(dice_, std::move(cells));
    }

    std::wstring options() {
        constexpr std::array switches = {L"overallResults", L"noPhaseResults",  L"noTemperature",
                                         L"noPressure",     L"noPhaseFraction", L"noComposition",
                                         L"normal",         L"retrograde",      L"transpose"};
        std::wstring all;
        for (std::size_t i = dice_.below(5); i > 0; --i) {
            all += all.empty() ? L"" : L",";
            all += dice_.percent(60) ? std::wstring{dice_.of(switches)} : dice_.of(words_.singlePhase);
        }
        return anyCase(dice_, all);
    }

    double temperature() {
        return kind_.script ? 250.0 + static_cast<double>(dice_.below(200))
                            : 70.0 + static_cast<double>(dice_.below(60));
    }
    double pressure() { return 1000.0 * static_cast<double>(1 + dice_.below(1000)); }

    Dice& dice_;
    const Kind& kind_;
    const Vocabulary& words_;
    std::string_view function_;
    std::size_t phase_ = 0; // the next one: two phases of a call are to be different
    bool isPressure_ = true;
};

struct Asked {
    com::variant value;
    Direction direction;
};

Asked orientation(Dice& dice) {
    constexpr std::array words = {L"Horizontal", L"Vertical", L"Matrix", L"Auto"};
    constexpr std::array meanings = {Direction::row, Direction::column, Direction::matrix, Direction::unsaid};
    if (dice.percent(40)) {
        return {com::variant::missing(), Direction::unsaid};
    }
    const std::size_t which = dice.below(words.size());
    if (dice.percent(50)) {
        return {text(anyCase(dice, words[which])), meanings[which]};
    }
    return {number(which == 3 ? 0.0 : static_cast<double>(which + 1)), meanings[which]};
}

bool isOrientation(Role role) { return role == Role::listOrientation || role == Role::matrixOrientation; }

} // namespace

std::wstring nameOfPackage(Dice& dice, const Kind& kind) {
    return dice.percent(60) ? kind.name : kind.name + (dice.percent(50) ? L"2" : L"3");
}

Call anyCall(Dice& dice, const std::vector<Kind>& kinds) {
    Call call{&dice.of(conformance::functions()), {}, Direction::unsaid};
    // The bundled package calculates in earnest, and so has fewer turns.
    const Kind& kind = kinds[dice.percent(95) ? dice.below(kinds.size() - 1) : kinds.size() - 1];
    call.isOfBundled = !kind.script;
    const auto& parameters = call.function->parameters;
    // How many are spoilt: none, some, or each with an even chance.
    const std::size_t spoilt = dice.percent(50)   ? 0
                               : dice.percent(60) ? 1
                               : dice.percent(60) ? 2
                                                  : parameters.size();
    std::vector<bool> spoils(parameters.size(), false);
    for (std::size_t i = 0; i < spoilt; ++i) {
        spoils[dice.below(parameters.size())] = true;
    }
    Fitting fitting{dice, kind};
    fitting.calls(*call.function);
    for (std::size_t i = 0; i < parameters.size(); ++i) {
        const Role role = parameters[i].role;
        if (spoils[i]) {
            call.direction = isOrientation(role) ? Direction::any : call.direction;
            call.arguments.push_back(passed(dice, anyValue(dice, kind.vocabulary.compounds.size())));
        } else if (isOrientation(role)) {
            Asked asked = orientation(dice);
            call.direction = asked.direction;
            call.arguments.push_back(passed(dice, std::move(asked.value)));
        } else {
            com::variant value = fitting.value(role);
            // A basis in a cell is refused.
            call.arguments.push_back(role == Role::basis ? Value{std::move(value), nullptr}
                                                         : passed(dice, std::move(value)));
        }
    }
    // What stands at the end may be left out altogether.
    if (dice.percent(20)) {
        const std::size_t kept = dice.below(parameters.size() + 1);
        const bool losesOrientation =
            std::ranges::any_of(parameters.begin() + static_cast<std::ptrdiff_t>(kept), parameters.end(),
                                [](const auto& parameter) { return isOrientation(parameter.role); });
        call.direction = losesOrientation ? Direction::unsaid : call.direction;
        call.arguments.resize(kept);
    } else if (dice.percent(1)) {
        call.arguments.push_back({});
    }
    return call;
}

bool hasUnheardOfType(const Call& call) {
    return std::ranges::any_of(call.arguments, [](const Value& value) {
        const VARIANT& holder = value.target ? static_cast<const VARIANT&>(*value.target) : value.value;
        return std::ranges::find(unheardOfTypes, holder.vt) != unheardOfTypes.end();
    });
}

std::string textOf(const Value& value) {
    const VARIANT& given = value.value;
    std::string type{"<"};
    type += std::to_string(given.vt & VT_TYPEMASK);
    type += (given.vt & VT_ARRAY) != 0 ? " array" : "";
    type += (given.vt & VT_BYREF) != 0 ? " by reference>" : ">";
    const VARIANT& shown = value.target ? static_cast<const VARIANT&>(*value.target) : given;
    std::string words = holdsWhatItSays(shown) ? scripted::textOf(shown) : "an array that is none";
    words.resize(std::min<std::size_t>(words.size(), 80));
    return type + words;
}

std::string textOf(const Call& call) {
    std::string words = call.function->name;
    for (const Value& argument : call.arguments) {
        words += (&argument == &call.arguments.front() ? "(" : ", ") + textOf(argument);
    }
    return words + ")";
}

} // namespace chance
