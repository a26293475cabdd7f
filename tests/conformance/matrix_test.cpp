// Where each value of a matrix result stands. The package's values tell their own place: 100 i + j for the
// property of compound i differentiated by compound j, 10 more for the second phase's composition.
#include "tests/conformance/functions.h"

using namespace tests;

namespace conformance {

namespace {

enum class Direction { row = 1, column = 2, matrix = 3 };
enum class Phases { both = 0, first = 1, second = 2 };

constexpr double secondPhase = 10.0;

double value(std::size_t i, std::size_t j, double phase) {
    return 100.0 * static_cast<double>(i + 1) + static_cast<double>(j + 1) + phase;
}

// In the package's order: the first compound's derivatives first.
std::vector<double> packageValues(std::size_t compounds, double phase) {
    std::vector<double> values;
    for (std::size_t i = 0; i < compounds; ++i) {
        for (std::size_t j = 0; j < compounds; ++j) {
            values.push_back(value(i, j, phase));
        }
    }
    return values;
}

struct Layout {
    std::size_t compounds;
    bool isTwoPhase;
    Phases phases; ///< both for a property of one phase
    Direction direction;
    bool transposed;
};

std::string nameOf(const Layout& layout) {
    constexpr const char* directions[] = {"", "Row", "Column", "Matrix"};
    constexpr const char* phases[] = {"Both", "Phase1", "Phase2"};
    std::string name = std::to_string(layout.compounds) + "Compounds";
    name += layout.isTwoPhase ? phases[static_cast<int>(layout.phases)] : "OnePhase";
    name += directions[static_cast<int>(layout.direction)];
    return layout.transposed ? name + "Transposed" : name;
}

void PrintTo(const Layout& layout, std::ostream* out) { *out << nameOf(layout); }

std::vector<Layout> allLayouts() {
    std::vector<Layout> layouts;
    for (const std::size_t compounds : {2U, 3U, 5U}) {
        for (const Direction direction : {Direction::row, Direction::column, Direction::matrix}) {
            for (const bool transposed : {false, true}) {
                layouts.push_back({compounds, false, Phases::both, direction, transposed});
                for (const Phases phases : {Phases::both, Phases::first, Phases::second}) {
                    layouts.push_back({compounds, true, phases, direction, transposed});
                }
            }
        }
    }
    return layouts;
}

class MatrixResult : public Worksheet, public ::testing::WithParamInterface<Layout> {
  protected:
    void SetUp() override {
        Worksheet::SetUp();
        std::vector<scripted::Compound> compounds;
        for (std::size_t i = 0; i < layout().compounds; ++i) {
            const std::wstring name(1, static_cast<wchar_t>(L'A' + i));
            compounds.push_back({name, name, name, 100.0, 10.0, name});
        }
        package->compounds(std::move(compounds));
        attach();
    }

    static const Layout& layout() { return GetParam(); }

    static com::variant composition() {
        std::vector<com::variant> values;
        for (std::size_t i = 0; i < layout().compounds; ++i) {
            values.push_back(number(1.0));
        }
        return range(com::make<sheet::excel::Range>(1U, layout().compounds, std::move(values)));
    }

    com::variant result(const wchar_t* derivative) {
        const bool two = layout().isTwoPhase;
        const std::wstring property = (two ? L"kvalue" : L"activity") + std::wstring{derivative};
        std::vector<double> values = packageValues(layout().compounds, 0.0);
        const Function& function = functionNamed(two ? "TwoPhaseProperty" : "MixtureProperty");
        std::vector<com::variant> arguments = workingArguments(function);
        argumentNamed("propertyName", function, arguments) = text(property.c_str());
        argumentNamed("orientation", function, arguments) = number(static_cast<double>(layout().direction));
        argumentNamed("transposed", function, arguments) = truth(layout().transposed);
        if (two) {
            const std::vector<double> others = packageValues(layout().compounds, secondPhase);
            values.insert(values.end(), others.begin(), others.end());
            argumentNamed("phase1Composition", function, arguments) = composition();
            argumentNamed("phase2Composition", function, arguments) = composition();
            argumentNamed("compositionDerivativePhase", function, arguments) =
                number(static_cast<double>(layout().phases));
        } else {
            argumentNamed("composition", function, arguments) = composition();
        }
        package->calculates(property, L"", std::move(values));
        return call(function.method, std::move(arguments));
    }

    // Row by row for a person who reads the sheet.
    static std::string expected() {
        const std::size_t n = layout().compounds;
        std::vector<double> phases;
        if (layout().phases != Phases::second) {
            phases.push_back(0.0);
        }
        if (layout().isTwoPhase && layout().phases != Phases::first) {
            phases.push_back(secondPhase);
        }
        if (layout().direction != Direction::matrix) {
            std::vector<double> all;
            for (const double phase : phases) {
                const std::vector<double> values = packageValues(n, phase);
                all.insert(all.end(), values.begin(), values.end());
            }
            return layout().direction == Direction::row ? "list: " + joined(all, " | ") : joined(all, " / ");
        }
        std::string rows;
        // A row for each compound of the property; transposed, one for each that is differentiated by.
        for (const double phase : layout().transposed ? phases : std::vector<double>{0.0}) {
            for (std::size_t row = 0; row < n; ++row) {
                std::vector<double> cells;
                if (layout().transposed) {
                    for (std::size_t i = 0; i < n; ++i) {
                        cells.push_back(value(i, row, phase));
                    }
                } else {
                    for (const double columnPhase : phases) {
                        for (std::size_t j = 0; j < n; ++j) {
                            cells.push_back(value(row, j, columnPhase));
                        }
                    }
                }
                rows.append(rows.empty() ? "" : " / ").append(joined(cells, " | "));
            }
        }
        return rows;
    }

  private:
    static std::string joined(const std::vector<double>& values, const char* separator) {
        std::string text;
        for (const double each : values) {
            text.append(text.empty() ? "" : separator).append(std::to_string(static_cast<int>(each)));
        }
        return text;
    }
};

TEST_P(MatrixResult, HasEachMoleFractionDerivativeInItsPlace) {
    EXPECT_EQ(shown(result(L".DmolFraction")), expected());
}

TEST_P(MatrixResult, HasEachMoleNumberDerivativeInItsPlace) {
    EXPECT_EQ(shown(result(L".Dmoles")), expected());
}

INSTANTIATE_TEST_SUITE_P(Of, MatrixResult, ::testing::ValuesIn(allLayouts()),
                         [](const auto& layout) { return nameOf(layout.param); });

} // namespace

} // namespace conformance
