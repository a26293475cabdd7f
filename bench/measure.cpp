#include "bench/measure.h"

#include <algorithm>
#include <chrono>
#include <vector>

namespace bench {

namespace {

using Clock = std::chrono::steady_clock;

constexpr double roundLength = 5e5; // nanoseconds

double timeOf(const Work& work, std::size_t repetitions) {
    if (work.prepare) {
        work.prepare();
    }
    const Clock::time_point begin = Clock::now();
    for (std::size_t i = 0; i < repetitions; ++i) {
        work.run();
    }
    const std::chrono::duration<double, std::nano> taken = Clock::now() - begin;
    return taken.count() / static_cast<double>(repetitions);
}

std::size_t repetitionsOf(const Work& work) {
    if (work.repetitions != 0) {
        static_cast<void>(timeOf(work, work.repetitions)); // whatever happens the first time only
        return work.repetitions;
    }
    std::size_t repetitions = 1;
    for (;;) {
        const double whole = timeOf(work, repetitions) * static_cast<double>(repetitions);
        if (whole >= roundLength) {
            return repetitions;
        }
        repetitions *= whole < roundLength / 8 ? 8 : 2;
    }
}

double quantile(std::vector<double> values, double part) {
    std::ranges::sort(values);
    const double position = part * static_cast<double>(values.size() - 1);
    const auto below = static_cast<std::size_t>(position);
    const std::size_t above = std::min(below + 1, values.size() - 1);
    return values[below] + (values[above] - values[below]) * (position - static_cast<double>(below));
}

} // namespace

Comparison compare(const Work& subject, const Work& baseline, std::size_t rounds) {
    const std::size_t subjectRuns = repetitionsOf(subject);
    const std::size_t baselineRuns = repetitionsOf(baseline);
    std::vector<double> subjects;
    std::vector<double> baselines;
    std::vector<double> ratios;
    for (std::size_t round = 0; round < rounds; ++round) {
        // Whoever is second finds a warmer machine, so they take turns in that as well.
        const bool subjectFirst = round % 2 == 0;
        double first = timeOf(subjectFirst ? subject : baseline, subjectFirst ? subjectRuns : baselineRuns);
        double second = timeOf(subjectFirst ? baseline : subject, subjectFirst ? baselineRuns : subjectRuns);
        if (!subjectFirst) {
            std::swap(first, second);
        }
        subjects.push_back(first);
        baselines.push_back(second);
        ratios.push_back(first / second);
    }
    return {quantile(subjects, 0.5), quantile(baselines, 0.5), quantile(ratios, 0.5),
            quantile(ratios, 0.75) - quantile(ratios, 0.25)};
}

} // namespace bench
