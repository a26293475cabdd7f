#include "src/foundation/outputs.h"

namespace quorvane {

HRESULT received(HRESULT code, std::span<ArrayVariant> outputs) noexcept {
    if (FAILED(code)) {
        for (ArrayVariant& output : outputs) {
            output.owned = false;
            output.release();
        }
    }
    return code;
}

} // namespace quorvane
