// The worksheet functions, as they are called without Automation's dispatcher: in the order of their member
// identifiers, each with the number of its required arguments.
#pragma once

#include "com/direct_invoke.h"

#include <quorvane_idl.h>

namespace quorvane {

inline constexpr std::array<com::DirectMethod<IQuorvaneUDF>, 9> directFunctions = {
    com::directMethod<&IQuorvaneUDF::CapeOpenPackageNames>(0x60020000, 0),
    com::directMethod<&IQuorvaneUDF::CapeOpenUnitOfMeasure>(0x60020001, 1),
    com::directMethod<&IQuorvaneUDF::CapeOpenCompounds>(0x60020002, 1),
    com::directMethod<&IQuorvaneUDF::CapeOpenPhases>(0x60020003, 1),
    com::directMethod<&IQuorvaneUDF::CapeOpenCompoundConstant>(0x60020004, 2),
    com::directMethod<&IQuorvaneUDF::CapeOpenTemperatureDependentProperty>(0x60020005, 3),
    com::directMethod<&IQuorvaneUDF::CapeOpenMixtureProperty>(0x60020006, 6),
    com::directMethod<&IQuorvaneUDF::CapeOpenTwoPhaseProperty>(0x60020007, 8),
    com::directMethod<&IQuorvaneUDF::CapeOpenPhaseEquilibrium>(0x60020008, 6),
};

} // namespace quorvane
