// Vocabulary of these tests: definitions that are right but for what a test puts into them.
#pragma once

#include "packages/peng_robinson/definition/definition.h"

#include <gtest/gtest.h>
#include <string>

namespace peng_robinson::test {

inline const std::string header =
    "name,formula,CAS number,molecular weight,critical temperature,critical pressure,"
    "acentric factor,normal boiling point,cp0\n";
inline const std::string methane = "methane,CH4,74-82-8,16.0428,190.564,4599200,0.01142,111.667,36\n";
inline const std::string ethane = "ethane,C2H6,74-84-0,30.06904,305.322,4872200,0.0995,184.569,53\n";

/// Two compounds from line 3 on; `more` begins in line 5.
inline std::string definition(const std::string& more = {}) {
    return "[compounds]\n" + header + methane + ethane + more;
}

/// The mistake in a text, "line: reason"; empty when there is none.
inline std::string mistake(const std::string& text) {
    try {
        readDefinition(text, "Test");
    } catch (const DefinitionError& error) {
        return std::to_string(error.line()) + ": " + error.what();
    }
    return {};
}

} // namespace peng_robinson::test
