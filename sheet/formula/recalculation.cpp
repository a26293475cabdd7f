#include "sheet/formula/recalculation.h"

#include "sheet/formula/block_index.h"

#include <algorithm>
#include <iterator>
#include <set>

namespace sheet::formula {

namespace {

// A formula calculated more often than this may be in a circle of spills; looking for one costs time.
constexpr std::size_t suspiciousCalculations = 4;

class Recalculation {
  public:
    Recalculation(const Worksheet& sheet, const Graph& references, const Calculate& calculate,
                  const Progress& progress)
        : sheet_{sheet}, calculate_{calculate}, progress_{progress}, grid_{sheet},
          states_(sheet.formulas.size()) {
        for (std::size_t i = 0; i < references.size(); ++i) {
            states_[i].references = sheet_.formulas[i].formula.references();
            for (const Block& block : states_[i].references) {
                readers_.add(i, block);
            }
            states_[i].waitsFor = references[i].size();
            for (const std::size_t other : references[i]) {
                states_[other].dependents.push_back(i);
            }
            if (references[i].empty()) {
                ready_.insert(i);
            }
        }
    }

    Recalculated run() {
        std::size_t dirty = states_.size();
        while (dirty > 0) {
            const std::size_t index = takeNext();
            dirty -= 1;
            dirty += calculate(index);
            if (progress_) {
                progress_(states_.size() - dirty, states_.size());
            }
        }
        std::vector<Failure> failures = collectFailures();
        return {std::move(grid_), std::move(failures)};
    }

  private:
    struct State {
        std::vector<Block> references;
        std::vector<std::size_t> dependents; // formulas that refer to this one's own cells
        std::size_t waitsFor = 0;            // dirty formulas whose own cells this one refers to
        std::size_t calculations = 0;
        bool dirty = true;
        bool failed = false;
        std::string reason;
    };

    [[noreturn]] void failForSpills(std::vector<std::size_t> circle) const {
        const Address first = sheet_.formulas[circle.front()].block.first;
        if (circle.size() == 1) {
            throw InputError{
                first, "the result of the formula spills over " + nameOf(grid_.covered(circle.front())) +
                           ", where the formula refers to; move the formula or the cells it refers to"};
        }
        throw InputError{first,
                         "the results of the formulas in " + listed(sheet_, circle) +
                             " spill over cells that these formulas refer to, in a circle; leave more room "
                             "between them"};
    }

    std::size_t takeNext() {
        while (!ready_.empty()) {
            const std::size_t index = ready_.extract(ready_.begin()).value();
            const auto seesEmptyCell = [this](const Block& block) { return grid_.hasEmptyCell(block); };
            if (std::ranges::none_of(states_[index].references, seesEmptyCell)) {
                return index;
            }
            postponed_.insert(index);
        }
        return postponed_.extract(postponed_.begin()).value();
    }

    // Returns how many formulas that were up to date have to be calculated again.
    std::size_t calculate(std::size_t index) {
        State& state = states_[index];
        const EnteredFormula& entered = sheet_.formulas[index];
        Result result =
            entered.formula.function.empty() ? Result{referredValues(entered)} : calculate_(entered, grid_);
        state.failed = result.failed;
        state.reason = std::move(result.reason);
        state.dirty = false;
        ++state.calculations;
        for (const std::size_t dependent : state.dependents) {
            if (--states_[dependent].waitsFor == 0 && states_[dependent].dirty) {
                ready_.insert(dependent);
            }
        }
        const Block before = grid_.covered(index);
        const bool changed = grid_.place(index, result.values);
        if (grid_.blockage(index)) {
            blocked_.insert(index);
        } else {
            blocked_.erase(index);
        }
        if (!changed) {
            return 0;
        }
        refuseSpillCircle(index);
        return markReaders(index, before);
    }

