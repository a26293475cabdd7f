#include "sheet/formula/input_error.h"

namespace sheet::formula {

std::string Problem::inFile(const std::string& file) const {
    if (!cell) {
        return file + ": " + message;
    }
    return file + ": row " + std::to_string(cell->row + 1) + ", column " + std::to_string(cell->column + 1) +
           " (" + nameOf(*cell) + "): " + message;
}

} // namespace sheet::formula
