// Runs one test of this program in another process.
#pragma once

#include <string>

namespace leak_gate {

/// So often the test is run there.
constexpr int timesRunAgain = 5;
/// The last of them, each of which must leave something in a test that leaks.
constexpr int timesJudged = 3;

/// Whether this process is one that was started for that.
bool isRunAgain();

struct Outcome {
    bool passed;
    std::string said; ///< all that it printed
};

/// `test` is its full name.
Outcome runAgain(const std::string& test);

} // namespace leak_gate
