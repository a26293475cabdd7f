// How far a long recalculation has come, on a terminal only. Nothing shows while it takes less than a second.
#pragma once

#include <chrono>
#include <cstddef>

namespace sheet::cli {

class ProgressLine {
  public:
    /// `things` are counted, such as "formulas".
    explicit ProgressLine(const char* things);
    ProgressLine(const ProgressLine&) = delete;
    ProgressLine& operator=(const ProgressLine&) = delete;
    /// Wipes the line.
    ~ProgressLine();

    void show(std::size_t done, std::size_t all);

  private:
    using Clock = std::chrono::steady_clock;

    const char* const things_;
    const bool terminal_;
    bool shown_ = false;
    Clock::time_point next_;
};

} // namespace sheet::cli
