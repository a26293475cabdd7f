// Makes a call of the table fail, and takes that back.
#pragma once

#include "tests/faults/stage.h"

namespace faults {

/// The ways in which a code can come back from one call.
enum class Manner {
    silent,  ///< the package says nothing about it
    spoken,  ///< the package describes it as `spokenWords`
    unnamed, ///< the name of the property is not found
    rubbish, ///< a failing query leaves a pointer that is none
    nothing, ///< a query succeeds without a pointer
};

inline constexpr const char* spokenWords = "it did not converge";

void inject(Stage& stage, const Call& call, HRESULT code, Manner manner);
void takeBack(Stage& stage, const Call& call);

} // namespace faults
