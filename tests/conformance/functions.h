// The nine worksheet functions with their parameters, and for each a call that works: a workbook with the
// package P, which is told what it must know for that.
#pragma once

#include "tests/src/server/worksheet.h"

namespace conformance {

/// What a parameter means; the same meaning is read in the same way everywhere.
enum class Role {
    package,
    property, ///< name of a property
    constant, ///< name of a constant
    unit,     ///< name of a property whose unit is asked for
    phase,    ///< label of a phase to calculate
    freeReal, ///< a temperature that is not judged
    temperature,
    pressure,
    condition1,
    condition2,
    conditionValue1,
    conditionValue2,
    composition,
    basis,
    listOrientation,   ///< of a result that cannot be a matrix
    matrixOrientation, ///< of a result that can
    unreadOrientation, ///< that is not looked at
    compound,
    phaseSelection,
    derivativePhase,
    flag,
    options,
    filler,
};

struct Parameter {
    const char* name;
    VARTYPE type; ///< VT_BSTR, VT_R8 or VT_VARIANT
    Role role;
    com::variant (*working)();
};

struct Function {
    const char* name; ///< without CapeOpen
    const wchar_t* method;
    std::vector<Parameter> parameters;
};

const std::vector<Function>& functions();
const Function& functionNamed(std::string_view name);

/// Arguments with which the function gives a result. Constants and properties of temperature are asked for on
/// mass basis, mixture and two-phase properties are derivatives that can be a matrix, the flash is asked for
/// the enthalpy of its phases.
std::vector<com::variant> workingArguments(const Function& function);

com::variant& argumentNamed(std::string_view parameter, const Function& function,
                            std::vector<com::variant>& arguments);

/// What the package answers to these.
void teach(scripted::Script& package);

} // namespace conformance
