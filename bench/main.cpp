// bench [--check] [--only TEXT]: measures the built add-in and prints one table.
//
//   load, create, first unit of measure       the add-in beside a server that does nothing
//   scalar property                           1, 10, 100 compounds; through the vtable, through Invoke
//   mole-fraction derivative                  10, 50 compounds; as a matrix, on mass basis
//   T-P flash table                           with the bundled package, beside the same calls made directly
//   look-up                                   100, 10000 packages in the workbook beside one
//   recalculation                             10000, 100000 cells beside 1000
//   Persist, Depersist                        1 kB, 1 MB, 64 MB of state, beside zlib
//   size of the DLL
//   per call                                  allocations, calls across interfaces
//   memory for Persist                        1 MB, 64 MB of state
//
// --check: the exit code is 1 when a count misses its goal. Times never fail.
// --only: the figures whose name contains the text.
#include "bench/figures.h"

#include <cstdio>
#include <exception>
#include <span>
#include <stdexcept>

namespace {

struct Options {
    bool check = false;
    std::string only;
};

Options readOptions(std::span<char*> arguments) {
    Options options;
    for (std::size_t i = 1; i < arguments.size(); ++i) {
        const std::string_view argument{arguments[i]};
        if (argument == "--check") {
            options.check = true;
        } else if (argument == "--only" && i + 1 < arguments.size()) {
            options.only = arguments[++i];
        } else {
            throw std::invalid_argument("usage: bench [--check] [--only TEXT]");
        }
    }
    return options;
}

bool measure(const std::string& only) {
    bench::Report report{only};
    report.heading();
    bench::loading(report);
    const bench::Server server{L"Quorvane.dll"};
    const bench::Server emptyServer{L"EmptyServer.dll"};
    bench::mixtureProperties(report, server, emptyServer);
    bench::derivatives(report, server);
    bench::equilibria(report, server);
    bench::lookUp(report, server);
    bench::recalculation(report, server);
    bench::savedStates(report, server);
    bench::size(report);
    bench::allocations(report, server);
    bench::memoryOfSavedStates(report, server);
    return report.countsHold();
}

} // namespace

int main(int argc, char** argv) {
    try {
        const Options options = readOptions({argv, static_cast<std::size_t>(argc)});
        bench::require(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED), "COM cannot be used");
        const bool countsHold = measure(options.only);
        CoUninitialize();
        return options.check && !countsHold ? 1 : 0;
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "bench: %s\n", failure.what());
        return 2;
    }
}
