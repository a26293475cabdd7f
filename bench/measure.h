// How long two pieces of work take beside each other. They run in turns, round by round, so that whatever
// else the machine does meets both alike; what counts is the median of the rounds' ratios.
#pragma once

#include <cstddef>
#include <functional>

namespace bench {

struct Work {
    std::function<void()> run;
    /// Called before each round, outside the time; empty: nothing is to be prepared.
    std::function<void()> prepare = {};
    /// Runs in a round; 0: as many as take half a millisecond.
    std::size_t repetitions = 0;
};

/// Medians over the rounds. Times in nanoseconds for one run; `spread` is the distance between the quartiles
/// of the ratio.
struct Comparison {
    double subject;
    double baseline;
    double ratio;
    double spread;
};

/// Many and short: on a machine with other work most of them still pass undisturbed.
inline constexpr std::size_t usualRounds = 201;

Comparison compare(const Work& subject, const Work& baseline, std::size_t rounds = usualRounds);

} // namespace bench
