// The conformance table of this test run.
#pragma once

#include "tests/conformance/table.h"

namespace conformance {

/// worksheet_functions.txt, which lies beside the test program; read once.
const Table& table();

} // namespace conformance
