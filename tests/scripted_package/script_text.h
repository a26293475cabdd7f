// A script as one line of text, for packages in other processes and for tables of tests: settings separated
// by ';'.
//
//   | CalcEquilibrium=0x8004050B                the method fails with that code
//   | CalcEquilibrium=0x8004050B:No solution    and ECapeUser gives that description
//   | CalcEquilibrium=nothing                   the method succeeds and does nothing
//   | Initialize=leaves some words              as healthy, but leaves that as Automation error information
//   | GetPhaseList=texts Gas,Oil & empty        the method succeeds with these outputs, see below
//   | GetCompoundConstant=partly values 1,,x    the same, but the code says that something is not available
//   | ICapeThermoPhases=none                    the interface is missing
//   | compounds=Water:18.015,Ethanol:46.069     names and molecular weights in g/mol (nan: missing)
//   | phases=Gas:Vapor,Aqueous:Liquid           labels and states of aggregation
//   | enthalpy=Mole 1000                        the values reported for a property; basis Mole, Mass, None
//   | flash=overall 300 1e5,Gas 300 1e5 0.2 Mole 0.5 0.5 Mole,Oil - - 0.8 Mole 0.5 0.5 Mole
//   |                                           what a flash reports: T and P of the mixture; of each phase
//   |                                           T, P, fraction and its basis, composition and its basis
//   |                                           (-: not reported)
//   | state=some text                           what the package saves
//   | log=Z:\tmp\calls.txt                      every call heard is appended to this file
//
// An output is "texts a,,b" (a null text between), "reals 1,2.5", "values 1,x," (numbers and texts mixed),
// "text x", "real block 2" or "text block 2" (two-dimensional, that many rows), or "empty". The settings of
// one method are its outputs in order, separated by " & ".
//
// A setting that begins with "manager." is for the package manager, any other for its packages. Methods,
// interfaces and properties are recognised by how they are written: methods begin with a capital, interfaces
// end in "=none".
#pragma once

#include "tests/scripted_package/script.h"

#include <stdexcept>

namespace scripted {

struct ParsedScripts {
    std::shared_ptr<Script> package = std::make_shared<Script>();
    std::shared_ptr<Script> manager = std::make_shared<Script>();
};

/// Throws std::invalid_argument that quotes the setting which cannot be understood.
ParsedScripts parseScripts(std::wstring_view text);

} // namespace scripted
