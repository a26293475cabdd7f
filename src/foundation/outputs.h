// What calls into other people's components leave in their outputs.
#pragma once

#include "src/foundation/array_variant.h"

#include <span>

namespace quorvane {

/// For the outputs of a call that ended with `code`, which were passed by ArrayVariant::put. A failing call
/// must leave them empty, but a careless component leaves anything: that is let go without being cleared.
/// What an honest component forgot to free is lost then, which harms less than freeing what is none of ours.
/// Gives `code`.
HRESULT received(HRESULT code, std::span<ArrayVariant> outputs) noexcept;
inline HRESULT received(HRESULT code, ArrayVariant& output) noexcept { return received(code, {&output, 1}); }

} // namespace quorvane
