// Dice: choices by chance that are the same on every machine for the same seed.
#pragma once

#include <array>
#include <cstdint>
#include <random>
#include <string>

namespace chance {

class Dice {
  public:
    explicit Dice(std::uint64_t seed) : random_{seed} {}

    std::size_t below(std::size_t count) { return static_cast<std::size_t>(random_() % count); }
    bool percent(std::size_t share) { return below(100) < share; }
    /// One of all, each as likely as the other.
    template <typename List>
    auto& of(List& list) {
        return list[below(std::size(list))];
    }
    std::uint64_t bits() { return random_(); }

  private:
    std::mt19937_64 random_;
};

/// Of texts and numbers, in their order: equal runs have equal digests.
class Digest {
  public:
    void add(const void* data, std::size_t size) noexcept {
        const auto* const bytes = static_cast<const unsigned char*>(data);
        for (std::size_t i = 0; i < size; ++i) {
            value_ = (value_ ^ bytes[i]) * 0x100000001b3U;
        }
    }
    void add(const std::string& text) noexcept { add(text.data(), text.size() + 1); }

    std::uint64_t value() const noexcept { return value_; }

  private:
    std::uint64_t value_ = 0xcbf29ce484222325U;
};

} // namespace chance
