// The entry that libFuzzer calls.
#include "tests/fuzz/fuzz.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::run(fuzz::Input{std::span{data, size}});
    return 0;
}
