#include "bench/report.h"

#include <cmath>
#include <cstdio>

namespace bench {

namespace {

struct Row {
    std::string_view figure;
    std::string ours;
    std::string_view baselineName;
    std::string baseline;
    std::string ratio;
    std::string spread;
    std::string goal;
    std::string_view verdict;
};

std::string formatted(double number, int decimals) {
    char text[40];
    const int length = std::snprintf(text, sizeof text, "%.*f", decimals, number);
    return {text, static_cast<std::size_t>(length)};
}

std::string timeText(double nanoseconds) {
    constexpr struct {
        double limit;
        double nanoseconds;
        int decimals;
        const char* unit;
    } scales[] = {{1e4, 1.0, 0, " ns"}, {1e7, 1e3, 1, " us"}, {1e10, 1e6, 1, " ms"}, {1e300, 1e9, 1, " s"}};
    for (const auto& scale : scales) {
        if (nanoseconds < scale.limit) {
            return formatted(nanoseconds / scale.nanoseconds, scale.decimals) + scale.unit;
        }
    }
    return {};
}

std::string countText(double count) { return formatted(count, count == std::floor(count) ? 0 : 2); }

void print(const Row& row) {
    const auto width = [](std::string_view text) { return static_cast<int>(text.size()); };
    std::printf("%-58.*s %10s  %-34.*s %10s %7s %7s %9s  %.*s\n", width(row.figure), row.figure.data(),
                row.ours.c_str(), width(row.baselineName), row.baselineName.data(), row.baseline.c_str(),
                row.ratio.c_str(), row.spread.c_str(), row.goal.c_str(), width(row.verdict),
                row.verdict.data());
    std::fflush(stdout);
}

} // namespace

void Report::heading() { print({"figure", "ours", "baseline", "its", "ratio", "spread", "goal", "verdict"}); }

void Report::time(std::string_view figure, std::string_view baseline, const Comparison& measured,
                  double goal) {
    print({figure, timeText(measured.subject), baseline, timeText(measured.baseline),
           formatted(measured.ratio, 2), formatted(measured.spread, 2), "<= " + formatted(goal, 2),
           measured.ratio <= goal ? "holds" : "missed"});
}

void Report::compared(std::string_view figure, std::string_view baseline, const Comparison& measured) {
    print({figure,
           timeText(measured.subject),
           baseline,
           timeText(measured.baseline),
           formatted(measured.ratio, 2),
           formatted(measured.spread, 2),
           {},
           {}});
}

void Report::equal(std::string_view figure, std::string_view baseline, double counted, double wanted) {
    const bool holds = counted == wanted;
    countsHold_ = countsHold_ && holds;
    print({figure,
           countText(counted),
           baseline,
           countText(wanted),
           {},
           {},
           "= " + countText(wanted),
           holds ? "holds" : "MISSED"});
}

void Report::count(std::string_view figure, double counted, double goal) {
    const bool holds = counted <= goal;
    countsHold_ = countsHold_ && holds;
    print({figure, countText(counted), {}, {}, {}, {}, "<= " + countText(goal), holds ? "holds" : "MISSED"});
}

void Report::judge(std::string_view figure, double number, double goal) {
    print({figure,
           countText(number),
           {},
           {},
           {},
           {},
           "<= " + countText(goal),
           number <= goal ? "holds" : "missed"});
}

void Report::note(std::string_view figure, double number) {
    print({figure, countText(number), {}, {}, {}, {}, {}, {}});
}

} // namespace bench
