// bench_native [--check] [--only TEXT]: measures the plain C++ parts. --check: the exit code is 1 when a
// count misses its goal. bench_native --repeat flash|fugacities TIMES: does just that, for a program that
// counts instructions.
//
//   base64                  encode, decode, beside the library encoder and a copy
//   T-P flash               of a 10-compound gas in two phases, absolute, and its allocations
//   fugacity coefficients   of 10 compounds
#include "bench/native/figures.h"

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <new>
#include <stdexcept>
#include <vector>

namespace {

std::atomic<long> allocations{0};

int run(const std::vector<std::string>& arguments) {
    if (arguments.size() == 3 && arguments[0] == "--repeat") {
        bench::repeat(arguments[1], std::stoul(arguments[2]));
        return 0;
    }
    bool check = false;
    std::string only;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        if (arguments[i] == "--check") {
            check = true;
        } else if (arguments[i] == "--only" && i + 1 < arguments.size()) {
            only = arguments[++i];
        } else {
            throw std::invalid_argument(
                "usage: bench_native [--check] [--only TEXT] | --repeat flash|fugacities TIMES");
        }
    }
    bench::Report report{only};
    bench::base64(report);
    bench::thermodynamics(report);
    return check && !report.countsHold() ? 1 : 0;
}

} // namespace

long bench::allocationCount() noexcept { return allocations; }

void* operator new(std::size_t size) {
    ++allocations;
    void* const block = std::malloc(size);
    if (block == nullptr) {
        throw std::bad_alloc{};
    }
    return block;
}
void operator delete(void* block) noexcept { std::free(block); }
void operator delete(void* block, std::size_t) noexcept { std::free(block); }

int main(int argc, char** argv) {
    try {
        return run({argv + 1, argv + argc});
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "bench_native: %s\n", failure.what());
        return 2;
    }
}
