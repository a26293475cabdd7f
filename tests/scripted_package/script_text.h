// A script as one line of text, for packages in other processes: settings separated by ';'.
//
//   CalcEquilibrium=0x8004050B                         the method fails with that code
//   CalcEquilibrium=0x8004050B:Flash did not converge  and ECapeUser gives that description
//   ICapeThermoPhases=none                             the interface is missing
//   compounds=Water:18.015,Ethanol:46.069              names and molecular weights in g/mol (nan: missing)
//   phases=Gas:Vapor,Aqueous:Liquid                    labels and states of aggregation
//   enthalpy=Mole 1000                                 the values reported for a property; basis Mole, Mass,
//   None GetConstPropList=texts criticalVolume,,charge      the method succeeds with these texts; nothing is
//   a null GetConstPropList=reals 1,2.5                       or with these numbers GetConstPropList=empty or
//   with an empty value state=some text                                    what the package saves
//   log=Z:\tmp\calls.txt                               every call heard is appended to this file
//
// A setting that begins with "manager." is for the package manager, any other for its packages. Methods,
// interfaces and properties are recognised by how they are written: methods begin with a capital, interfaces
// end in "=none".
#pragma once

#include "tests/scripted_package/script.h"

namespace scripted {

struct ParsedScripts {
    std::shared_ptr<Script> package = std::make_shared<Script>();
    std::shared_ptr<Script> manager = std::make_shared<Script>();
};

/// Throws std::invalid_argument that quotes the setting which cannot be understood.
ParsedScripts parseScripts(std::wstring_view text);

} // namespace scripted
