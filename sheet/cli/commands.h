// The commands. Each prints its result and returns the program's exit code.
#pragma once

#include "sheet/cli/options.h"

namespace sheet::cli {

inline constexpr int success = 0;
inline constexpr int cellsFailed = 1;
inline constexpr int doesNotFit = 1;
inline constexpr int unusable = 2;

/// Runs the command; whatever goes wrong is told on standard error.
int run(const Command& command);

int recalc(const Recalc& command);
int info(const Info& command);
int check(const Check& command);
int list();

/// Tells on standard error that nothing could be done.
int reject(std::string_view message) noexcept;

} // namespace sheet::cli
