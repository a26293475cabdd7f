// Which formulas a formula refers to, compared with looking at every pair of them.
#include "sheet/formula/dependencies.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <random>

namespace sheet::formula {
namespace {

constexpr std::size_t size = 12;

// Formulas stand in every fourth row and column at the most, each with room for an area of up to 4 by 4
// cells.
Worksheet randomSheet(std::mt19937& random) {
    const auto cell = [&] { return Address{random() % size, random() % size}; };
    Worksheet sheet;
    for (std::size_t row = 0; row < size; row += 4) {
        for (std::size_t column = 0; column < size; column += 4) {
            if (random() % 3 > 0) {
                const Block block{{row, column}, 1 + random() % 4, 1 + random() % 4};
                sheet.formulas.push_back(
                    {block, true, {"CapeOpenX", {spanning(cell(), cell()), 2.0, spanning(cell(), cell())}}});
            }
        }
    }
    return sheet;
}

Graph pairwise(const Worksheet& sheet) {
    Graph graph{sheet.formulas.size()};
    for (std::size_t i = 0; i < graph.size(); ++i) {
        const std::vector<Block> references = sheet.formulas[i].formula.references();
        for (std::size_t other = 0; other < graph.size(); ++other) {
            const Block& area = sheet.formulas[other].block;
            if (std::ranges::any_of(references, [&](const Block& b) { return b.intersects(area); })) {
                graph[i].push_back(other);
            }
        }
    }
    return graph;
}

TEST(Dependencies, AreThoseOfComparingEveryPair) {
    std::mt19937 random{20240229};
    std::size_t found = 0;
    for (int round = 0; round < 1000; ++round) {
        const Worksheet sheet = randomSheet(random);
        const Graph graph = referencesAmong(sheet, [&](std::size_t i) { return sheet.formulas[i].block; });
        ASSERT_EQ(graph, pairwise(sheet)) << "round " << round;
        for (const auto& references : graph) {
            found += references.size();
        }
    }
    EXPECT_GT(found, 1000U);
}

// Looking at every pair would take ten thousand million steps here.
TEST(Dependencies, ALongChainOfFormulasIsFollowed) {
    constexpr std::size_t count = 100'000;
    Worksheet sheet;
    for (std::size_t row = 0; row < count; ++row) {
        sheet.formulas.push_back({Block{{row, 0}}, false, {"", {Block{{row + 1, 0}}}}});
    }
    const Graph graph = acyclicReferences(sheet);
    ASSERT_EQ(graph.size(), count);
    for (std::size_t row = 0; row + 1 < count; ++row) {
        ASSERT_EQ(graph[row], std::vector{row + 1});
    }
    EXPECT_TRUE(graph.back().empty());
}

} // namespace
} // namespace sheet::formula
