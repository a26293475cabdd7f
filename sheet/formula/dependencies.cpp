#include "sheet/formula/dependencies.h"

#include <algorithm>
#include <map>

namespace sheet::formula {

namespace {

// The areas that stand in each column. There they follow each other downwards and do not overlap, so that
// those in some of its rows are found by their place in the order.
class AreasByColumn {
  public:
    void add(std::size_t index, const Block& area) {
        for (std::size_t column = area.first.column; column < area.endColumn(); ++column) {
            columns_[column].push_back({area.first.row, area.endRow(), index});
        }
    }

    void find(const Block& block, std::vector<std::size_t>& found) const {
        const auto end = columns_.lower_bound(block.endColumn());
        for (auto column = columns_.lower_bound(block.first.column); column != end; ++column) {
            const std::vector<Rows>& areas = column->second;
            auto area = std::ranges::upper_bound(areas, block.first.row, {}, &Rows::end);
            for (; area != areas.end() && area->first < block.endRow(); ++area) {
                found.push_back(area->index);
            }
        }
    }

  private:
    struct Rows {
        std::size_t first;
        std::size_t end;
        std::size_t index;
    };

    std::map<std::size_t, std::vector<Rows>> columns_;
};

} // namespace

Graph referencesAmong(const Worksheet& sheet, const std::function<Block(std::size_t)>& area) {
    const std::size_t count = sheet.formulas.size();
    AreasByColumn areas;
    for (std::size_t i = 0; i < count; ++i) {
        areas.add(i, area(i));
    }
    Graph graph{count};
    for (std::size_t i = 0; i < count; ++i) {
        std::vector<std::size_t>& found = graph[i];
        for (const Block& block : sheet.formulas[i].formula.references()) {
            areas.find(block, found);
        }
        std::ranges::sort(found);
        found.erase(std::unique(found.begin(), found.end()), found.end());
    }
    return graph;
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

Graph acyclicReferences(const Worksheet& sheet) {
    Graph references = referencesAmong(sheet, [&](std::size_t i) { return sheet.formulas[i].block; });
    const std::vector<std::size_t> circle = findCircle(references);
    if (circle.empty()) {
        return references;
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
