#include "packages/peng_robinson/eos/compound.h"

#include "packages/peng_robinson/eos/constants.h"

#include <algorithm>
#include <array>

namespace peng_robinson::eos {
namespace {

constexpr double R = molarGasConstant;

// DIPPR equation 107 in J/(mol K).
constexpr HeatCapacity alyLee(double a, double b, double c, double d, double e, double Tmin, double Tmax) {
    return {a, {{{b, c}}}, {d, e}, Tmin, Tmax};
}

// Planck-Einstein terms: multiples of R and vibrational temperatures.
constexpr HeatCapacity planckEinstein(double a, std::array<HeatCapacity::Term, 4> terms, double Tmin,
                                      double Tmax) {
    for (auto& [factor, temperature] : terms) {
        factor *= R;
        temperature /= 2.0;
    }
    return {a * R, terms, {}, Tmin, Tmax};
}

// Critical constants, acentric factors and boiling points: the reference equations of state, namely
//   N2   Span, Lemmon, Jacobsen, Wagner, Yokozeki, J. Phys. Chem. Ref. Data 29 (2000) 1361
//   CO2  Span, Wagner, J. Phys. Chem. Ref. Data 25 (1996) 1509
//   CH4  Setzmann, Wagner, J. Phys. Chem. Ref. Data 20 (1991) 1061
//   C2H6, n- and i-C4H10  Buecker, Wagner, J. Phys. Chem. Ref. Data 35 (2006) 205 and 929
//   C3H8 Lemmon, McLinden, Wagner, J. Chem. Eng. Data 54 (2009) 3141
//   n-C5 to n-C8  Span, Wagner, Int. J. Thermophys. 24 (2003) 41
//   H2S, CO, i-C5, neo-C5, n-C9, n-C10, toluene  Lemmon, Span, J. Chem. Eng. Data 51 (2006) 785
//   H2O  Wagner, Pruss, J. Phys. Chem. Ref. Data 31 (2002) 387
//   C6H6 Thol, Lemmon, Span, High Temp. High Press. 41 (2012) 81
//   H2   Leachman, Jacobsen, Penoncello, Lemmon, J. Phys. Chem. Ref. Data 38 (2009) 721
//   O2   Schmidt, Wagner, Fluid Phase Equilib. 19 (1985) 175
//   Ar   Tegeler, Span, Wagner, J. Phys. Chem. Ref. Data 28 (1999) 779
//   C2H4 Smukala, Span, Wagner, J. Phys. Chem. Ref. Data 29 (2000) 1053
//   C3H6 Lemmon, Overhoff, McLinden, Wagner (2010), in NIST Standard Reference Database 23, version 10
// Ideal-gas data: Perry's Chemical Engineers' Handbook, 8th ed. (2008), Tables 2-156 (heat capacity, DIPPR
// equation 107) and 2-179 (enthalpy and Gibbs energy of formation, entropy). Neopentane: heat capacity of
// Lemmon and Span (2006), formation data of Reid, Prausnitz, Poling, The Properties of Gases and Liquids, 4th
// ed. (1987), entropy of Stull, Westrum, Sinke, The Chemical Thermodynamics of Organic Compounds (1969).
// Liquid densities: the same reference equations. Parachors: what the surface tension at the normal boiling
// point (carbon dioxide: at 220 K) makes of the saturated densities there; surface tensions of Mulero,
// Cachadina, Parra, J. Phys. Chem. Ref. Data 41 (2012) 043105, of water from Vargaftik, Volkov, Voljak,
// J. Phys. Chem. Ref. Data 12 (1983) 817 (mean from 298 K to 373 K).
// clang-format off
constexpr std::array table{
    Compound{"nitrogen", "N2", "nitrogen", "N#N", "7727-37-9",
             28.0134, 126.192, 3395800.0, 11183.9, 0.0372, 77.355, 0.0, 0.0, 191.50,
             806.1, 60.3, alyLee(29.105, 8.6149, 1701.6, 0.10347, 909.79, 50.0, 1500.0)},
    Compound{"carbon dioxide", "CO2", "carbon dioxide", "O=C=O", "124-38-9",
             44.0098, 304.1282, 7377300.0, 10624.9, 0.22394, 194.686, -393510.0, -394370.0, 213.677,
             1166.1, 76.2, alyLee(29.370, 34.540, 1428.0, 26.400, 588.0, 50.0, 5000.0)},
    Compound{"hydrogen sulfide", "H2S", "hydrogen sulfide", "S", "7783-06-4",
             34.08088, 373.1, 9000000.0, 10190.0, 0.1005, 212.85, -20630.0, -33440.0, 205.60,
             949.2, 83.0, alyLee(33.288, 26.086, 913.4, -17.979, 949.4, 100.0, 1500.0)},
    Compound{"methane", "CH4", "methane", "C", "74-82-8",
             16.0428, 190.564, 4599200.0, 10139.128, 0.01142, 111.667, -74520.0, -50490.0, 186.27,
             422.4, 72.3, alyLee(33.298, 79.933, 2086.9, 41.602, 991.96, 50.0, 1500.0)},
    Compound{"ethane", "C2H6", "ethane", "CC", "74-84-0",
             30.06904, 305.322, 4872200.0, 6856.887, 0.0995, 184.569, -83820.0, -31920.0, 229.12,
             544.0, 111.3, alyLee(40.326, 134.22, 1655.5, 73.223, 752.87, 200.0, 1500.0)},
    Compound{"propane", "C3H8", "propane", "CCC", "74-98-6",
             44.09562, 369.89, 4251200.0, 5000.0, 0.1521, 231.036, -104680.0, -24390.0, 270.20,
             580.9, 151.7, alyLee(51.920, 192.45, 1626.5, 116.80, 723.6, 200.0, 1500.0)},
    Compound{"isobutane", "C4H10", "2-methylpropane", "CC(C)C", "75-28-5",
             58.1222, 407.81, 3629000.0, 3879.756, 0.184, 261.401, -134990.0, -21440.0, 295.50,
             594.0, 190.8, alyLee(65.490, 247.76, 1587.0, 157.50, 706.99, 200.0, 1500.0)},
    Compound{"n-butane", "C4H10", "butane", "CCCC", "106-97-8",
             58.1222, 425.125, 3796000.0, 3922.769, 0.201, 272.66, -125790.0, -16700.0, 309.91,
             601.3, 190.7, alyLee(71.340, 243.00, 1630.0, 150.33, 730.42, 200.0, 1500.0)},
    Compound{"isopentane", "C5H12", "2-methylbutane", "CCC(C)C", "78-78-4",
             72.14878, 460.35, 3378000.0, 3271.0, 0.2274, 300.98, -153700.0, -14050.0, 343.74,
             614.4, 229.8, alyLee(74.600, 326.50, 1545.0, 192.30, 666.7, 200.0, 1500.0)},
    Compound{"n-pentane", "C5H12", "pentane", "CCCCC", "109-66-0",
             72.14878, 469.7, 3370000.0, 3215.5776, 0.251, 309.21, -146760.0, -8813.0, 349.45,
             620.8, 231.0, alyLee(88.050, 301.10, 1650.2, 189.20, 747.6, 200.0, 1500.0)},
    Compound{"neopentane", "C5H12", "2,2-dimethylpropane", "CC(C)(C)C", "463-82-1",
             72.14878, 433.74, 3196000.0, 3270.0, 0.1961, 282.65, -166100.0, -15240.0, 306.39,
             602.8, 226.1,
             planckEinstein(4.0, {{{14.422, 710.0}, {12.868, 1725.0}, {17.247, 3280.0}, {12.663, 7787.0}}},
                            200.0, 1500.0)},
    Compound{"n-hexane", "C6H14", "hexane", "CCCCCC", "110-54-3",
             86.17536, 507.82, 3034000.0, 2705.8779, 0.299, 341.86, -166940.0, -66.0, 388.74,
             655.2, 270.5, alyLee(104.40, 352.30, 1694.6, 236.90, 761.6, 200.0, 1500.0)},
    Compound{"n-heptane", "C7H16", "heptane", "CCCCCCC", "142-82-5",
             100.20194, 540.13, 2736000.0, 2315.3235, 0.349, 371.53, -187650.0, 8165.0, 427.98,
             679.5, 309.6, alyLee(120.15, 400.10, 1676.6, 274.00, 756.4, 200.0, 1500.0)},
    Compound{"n-octane", "C8H18", "octane", "CCCCCCCC", "111-65-9",
             114.22852, 569.32, 2497000.0, 2056.4, 0.395, 398.77, -208750.0, 16000.0, 467.23,
             698.6, 349.5, alyLee(135.54, 443.10, 1635.6, 305.40, 746.4, 200.0, 1500.0)},
    Compound{"n-nonane", "C9H20", "nonane", "CCCCCCCCC", "111-84-2",
             128.2551, 594.55, 2281000.0, 1810.0, 0.4433, 423.91, -228740.0, 24980.0, 506.40,
             714.0, 388.7, alyLee(151.75, 491.50, 1644.8, 347.00, 749.6, 200.0, 1500.0)},
    Compound{"n-decane", "C10H22", "decane", "CCCCCCCCCC", "124-18-5",
             142.28168, 617.7, 2103000.0, 1640.0, 0.4884, 447.27, -249460.0, 33180.0, 545.70,
             726.4, 426.3, alyLee(167.20, 535.30, 1614.1, 378.20, 742.0, 200.0, 1500.0)},
    Compound{"ethylene", "C2H4", "ethene", "C=C", "74-85-1",
             28.05376, 282.35, 5041800.0, 7636.8, 0.0866, 169.379, 52510.0, 68440.0, 219.20,
             567.7, 99.7, alyLee(33.380, 94.790, 1596.0, 55.100, 740.8, 60.0, 1500.0)},
    Compound{"propylene", "C3H6", "propene", "CC=C", "115-07-1",
             42.07974, 364.211, 4555000.0, 5457.0, 0.146, 225.531, 20230.0, 62640.0, 267.00,
             609.1, 140.3, alyLee(43.852, 150.60, 1398.8, 74.754, 616.46, 130.0, 1500.0)},
    Compound{"benzene", "C6H6", "benzene", "c1ccccc1", "71-43-2",
             78.11184, 562.02, 4907277.0, 3901.0, 0.211, 353.22, 82880.0, 129600.0, 269.30,
             873.7, 206.4, alyLee(44.767, 230.85, 1479.2, 168.36, 677.66, 200.0, 1500.0)},
    Compound{"toluene", "C7H8", "toluene", "Cc1ccccc1", "108-88-3",
             92.13842, 591.75, 4126300.0, 3169.0, 0.2657, 383.75, 50170.0, 122200.0, 320.99,
             862.2, 243.5, alyLee(58.140, 286.30, 1440.6, 189.80, 650.43, 200.0, 1500.0)},
    Compound{"water", "H2O", "water", "O", "7732-18-5",
             18.015268, 647.096, 22064000.0, 17873.727, 0.3443, 373.1243, -241814.0, -228590.0, 188.724,
             997.05, 52.4, alyLee(33.363, 26.790, 2610.5, 8.8960, 1169.0, 100.0, 2273.15)},
    Compound{"hydrogen", "H2", "hydrogen", "[H][H]", "1333-74-0",
             2.01588, 33.145, 1296400.0, 15508.0, -0.219, 20.369, 0.0, 0.0, 130.571,
             70.85, 34.1, alyLee(27.617, 9.5600, 2466.0, 3.7600, 567.6, 250.0, 1500.0)},
    Compound{"oxygen", "O2", "oxygen", "O=O", "7782-44-7",
             31.9988, 154.581, 5043000.0, 13630.0, 0.0222, 90.1878, 0.0, 0.0, 205.043,
             1141.2, 53.6, alyLee(29.103, 10.040, 2526.5, 9.3560, 1153.8, 50.0, 1500.0)},
    Compound{"carbon monoxide", "CO", "carbon monoxide", "[C-]#[O+]", "630-08-0",
             28.0101, 132.86, 3494000.0, 10850.0, 0.0497, 81.64, -110530.0, -137150.0, 197.556,
             793.2, 62.4, alyLee(29.108, 8.7730, 3085.1, 8.4553, 1538.2, 60.0, 1500.0)},
    Compound{"argon", "Ar", "argon", "[Ar]", "7440-37-1",
             39.948, 150.687, 4863000.0, 13407.43, -0.00219, 87.302, 0.0, 0.0, 154.737,
             1395.4, 54.1, alyLee(20.786, 0.0, 1.0, 0.0, 1.0, 100.0, 1500.0)},
};
// clang-format on

constexpr char lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

} // namespace

double Compound::criticalCompressibility() const { return Pc / (criticalDensity * molarGasConstant * Tc); }

double Compound::liquidReferenceTemperature() const {
    // Carbon dioxide has no liquid at its sublimation point.
    return cas == "124-38-9" ? 220.0 : std::min(normalBoilingPoint, referenceTemperature);
}

std::span<const Compound> compounds() noexcept { return table; }

const Compound* findCompound(std::string_view name) noexcept {
    const auto found = std::ranges::find_if(table, [name](const Compound& compound) {
        return std::ranges::equal(compound.name, name, {}, lower, lower);
    });
    return found == table.end() ? nullptr : &*found;
}

} // namespace peng_robinson::eos
