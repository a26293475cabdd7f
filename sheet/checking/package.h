// A property package as worksheet functions show it: every question is a formula that the add-in calculates,
// just as a cell would ask. SI units, mole basis.
#pragma once

#include "sheet/formula/recalculation.h"

#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace sheet::checking {

/// Numbers, or the text of the failure that a cell would show. A value that is no number is NaN.
struct Answer {
    std::vector<double> values;
    std::string failure;

    bool failed() const { return !failure.empty(); }
};

struct ListedProperty {
    std::string name;
    int rank = 0;           // 0 one value, 1 one for each compound, 2 one for each pair
    bool extensive = false; // per mole, so that its derivative by mole numbers is a partial molar property
};

/// What the package says that it can calculate.
struct Offer {
    std::vector<ListedProperty> singlePhase;
    std::vector<ListedProperty> twoPhase;
    std::vector<ListedProperty> temperatureDependent;
    std::vector<std::string> constants;
    /// Whether it says so for this phase or these two; empty when it says so for all.
    std::function<bool(const std::string& property, const std::vector<std::string>& phases)> forPhases;
    std::function<bool(const std::string& phase)> isVapor; // empty when it is not known

    /// The property in one of these spellings, in any letter case; null when it is not listed.
    const ListedProperty* find(std::span<const std::string_view> names) const;
    const ListedProperty* find(std::string_view name) const { return find({&name, 1}); }
};

using Composition = std::vector<double>;

/// Where a property is asked for: one phase, or two phases in contact.
struct Place {
    std::vector<std::string> phases;
    double temperature = 0.0;
    double pressure = 0.0;
    std::vector<Composition> compositions; // mole fractions, one list for each phase

    /// Whether one of a property's values belongs to a compound that is not there, so that it may be
    /// infinite: a logarithm of no fugacity, or a partial molar entropy. `rank`: of how many compounds each
    /// value is.
    bool isOfAbsent(std::size_t value, int rank) const;
};

struct PhaseOfEquilibrium {
    std::string phase;
    double fraction = 0.0;
    double temperature = 0.0;
    double pressure = 0.0;
    Composition composition;

    Place place() const { return {{phase}, temperature, pressure, {composition}}; }
};

struct Equilibrium {
    std::vector<PhaseOfEquilibrium> phases; // those that are there
    double temperature = 0.0;
    double pressure = 0.0;
    std::string failure;
};

struct Condition {
    const char* name;
    double value;
};

class Package {
  public:
    Package(std::string name, Offer offer, formula::Calculate calculate);

    const Offer& offer() const { return offer_; }
    bool offers(const std::string& property, const std::vector<std::string>& phases) const {
        return !offer_.forPhases || offer_.forPhases(property, phases);
    }
    bool isVapor(const std::string& phase) const { return offer_.isVapor && offer_.isVapor(phase); }
    /// Empty when the package does not say; problem() then tells why.
    const std::vector<std::string>& compounds() const { return compounds_; }
    const std::vector<std::string>& phases() const { return phases_; }
    const std::string& problem() const { return problem_; }

    /// A property of one phase or of two, or a derivative. `byPhase`: by the composition of which of the two
    /// phases, from 1.
    Answer property(const std::string& name, const Place& place, int byPhase = 0) const;
    Answer constant(const std::string& name) const;
    Answer temperatureDependent(const std::string& name, double temperature) const;
    Equilibrium equilibrium(const Composition& overall, Condition one, Condition other) const;

  private:
    using Arguments = std::vector<formula::Argument>;

    formula::Result ask(const char* function, Arguments arguments,
                        const std::vector<Composition>& columns = {}) const;
    std::vector<std::string> texts(const char* function);

    std::string name_;
    Offer offer_;
    formula::Calculate calculate_;
    std::vector<std::string> compounds_;
    std::vector<std::string> phases_;
    std::string problem_;
};

} // namespace sheet::checking
