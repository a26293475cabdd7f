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
    late,    ///< the work is done and handed over all the same
};

inline constexpr const char* spokenWords = "it did not converge";

/// The call goes to the scripted package, its manager or its stream.
bool isScripted(const Call& call);

void inject(Stage& stage, const Call& call, HRESULT code, Manner manner);
void takeBack(Stage& stage, const Call& call);

} // namespace faults
