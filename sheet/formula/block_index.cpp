#include "sheet/formula/block_index.h"

#include <bit>

namespace sheet::formula {

void BlockIndex::add(std::size_t number, const Block& block) {
    const TileSize size{static_cast<unsigned>(std::bit_width(block.rows - 1)),
                        static_cast<unsigned>(std::bit_width(block.columns - 1))};
    const std::pair tile{block.first.column >> size.second, block.first.row >> size.first};
    sizes_[size][tile].push_back({block, number});
}

std::size_t BlockIndex::find(const Block& block, std::vector<std::size_t>& found) const {
    // The tile before may hold blocks that reach into the tile of the first cell.
    const auto firstTile = [](std::size_t cell, unsigned bits) {
        return cell >> bits == 0 ? 0 : (cell >> bits) - 1;
    };
    std::size_t looked = 0;
    for (const auto& [size, tiles] : sizes_) {
        const auto [rowBits, columnBits] = size;
        const std::size_t lastRow = (block.endRow() - 1) >> rowBits;
        const std::size_t lastColumn = (block.endColumn() - 1) >> columnBits;
        const std::size_t firstRow = firstTile(block.first.row, rowBits);
        auto tile = tiles.lower_bound({firstTile(block.first.column, columnBits), firstRow});
        while (tile != tiles.end() && tile->first.first <= lastColumn) {
            const auto [column, row] = tile->first;
            if (row < firstRow) {
                tile = tiles.lower_bound({column, firstRow});
                continue;
            }
            if (row > lastRow) {
                tile = tiles.lower_bound({column + 1, firstRow});
                continue;
            }
            for (const Entry& entry : tile->second) {
                ++looked;
                if (entry.block.intersects(block)) {
                    found.push_back(entry.number);
                }
            }
            ++tile;
        }
    }
    return looked;
}

} // namespace sheet::formula
