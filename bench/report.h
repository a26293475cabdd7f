// The table that the benchmark prints, row by row as the figures are known. Times are judged and never fail
// the run; counts, which are the same on every machine, do.
#pragma once

#include "bench/measure.h"

#include <string>
#include <string_view>

namespace bench {

class Report {
  public:
    /// Only figures whose name contains `only` are wanted; all when it is empty.
    explicit Report(std::string only) : only_{std::move(only)} {}

    bool wants(std::string_view figure) const noexcept {
        return figure.find(only_) != std::string_view::npos;
    }

    void heading();
    /// A ratio of times that should be at most `goal`.
    void time(std::string_view figure, std::string_view baseline, const Comparison& measured, double goal);
    /// The same against another baseline, for information.
    void compared(std::string_view figure, std::string_view baseline, const Comparison& measured);
    /// A count that must be what the baseline's is.
    void equal(std::string_view figure, std::string_view baseline, double counted, double wanted);
    /// A count that must be at most `goal`.
    void count(std::string_view figure, double counted, double goal);
    /// Any other number that should be at most `goal`; it does not fail the run.
    void judge(std::string_view figure, double number, double goal);
    /// A number for information, with nothing to judge it by.
    void note(std::string_view figure, double number);

    bool countsHold() const noexcept { return countsHold_; }

  private:
    std::string only_;
    bool countsHold_ = true;
};

} // namespace bench
