#include "src/material/basis.h"

#include "src/foundation/exceptions.h"
#include "src/foundation/text.h"

namespace quorvane {

Basis parseBasis(std::wstring_view text) {
    if (text.empty()) {
        return Basis_Undefined;
    }
    if (matchesKeyword(text, L"mole")) {
        return Basis_Mole;
    }
    if (matchesKeyword(text, L"mass")) {
        return Basis_Mass;
    }
    throw CWStrException{L"invalid basis"};
}

std::int32_t basisExponent(std::int32_t from, std::int32_t to) {
    if (from == to || from > Basis_Mass) {
        return 0;
    }
    if (from == Basis_Undefined || to == Basis_Undefined) {
        throw CWStrException{L"Specified basis does not apply"};
    }
    return from == Basis_Mole ? -1 : 1;
}

} // namespace quorvane
