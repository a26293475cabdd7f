// Mutator: tables of saved packages that were damaged by chance, the same ones in every run.
#pragma once

#include "tests/src/workbook/saved_table.h"

#include <random>

namespace quorvane {

class Mutator {
  public:
    Mutator();

    /// A golden table with some cells changed; now and then something that is no such table at all.
    com::variant next();

  private:
    std::size_t below(std::size_t count) { return random_() % count; }
    void mutate(Table& table);
    com::variant wrongShape();

    std::vector<Table> good_;
    std::mt19937 random_{20260401};
};

} // namespace quorvane
