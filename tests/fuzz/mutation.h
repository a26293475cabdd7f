// Inputs made from seeds: bits flipped, bytes changed, pieces removed, repeated and taken over from other
// seeds.
#pragma once

#include "tests/fuzz/fuzz.h"

#include <random>

namespace fuzz {

class Mutator {
  public:
    /// The seeds must outlive the mutator.
    Mutator(const std::vector<Bytes>& seeds, std::uint_fast32_t seed) : seeds_{seeds}, random_{seed} {}

    Bytes next();

  private:
    std::size_t below(std::size_t limit) { return limit == 0 ? 0 : random_() % limit; }
    const Bytes& anySeed() { return seeds_[below(seeds_.size())]; }
    void mutate(Bytes& bytes);
    void insertPieceOf(const Bytes& source, Bytes& bytes);

    const std::vector<Bytes>& seeds_;
    std::mt19937 random_;
};

} // namespace fuzz
