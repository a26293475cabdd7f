// Runs a fuzzer without libFuzzer: on its seed corpus, and on as many mutations of it as RUNS says. The
// random numbers are the same in every run. An input that ends the program, or breaks a promise, is kept in a
// file.
#include "tests/fuzz/mutation.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <sanitizer/common_interface_defs.h>

namespace fuzz {
namespace {

constexpr std::uint_fast32_t seed = 20240229;

const Bytes* current = nullptr;

std::filesystem::path keepCurrent() {
    std::filesystem::create_directories(FINDS_FOLDER);
    std::filesystem::path file = std::filesystem::path{FINDS_FOLDER} / "from_tests";
    std::ofstream{file, std::ios::binary}.write(reinterpret_cast<const char*>(current->data()),
                                                static_cast<std::streamsize>(current->size()));
    return file;
}

// A sanitizer is about to end the program.
void tellLastInput() {
    if (current != nullptr) {
        std::cerr << "the input is in " << keepCurrent() << '\n';
    }
}

/// What is wrong; empty when the promises hold.
std::string complaint(const Bytes& bytes) {
    current = &bytes;
    std::string result;
    try {
        run(Input{bytes});
    } catch (const std::exception& error) {
        result = std::string{error.what()} + "; the input is in " + keepCurrent().string();
    }
    current = nullptr;
    return result;
}

std::vector<Bytes> corpus() {
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::directory_iterator{CORPUS_FOLDER}) {
        files.push_back(entry.path());
    }
    std::ranges::sort(files);
    std::vector<Bytes> result;
    for (const std::filesystem::path& file : files) {
        std::ifstream stream{file, std::ios::binary};
        result.emplace_back(std::istreambuf_iterator<char>{stream}, std::istreambuf_iterator<char>{});
    }
    return result;
}

class Fuzzer : public testing::Test {
  protected:
    void SetUp() override {
        __sanitizer_set_death_callback(tellLastInput);
        ASSERT_FALSE(seeds.empty());
    }

    const std::vector<Bytes> seeds = corpus();
};

TEST_F(Fuzzer, KeepsItsPromisesForTheCorpus) {
    for (const Bytes& bytes : seeds) {
        EXPECT_EQ(complaint(bytes), "");
    }
    EXPECT_EQ(complaint({}), "");
}

TEST_F(Fuzzer, KeepsItsPromisesForMutations) {
    Mutator mutator{seeds, seed};
    for (int i = 0; i < RUNS; ++i) {
        ASSERT_EQ(complaint(mutator.next()), "") << "mutation " << i;
    }
}

} // namespace
} // namespace fuzz
