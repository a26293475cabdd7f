// Which of many blocks share cells with a given one. Blocks are filed under tiles of about their own size, so
// that a search looks at few blocks other than those it finds, however many there are.
#pragma once

#include "sheet/formula/address.h"

#include <map>
#include <utility>
#include <vector>

namespace sheet::formula {

class BlockIndex {
  public:
    /// The same number may be added with several blocks.
    void add(std::size_t number, const Block& block);

    /// Appends the numbers of the blocks that share a cell with `block`, once for each such block. Returns
    /// how many blocks it looked at.
    std::size_t find(const Block& block, std::vector<std::size_t>& found) const;

  private:
    // Tiles of sizes (r, c) have 2^r rows and 2^c columns.
    using TileSize = std::pair<unsigned, unsigned>;
    struct Entry {
        Block block;
        std::size_t number = 0;
    };
    // Column and row of the tile that holds the block's first cell. No block is larger than a tile, so it
    // ends in the same tile or in the next one.
    using Tiles = std::map<std::pair<std::size_t, std::size_t>, std::vector<Entry>>;

    std::map<TileSize, Tiles> sizes_;
};

} // namespace sheet::formula
