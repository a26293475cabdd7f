// The figures, one function for each family; each adds its rows to the report.
#pragma once

#include "bench/add_in.h"
#include "bench/report.h"

namespace bench {

/// Must come before anything else has loaded the add-in.
void loading(Report& report);
void size(Report& report);
void mixtureProperties(Report& report, const Server& server, const Server& emptyServer);
void derivatives(Report& report, const Server& server);
void equilibria(Report& report, const Server& server);
void lookUp(Report& report, const Server& server);
void recalculation(Report& report, const Server& server);
void savedStates(Report& report, const Server& server);
/// Counts change how Automation works: these are to be called when all times have been taken.
void allocations(Report& report, const Server& server);
void memoryOfSavedStates(Report& report, const Server& server);

} // namespace bench
