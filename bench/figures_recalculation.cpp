// A whole sheet of property cells, each with references to its own row, called as Excel calls them.
#include "bench/figures.h"
#include "bench/mixture_scene.h"

namespace bench {

namespace {

constexpr double goal = 1.1;
constexpr std::size_t compounds = 10;
constexpr std::size_t fewCells = 1000;
constexpr std::size_t columns = compounds + 2; // temperature, pressure, composition

class Sheet {
  public:
    Sheet(IDispatch* addIn, std::size_t rows) : addIn_{addIn}, numbers_(rows * columns), results_(rows) {
        for (std::size_t row = 0; row < rows; ++row) {
            double* const cells = &numbers_[row * columns];
            cells[0] = 300.0 + static_cast<double>(row % 100);
            cells[1] = 100000.0;
            for (std::size_t i = 0; i < compounds; ++i) {
                cells[2 + i] = static_cast<double>(1 + (row + i) % 9);
            }
        }
    }

    /// Calculates the next cell, from the top again after the last.
    void calculate() {
        const std::size_t row = next_++ % results_.size();
        const std::span<const double> cells{&numbers_[row * columns], columns};
        const auto range = [](std::span<const double> part) {
            return com::variant::object(com::make<QuickRange>(part)->dispatch());
        };
        com::variant lastFirst[] = {range(cells.subspan(2)),   range(cells.subspan(1, 1)),
                                    range(cells.first(1)),     com::variant{L"Vapor"},
                                    com::variant{L"enthalpy"}, com::variant{L"Instant package"}};
        DISPPARAMS parameters{lastFirst, nullptr, static_cast<UINT>(std::size(lastFirst)), 0};
        com::variant result;
        addIn_->Invoke(memberMixtureProperty, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &parameters,
                       &result, nullptr, nullptr);
        require(result.vt == VT_R8 ? S_OK : E_FAIL, "A cell has no number");
        results_[row] = result.dblVal;
    }

  private:
    IDispatch* addIn_;
    std::vector<double> numbers_;
    std::vector<double> results_;
    std::size_t next_ = 0;
};

} // namespace

void recalculation(Report& report, const Server& server) {
    for (const std::size_t cells : {10000U, 100000U}) {
        const std::string figure = "recalculation of " + std::to_string(cells) + " cells, per cell";
        if (!report.wants(figure)) {
            continue;
        }
        const MixtureScene scene{server, {.compounds = compounds}};
        Sheet many{scene.addIn.get(), cells};
        Sheet few{scene.addIn.get(), fewCells};
        // The whole large sheet in each round; the small one often enough for a steady time.
        report.time(figure, "of 1000 cells",
                    compare({[&] { many.calculate(); }, {}, cells},
                            {[&] { few.calculate(); }, {}, 10 * fewCells}, 15),
                    goal);
    }
}

} // namespace bench