    // Every formula that refers to a changed cell, and every blocked one where cells have become free.
    std::size_t markReaders(std::size_t index, const Block& before) {
        const Block& now = grid_.covered(index);
        std::vector<std::size_t> found;
        readers_.find(now, found);
        if (before != now) {
            readers_.find(before, found);
        }
        if (!now.contains(before)) {
            const auto mayFit = [&](std::size_t i) { return grid_.blockage(i)->needed.intersects(before); };
            std::ranges::copy_if(blocked_, std::back_inserter(found), mayFit);
        }
        std::size_t marked = 0;
        for (const std::size_t i : found) {
            if (i != index && !states_[i].dirty) {
                markDirty(i);
                ++marked;
            }
        }
        return marked;
    }

    void markDirty(std::size_t index) {
        State& state = states_[index];
        state.dirty = true;
        for (const std::size_t dependent : state.dependents) {
            ++states_[dependent].waitsFor;
            ready_.erase(dependent);
            postponed_.erase(dependent);
        }
        if (state.waitsFor == 0) {
            ready_.insert(index);
        }
    }

    void refuseSpillCircle(std::size_t index) const {
        const auto covered = [this](std::size_t i) { return grid_.covered(i); };
        const State& state = states_[index];
        if (std::ranges::any_of(state.references,
                                [&](const Block& b) { return b.intersects(covered(index)); })) {
            failForSpills({index});
        }
        if (state.calculations <= suspiciousCalculations) {
            return;
        }
        if (std::vector<std::size_t> circle = findCircle(referencesAmong(sheet_, covered)); !circle.empty()) {
            failForSpills(std::move(circle));
        }
        // No chain of references is longer than the number of formulas: more rounds than that come from
        // spills that displace each other in turn.
        if (state.calculations > states_.size() + suspiciousCalculations) {
            failForSpills(unsettled(index));
        }
    }

    std::vector<std::size_t> unsettled(std::size_t last) const {
        std::vector<std::size_t> result;
        for (std::size_t i = 0; i < states_.size(); ++i) {
            if (i == last || states_[i].dirty || states_[i].calculations > suspiciousCalculations) {
                result.push_back(i);
            }
        }
        return result;
    }

    // A reference to an empty cell shows 0, as in Excel.
    Matrix referredValues(const EnteredFormula& entered) const {
        Matrix values = grid_.values(std::get<Block>(entered.formula.arguments.front()));
        for (Value& value : values.values) {
            value = isEmpty(value) ? Value{0.0} : std::move(value);
        }
        return values;
    }

    std::vector<Failure> collectFailures() const {
        std::vector<Failure> failures;
        for (std::size_t i = 0; i < states_.size(); ++i) {
            if (!states_[i].failed && !grid_.blockage(i)) {
                continue;
            }
            const Block& where = grid_.covered(i);
            const std::string reason = grid_.blockage(i) ? reasonOf(*grid_.blockage(i)) : states_[i].reason;
            failures.push_back(
                {where, exactText(grid_.at(where.first)) + (reason.empty() ? "" : " (" + reason + ")")});
        }
        return failures;
    }

    static std::string reasonOf(const Grid::Blockage& blockage) {
        return "the result needs " + nameOf(blockage.needed) +
               (blockage.obstacle ? ", and " + nameOf(*blockage.obstacle) + " is not empty"
                                  : ", and the worksheet ends before");
    }

    const Worksheet& sheet_;
    const Calculate& calculate_;
    const Progress& progress_;
    Grid grid_;
    std::vector<State> states_;
    BlockIndex readers_;              // the blocks that each formula refers to
    std::set<std::size_t> blocked_;   // those whose result had no room
    std::set<std::size_t> ready_;     // dirty, and waiting for nothing
    std::set<std::size_t> postponed_; // likewise, but looking at empty cells that a spill may still fill
};

} // namespace

Recalculated recalculate(const Worksheet& sheet, const Calculate& calculate, const Progress& progress) {
    return recalculate(sheet, acyclicReferences(sheet), calculate, progress);
}

Recalculated recalculate(const Worksheet& sheet, const Graph& references, const Calculate& calculate,
                         const Progress& progress) {
    return Recalculation{sheet, references, calculate, progress}.run();
}

} // namespace sheet::formula
