#include "sheet/formula/dependencies.h"

#include <algorithm>

namespace sheet::formula {

Graph referencesAmong(const Worksheet& sheet, const std::function<Block(std::size_t)>& area) {
    const std::size_t count = sheet.formulas.size();
    std::vector<Block> areas;
    for (std::size_t i = 0; i < count; ++i) {
        areas.push_back(area(i));
    }
    Graph graph{count};
    for (std::size_t i = 0; i < count; ++i) {
        const std::vector<Block> references = sheet.formulas[i].formula.references();
        for (std::size_t other = 0; other < count; ++other) {
            if (std::ranges::any_of(references, [&](const Block& b) { return b.intersects(areas[other]); })) {
                graph[i].push_back(other);
            }
        }
    }
    return graph;
}

Graph cellReferences(const Worksheet& sheet) {
    return referencesAmong(sheet, [&](std::size_t i) { return sheet.formulas[i].block; });
}

std::vector<std::size_t> findCircle(const Graph& references) {
    // Formulas that refer to no unsettled one are settled, again and again; what is left lies on a circle or
    // refers into one, so following unsettled references from any of them must come round.
    const std::size_t count = references.size();
    std::vector<std::size_t> unsettledReferences(count);
    Graph referrers{count};
    std::vector<std::size_t> settled;
    for (std::size_t i = 0; i < count; ++i) {
        unsettledReferences[i] = references[i].size();
        for (const std::size_t other : references[i]) {
            referrers[other].push_back(i);
        }
        if (references[i].empty()) {
            settled.push_back(i);
        }
    }
    for (std::size_t next = 0; next < settled.size(); ++next) {
        for (const std::size_t referrer : referrers[settled[next]]) {
            if (--unsettledReferences[referrer] == 0) {
                settled.push_back(referrer);
            }
        }
    }
    const auto first = std::ranges::find_if(unsettledReferences, [](std::size_t n) { return n > 0; });
    if (first == unsettledReferences.end()) {
        return {};
    }
    std::vector<std::size_t> path;
    auto here = static_cast<std::size_t>(first - unsettledReferences.begin());
    while (std::ranges::find(path, here) == path.end()) {
        path.push_back(here);
        here = *std::ranges::find_if(references[here],
                                     [&](std::size_t i) { return unsettledReferences[i] > 0; });
    }
    path.erase(path.begin(), std::ranges::find(path, here));
    std::ranges::sort(path);
    return path;
}

void refuseCircles(const Worksheet& sheet) {
    const std::vector<std::size_t> circle = findCircle(cellReferences(sheet));
    if (circle.empty()) {
        return;
    }
    const Address first = sheet.formulas[circle.front()].block.first;
    if (circle.size() == 1) {
        throw InputError{first, "the formula refers to its own cell; let it refer to other cells only"};
    }
    throw InputError{first, "the formulas in " + listed(sheet, circle) +
                                " refer to each other in a circle; let one of them refer to other cells"};
}

std::string listed(const Worksheet& sheet, const std::vector<std::size_t>& formulas) {
    std::string text;
    for (std::size_t i = 0; i < formulas.size(); ++i) {
        if (i > 0) {
            text += i + 1 == formulas.size() ? " and " : ", ";
        }
        text += nameOf(sheet.formulas[formulas[i]].block.first);
    }
    return text;
}

} // namespace sheet::formula
