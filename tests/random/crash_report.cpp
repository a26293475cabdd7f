#include "tests/random/crash_report.h"

#include "com/platform.h"

#include <cstdio>

namespace chance {

namespace {

std::uint64_t currentSeed = 0;
long currentStep = 0;

LONG WINAPI tellStep(EXCEPTION_POINTERS* what) {
    std::fprintf(stderr, "CRASH with code %08lX at %p: seed %llu, step %ld\n",
                 what->ExceptionRecord->ExceptionCode, what->ExceptionRecord->ExceptionAddress,
                 static_cast<unsigned long long>(currentSeed), currentStep);
    std::fflush(stderr);
    return EXCEPTION_CONTINUE_SEARCH;
}

} // namespace

void nowRunning(std::uint64_t seed, long step) noexcept {
    static const auto installed = SetUnhandledExceptionFilter(tellStep);
    static_cast<void>(installed);
    currentSeed = seed;
    currentStep = step;
}

} // namespace chance
