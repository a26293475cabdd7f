// The equation of state of the bundled package: absolute times, and what can be counted.
#include "bench/native/figures.h"
#include "packages/peng_robinson/catalogue/configuration.h"
#include "packages/peng_robinson/eos/tp_flash.h"

#include <stdexcept>

namespace bench {

namespace {

using namespace peng_robinson;

constexpr const char* names[] = {"nitrogen", "carbon dioxide", "hydrogen sulfide", "methane",    "ethane",
                                 "propane",  "isobutane",      "n-butane",         "isopentane", "n-pentane"};
constexpr double amounts[] = {0.012, 0.018, 0.001, 0.84, 0.066, 0.032, 0.007, 0.01, 0.004, 0.01};

// A natural gas of ten compounds that is in two phases at 230 K and 40 bar.
class Gas {
  public:
    Gas() : fluid_{configuration_.fluidOf(positions(configuration_))} {
        flash();
        if (!equilibrium_.vapor || !equilibrium_.liquid) {
            throw std::runtime_error("The gas is not in two phases");
        }
    }

    void flash() {
        flash_.calculate(temperature, pressure, composition_, eos::PhasesAllowed::both, equilibrium_);
    }
    /// From a temperature that is new to the equation.
    void fugacities() {
        isotherm_.assign(fluid_.model(), temperature);
        isotherm_.phase(pressure, composition_, eos::Root::vapor, {}, phase_);
    }

  private:
    static constexpr double temperature = 230.0; // K
    static constexpr double pressure = 4e6;      // Pa

    static std::vector<std::size_t> positions(const Configuration& configuration) {
        std::vector<std::size_t> found;
        for (const char* const name : names) {
            found.push_back(configuration.find(name).value());
        }
        return found;
    }

    Configuration configuration_ = Configuration::allOf(builtInCatalogue());
    eos::Fluid fluid_;
    std::vector<double> composition_{std::begin(amounts), std::end(amounts)};
    eos::TPFlash flash_{fluid_.model()};
    eos::Equilibrium equilibrium_;
    eos::Isotherm isotherm_ = fluid_.model().at(temperature);
    eos::PhaseState phase_;
};

template <typename Work>
double allocationsOf(Work work) {
    work();
    const long before = allocationCount();
    work();
    return static_cast<double>(allocationCount() - before);
}

template <typename Work>
void add(Report& report, const char* name, Work work, double goalInMicroseconds) {
    if (!report.wants(name)) {
        return;
    }
    const std::function<void()> run = work;
    report.judge(std::string{name} + ", us", compare({run}, {run}).subject / 1000.0, goalInMicroseconds);
    report.count(std::string{name} + ", allocations", allocationsOf(run), 0.0);
}

} // namespace

void thermodynamics(Report& report) {
    Gas gas;
    add(
        report, "T-P flash of 10 compounds", [&] { gas.flash(); }, 20.0);
    add(
        report, "fugacity coefficients of 10 compounds", [&] { gas.fugacities(); }, 1.0);
}

void repeat(std::string_view work, std::size_t times) {
    Gas gas;
    for (std::size_t i = 0; i < times; ++i) {
        if (work == "flash") {
            gas.flash();
        } else if (work == "fugacities") {
            gas.fugacities();
        } else {
            throw std::invalid_argument("flash or fugacities");
        }
    }
}

} // namespace bench
