// The cells as they are shown: the constants, and the results of formulas where they were placed. A result
// spills from its formula's cell over the empty cells right of it and below; the result of an array formula
// fills its range.
#pragma once

#include "sheet/formula/worksheet.h"

namespace sheet::formula {

class Grid {
  public:
    explicit Grid(const Worksheet& sheet);

    /// Empty where nothing stands.
    const Value& at(Address cell) const;
    Matrix values(const Block& block) const;
    bool hasEmptyCell(const Block& block) const;

    /// The last row and the last column with something in them, plus one.
    std::size_t rows() const;
    std::size_t columns() const;

    /// Puts a result (at least one value) in place of the formula's earlier one. A result that does not fit
    /// shows #SPILL! instead. `index` counts the worksheet's formulas. Returns whether any cell changed.
    bool place(std::size_t index, const Matrix& result);

    /// The cells that show the formula's result.
    const Block& covered(std::size_t index) const { return placements_[index].covered; }

    /// For a result that could not spill: the range it needs, and what stands in its way.
    struct Blockage {
        Block needed;
        std::optional<Address> obstacle; // none: the worksheet ends before
    };
    const std::optional<Blockage>& blockage(std::size_t index) const { return placements_[index].blockage; }

  private:
    static constexpr std::size_t nobody = static_cast<std::size_t>(-1);

    struct Slot {
        Value value;
        std::size_t owner = nobody; // the formula whose result stands here
        bool entered = false;       // typed by the user: no result of another cell may cover it
    };
    struct Placement {
        Block entered;
        bool array = false;
        Block covered;
        std::optional<Blockage> blockage;
    };

    Slot& slot(Address cell);
    const Slot* find(Address cell) const;
    std::optional<Blockage> findBlockage(std::size_t index, const Block& needed) const;
    void clearSpill(std::size_t index);
    void write(std::size_t index, const Block& block, const Matrix& values);

    std::vector<std::vector<Slot>> rows_; // ragged
    std::vector<Placement> placements_;
};

} // namespace sheet::formula
