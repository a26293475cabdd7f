#include "packages/peng_robinson/eos/interaction.h"

#include <algorithm>
#include <array>

namespace peng_robinson::eos {
namespace {

struct Pair {
    std::string_view first, second;
    double k;
};

// Knapp, Doering, Oellrich, Ploecker, Prausnitz, Vapor-Liquid Equilibria for Mixtures of Low Boiling
// Substances, DECHEMA Chemistry Data Series VI (1982), Peng-Robinson columns, as also reprinted in Reid,
// Prausnitz, Poling, The Properties of Gases and Liquids, 4th ed. (1987), which adds methane with hydrogen
// sulfide. Water: Soereide, Whitson, Fluid Phase Equilib. 77 (1992) 217, parameters of the non-aqueous phase
// (0.5 from pentane on); hydrogen sulfide with water from Peng, Robinson, ACS Symp. Ser. 133 (1980) 393,
// non-aqueous phase.
constexpr std::array pairs{
    Pair{"nitrogen", "carbon dioxide", -0.0170},
    Pair{"nitrogen", "hydrogen sulfide", 0.1767},
    Pair{"nitrogen", "methane", 0.0311},
    Pair{"nitrogen", "ethane", 0.0515},
    Pair{"nitrogen", "propane", 0.0852},
    Pair{"nitrogen", "isobutane", 0.1033},
    Pair{"nitrogen", "n-butane", 0.0800},
    Pair{"nitrogen", "isopentane", 0.0922},
    Pair{"nitrogen", "n-pentane", 0.1000},
    Pair{"nitrogen", "n-hexane", 0.1496},
    Pair{"nitrogen", "n-heptane", 0.1441},
    Pair{"nitrogen", "n-decane", 0.1122},
    Pair{"nitrogen", "ethylene", 0.0856},
    Pair{"nitrogen", "propylene", 0.0900},
    Pair{"nitrogen", "benzene", 0.1641},
    Pair{"nitrogen", "hydrogen", 0.1030},
    Pair{"nitrogen", "oxygen", -0.0119},
    Pair{"nitrogen", "carbon monoxide", 0.0307},
    Pair{"nitrogen", "argon", -0.0026},
    Pair{"carbon dioxide", "hydrogen sulfide", 0.0974},
    Pair{"carbon dioxide", "methane", 0.0919},
    Pair{"carbon dioxide", "ethane", 0.1322},
    Pair{"carbon dioxide", "propane", 0.1241},
    Pair{"carbon dioxide", "isobutane", 0.1200},
    Pair{"carbon dioxide", "n-butane", 0.1333},
    Pair{"carbon dioxide", "isopentane", 0.1219},
    Pair{"carbon dioxide", "n-pentane", 0.1222},
    Pair{"carbon dioxide", "n-hexane", 0.1100},
    Pair{"carbon dioxide", "n-heptane", 0.1000},
    Pair{"carbon dioxide", "n-decane", 0.1141},
    Pair{"carbon dioxide", "ethylene", 0.0552},
    Pair{"carbon dioxide", "propylene", 0.0933},
    Pair{"carbon dioxide", "benzene", 0.0774},
    Pair{"carbon dioxide", "toluene", 0.1056},
    Pair{"carbon dioxide", "hydrogen", -0.1622},
    Pair{"carbon dioxide", "oxygen", 0.0975},
    Pair{"hydrogen sulfide", "methane", 0.0800},
    Pair{"hydrogen sulfide", "ethane", 0.0833},
    Pair{"hydrogen sulfide", "propane", 0.0878},
    Pair{"hydrogen sulfide", "isobutane", 0.0474},
    Pair{"hydrogen sulfide", "n-pentane", 0.0630},
    Pair{"hydrogen sulfide", "n-decane", 0.0333},
    Pair{"hydrogen sulfide", "carbon monoxide", 0.0544},
    Pair{"methane", "ethane", -0.0026},
    Pair{"methane", "propane", 0.0140},
    Pair{"methane", "isobutane", 0.0256},
    Pair{"methane", "n-butane", 0.0133},
    Pair{"methane", "isopentane", -0.0056},
    Pair{"methane", "n-pentane", 0.0230},
    Pair{"methane", "neopentane", 0.0180},
    Pair{"methane", "n-hexane", 0.0422},
    Pair{"methane", "n-heptane", 0.0352},
    Pair{"methane", "n-octane", 0.0496},
    Pair{"methane", "n-nonane", 0.0474},
    Pair{"methane", "n-decane", 0.0422},
    Pair{"methane", "ethylene", 0.0215},
    Pair{"methane", "propylene", 0.0330},
    Pair{"methane", "benzene", 0.0363},
    Pair{"methane", "toluene", 0.0970},
    Pair{"methane", "hydrogen", 0.0156},
    Pair{"methane", "carbon monoxide", 0.0300},
    Pair{"methane", "argon", 0.0230},
    Pair{"ethane", "propane", 0.0011},
    Pair{"ethane", "isobutane", -0.0067},
    Pair{"ethane", "n-butane", 0.0096},
    Pair{"ethane", "n-pentane", 0.0078},
    Pair{"ethane", "n-hexane", -0.0100},
    Pair{"ethane", "n-heptane", 0.0067},
    Pair{"ethane", "n-octane", 0.0185},
    Pair{"ethane", "n-decane", 0.0144},
    Pair{"ethane", "ethylene", 0.0089},
    Pair{"ethane", "benzene", 0.0322},
    Pair{"ethane", "hydrogen", -0.0667},
    Pair{"ethane", "carbon monoxide", -0.0226},
    Pair{"propane", "isobutane", -0.0078},
    Pair{"propane", "n-butane", 0.0033},
    Pair{"propane", "isopentane", 0.0111},
    Pair{"propane", "n-pentane", 0.0267},
    Pair{"propane", "n-hexane", 0.0007},
    Pair{"propane", "n-heptane", 0.0056},
    Pair{"propane", "propylene", 0.0074},
    Pair{"propane", "benzene", 0.0233},
    Pair{"propane", "hydrogen", -0.0833},
    Pair{"propane", "carbon monoxide", 0.0259},
    Pair{"isobutane", "n-butane", -0.0004},
    Pair{"n-butane", "n-pentane", 0.0174},
    Pair{"n-butane", "n-hexane", -0.0056},
    Pair{"n-butane", "n-heptane", 0.0033},
    Pair{"n-butane", "n-decane", 0.0078},
    Pair{"n-butane", "hydrogen", -0.3970},
    Pair{"isopentane", "n-pentane", 0.0600},
    Pair{"n-pentane", "n-heptane", 0.0074},
    Pair{"n-pentane", "benzene", 0.0189},
    Pair{"n-hexane", "n-heptane", -0.0078},
    Pair{"n-hexane", "benzene", 0.0093},
    Pair{"n-heptane", "benzene", 0.0011},
    Pair{"hydrogen", "carbon monoxide", 0.0919},
    Pair{"oxygen", "argon", 0.0104},
    Pair{"water", "nitrogen", 0.4778},
    Pair{"water", "carbon dioxide", 0.1896},
    Pair{"water", "hydrogen sulfide", 0.1200},
    Pair{"water", "methane", 0.4850},
    Pair{"water", "ethane", 0.4920},
    Pair{"water", "propane", 0.5525},
    Pair{"water", "isobutane", 0.5091},
    Pair{"water", "n-butane", 0.5091},
    Pair{"water", "isopentane", 0.5000},
    Pair{"water", "n-pentane", 0.5000},
    Pair{"water", "neopentane", 0.5000},
    Pair{"water", "n-hexane", 0.5000},
    Pair{"water", "n-heptane", 0.5000},
    Pair{"water", "n-octane", 0.5000},
    Pair{"water", "n-nonane", 0.5000},
    Pair{"water", "n-decane", 0.5000},
};

} // namespace

double interactionParameter(std::string_view first, std::string_view second) noexcept {
    const auto found = std::ranges::find_if(pairs, [=](const Pair& pair) {
        return (pair.first == first && pair.second == second) ||
               (pair.first == second && pair.second == first);
    });
    return found == pairs.end() ? 0.0 : found->k;
}

} // namespace peng_robinson::eos
