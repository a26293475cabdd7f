// The questions that an engineer would ask before trusting a property package, on a few states that suit its
// compounds.
#pragma once

#include "sheet/checking/package.h"
#include "sheet/checking/report.h"

namespace sheet::checking {

/// What is empty is chosen: a low and a moderate pressure, temperatures in the liquid, between the phases and
/// in the vapor, and two compositions in which every compound takes part.
struct Choices {
    std::vector<double> temperatures;
    std::vector<double> pressures;
    std::vector<Composition> compositions; // scaled to the sum 1
};

/// Told before each state how many are done, and how many there are at most.
using Progress = std::function<void(std::size_t done, std::size_t all)>;

Report check(const Package& package, const Choices& choices, const Progress& progress = {});

} // namespace sheet::checking
