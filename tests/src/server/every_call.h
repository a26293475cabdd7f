// A package's calls of its material: every method of every interface, with arguments that a healthy
// calculation could use.
#pragma once

#include "com/com_ptr.h"

#include <capeopen_idl.h>

#include <string>
#include <vector>

namespace tests {

/// "method: words" for each, in the order of the interfaces; the words are "done", or what the material says
/// of the failure.
std::vector<std::string> callEverything(IUnknown* material);

/// The material's words for one of those that fail; "done" otherwise.
std::string wordsOf(IUnknown* material, HRESULT code);

} // namespace tests
