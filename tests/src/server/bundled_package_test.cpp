// Derivatives in cells, calculated by the package that comes with the add-in: on a mass basis, and as
// matrices.
#include "packages/peng_robinson/com/identity.h"
#include "packages/peng_robinson/eos/compound.h"
#include "tests/packages/peng_robinson/differences.h"
#include "tests/src/server/worksheet.h"

#include "com/safe_array.h"

#include <cmath>
#include <map>
#include <stdexcept>

using namespace tests;
using peng_robinson::test::slope;

namespace {

using Reals = std::vector<double>;

// PengRobinson.dll beside the test program, which COM finds in this process as long as this lives.
class BundledPackage {
  public:
    BundledPackage() {
        const std::wstring& addIn = AddIn::instance().path();
        const std::wstring path = addIn.substr(0, addIn.rfind(L'\\') + 1) + L"PengRobinson.dll";
        const HMODULE module = LoadLibraryW(path.c_str()); // kept to the end of the process
        com::com_ptr<IClassFactory> factory;
        const auto entry = module == nullptr ? nullptr : GetProcAddress(module, "DllGetClassObject");
        if (entry == nullptr ||
            FAILED(reinterpret_cast<HRESULT(STDAPICALLTYPE*)(REFCLSID, REFIID, void**)>(
                reinterpret_cast<void*>(entry))(peng_robinson::packageClsid, IID_IClassFactory,
                                                factory.putVoid())) ||
            FAILED(CoRegisterClassObject(peng_robinson::packageClsid, factory.get(), CLSCTX_INPROC_SERVER,
                                         REGCLS_MULTI_SEPARATE, &cookie_))) {
            throw std::runtime_error{"PengRobinson.dll beside the test program cannot be used"};
        }
    }
    BundledPackage(const BundledPackage&) = delete;
    BundledPackage& operator=(const BundledPackage&) = delete;
    ~BundledPackage() { CoRevokeClassObject(cookie_); }

  private:
    DWORD cookie_ = 0;
};

com::variant rowOf(const Reals& values) {
    std::vector<com::variant> cells;
    cells.reserve(values.size());
    for (const double value : values) {
        cells.emplace_back(value);
    }
    return range(com::make<sheet::excel::Range>(1U, values.size(), std::move(cells)));
}

constexpr const wchar_t* scalars[] = {L"compressibility", L"compressibilityFactor",
                                      L"density",         L"enthalpy",
                                      L"enthalpyF",       L"enthalpyNF",
                                      L"entropy",         L"entropyF",
                                      L"entropyNF",       L"gibbsEnergy",
                                      L"heatCapacityCp",  L"heatCapacityCv",
                                      L"helmholtzEnergy", L"internalEnergy",
                                      L"speedOfSound",    L"jouleThomsonCoefficient",
                                      L"viscosity",       L"thermalConductivity",
                                      L"molecularWeight", L"volume"};

class BundledPackageInCells : public Worksheet {
  protected:
    void SetUp() override {
        Worksheet::SetUp();
        const com::unique_bstr nobody = com::makeBstr(L""), name = com::makeBstr(L"Gas");
        ASSERT_EQ(addIn->CreateWorkbookPP(book(), nobody.get(), peng_robinson::packageClsid,
                                          StandAlonePackage11, nullptr, name.get()),
                  S_OK);
        for (const auto& compound : peng_robinson::eos::compounds()) {
            weights.push_back(compound.molecularWeight / 1000.0);
            const auto found = amounts.find(std::string{compound.name});
            x.push_back(found == amounts.end() ? 0.0 : found->second);
            if (found != amounts.end()) {
                present.push_back(x.size() - 1);
            }
        }
        for (const std::size_t i : present) {
            M += x[i] * weights[i];
        }
    }

    struct Question {
        const wchar_t* basis = L"mole";
        double T = 300.0, P = 3e6;
    };
    Reals property(const std::wstring& name, Question q, const Reals& composition) {
        return numbersOf(call(L"CapeOpenMixtureProperty",
                              listOf(text(L"Gas"), text(name.c_str()), text(L"Vapor"), number(q.T),
                                     number(q.P), rowOf(composition), text(L"mole"), text(q.basis))),
                         name);
    }
    double scalar(const std::wstring& name, Question q) {
        const Reals values = property(name, q, x);
        return values.size() == 1 ? values.front() : std::nan("");
    }

    template <typename... Arguments>
    static std::vector<com::variant> listOf(Arguments&&... arguments) {
        std::vector<com::variant> list;
        (list.push_back(std::forward<Arguments>(arguments)), ...);
        return list;
    }
    // The numbers in cells of whatever shape, row after row.
    static Reals numbersOf(const com::variant& value, const std::wstring& name) {
        if (value.vt == VT_R8) {
            return {value.dblVal};
        }
        if ((value.vt & VT_ARRAY) == 0) {
            ADD_FAILURE() << scripted::narrow(name) << " shows " << shown(value);
            return {};
        }
        SAFEARRAY* const array = value.parray;
        const UINT dimensions = SafeArrayGetDim(array);
        const std::size_t rows = dimensions == 1 ? 1 : array->rgsabound[dimensions - 1].cElements;
        Reals elements;
        if ((value.vt & VT_TYPEMASK) == VT_R8) {
            const com::array_lock<double> lock{array};
            elements.assign(lock.elements().begin(), lock.elements().end());
        } else {
            const com::array_lock<VARIANT> lock{array};
            for (const VARIANT& element : lock.elements()) {
                elements.push_back(element.vt == VT_R8 ? element.dblVal : std::nan(""));
            }
        }
        const std::size_t columns = elements.size() / rows;
        Reals byRows(elements.size());
        for (std::size_t row = 0; row < rows; ++row) {
            for (std::size_t column = 0; column < columns; ++column) {
                byRows[row * columns + column] = elements[row + column * rows];
            }
        }
        return byRows;
    }

    std::map<std::string, double> amounts{{"nitrogen", 0.1}, {"methane", 0.8}, {"propane", 0.1}};
    Reals x;                          ///< of all compounds of the package
    Reals weights;                    ///< kg/mol
    std::vector<std::size_t> present; ///< compounds with an amount
    double M = 0.0;                   ///< kg/mol
    BundledPackage bundled;
};

// Carbon dioxide has no boiling point at one atmosphere. A 0 in its cell would look like a heat.
TEST_F(BundledPackageInCells, ConstantThatOneCompoundLacksShowsAsNoNumberAndTheOthersAreConverted) {
    const wchar_t* const name = L"heatOfVaporizationAtNormalBoilingPoint";
    const auto constants = [&](const wchar_t* basis) {
        return call(L"CapeOpenCompoundConstant", listOf(text(L"Gas"), text(name), text(basis)));
    };
    const com::variant perMole = constants(L"mole"), perMass = constants(L"mass");
    ASSERT_EQ(perMole.vt, VT_ARRAY | VT_VARIANT) << shown(perMole);
    ASSERT_EQ(perMass.vt, VT_ARRAY | VT_VARIANT) << shown(perMass);
    const com::array_lock<VARIANT> moles{perMole.parray}, masses{perMass.parray};
    ASSERT_EQ(moles.elements().size(), weights.size());
    ASSERT_EQ(masses.elements().size(), weights.size());
    for (std::size_t i = 0; i < weights.size(); ++i) {
        const VARIANT &mole = moles.elements()[i], &mass = masses.elements()[i];
        ASSERT_EQ(mole.vt, VT_R8) << i;
        if (peng_robinson::eos::compounds()[i].name == "carbon dioxide") {
            EXPECT_TRUE(std::isnan(mole.dblVal));
            EXPECT_EQ(shown(mass), "\"\"");
        } else {
            EXPECT_GT(mole.dblVal, 0.0) << i;
            ASSERT_EQ(mass.vt, VT_R8) << i;
            EXPECT_NEAR(mass.dblVal, mole.dblVal / weights[i], 1e-12 * mass.dblVal) << i;
        }
    }
}

TEST_F(BundledPackageInCells, TemperatureDerivativesAreThoseOfTheValueOnEitherBasis) {
    for (const wchar_t* const basis : {L"mole", L"mass"}) {
        for (const std::wstring name : scalars) {
            const double derivative = scalar(name + L".Dtemperature", {basis});
            const double expected = slope([&](double T) { return scalar(name, {basis, T}); }, 300.0);
            EXPECT_NEAR(derivative, expected,
                        1e-7 * std::abs(expected) + 1e-9 * std::abs(scalar(name, {basis})) / 300.0)
                << scripted::narrow(name);
        }
    }
}

TEST_F(BundledPackageInCells, PressureDerivativesAreThoseOfTheValueOnEitherBasis) {
    for (const wchar_t* const basis : {L"mole", L"mass"}) {
        for (const std::wstring name : scalars) {
            const double derivative = scalar(name + L".Dpressure", {basis});
            const double expected = slope([&](double P) { return scalar(name, {basis, 300.0, P}); }, 3e6);
            EXPECT_NEAR(derivative, expected,
                        1e-7 * std::abs(expected) + 1e-9 * std::abs(scalar(name, {basis})) / 3e6)
                << scripted::narrow(name);
        }
    }
}

TEST_F(BundledPackageInCells, ValuesPerMassAreThosePerMoleOverTheMolecularWeight) {
    EXPECT_NEAR(scalar(L"enthalpy", {L"mass"}), scalar(L"enthalpy", {}) / M, 1e-9);
    EXPECT_NEAR(scalar(L"density", {L"mass"}), scalar(L"density", {}) * M, 1e-12);
    EXPECT_EQ(scalar(L"speedOfSound", {L"mass"}), scalar(L"speedOfSound", {}));
}

// Partial molar properties stay per mole on a mass basis.
TEST_F(BundledPackageInCells, MoleNumberDerivativesOfMolarPropertiesStayPerMoleOnAMassBasis) {
    const Reals perMole = property(L"enthalpy.Dmoles", {L"mole"}, x);
    EXPECT_EQ(property(L"enthalpy.Dmoles", {L"mass"}, x), perMole);
    double sum = 0.0;
    for (const std::size_t i : present) {
        sum += x[i] * perMole[i];
    }
    EXPECT_NEAR(sum, scalar(L"enthalpy", {}), 1e-9 * std::abs(sum));
}

// On a mass basis a derivative by mole fraction is (d - h M_i / M^2) / M with h per mass: one division by M
// more than d(h/M)/dx_i has. Workbooks in use rely on these numbers.
TEST_F(BundledPackageInCells, MoleFractionDerivativesOfMolarPropertiesOnAMassBasisDivideTwice) {
    const Reals d = property(L"enthalpy.DmolFraction", {L"mole"}, x);
    const double perMass = scalar(L"enthalpy", {L"mass"});
    const Reals shownValues = property(L"enthalpy.DmolFraction", {L"mass"}, x);
    ASSERT_EQ(shownValues.size(), x.size());
    for (const std::size_t i : present) {
        const double kept = (d[i] - perMass * weights[i] / M) / M,
                     derivative = (d[i] - perMass * weights[i]) / M;
        EXPECT_NEAR(shownValues[i], kept, 1e-12 * std::abs(kept));
        EXPECT_GT(std::abs(kept - derivative), 1e-3 * std::abs(kept));
    }
}

// Of the density it is M d + M_i rho with rho per mass, that is, M_i times M too much.
TEST_F(BundledPackageInCells, MoleFractionDerivativesOfTheDensityOnAMassBasisMultiplyTwice) {
    const Reals d = property(L"density.DmolFraction", {L"mole"}, x);
    const double perMass = scalar(L"density", {L"mass"}), perMole = scalar(L"density", {L"mole"});
    const Reals shownValues = property(L"density.DmolFraction", {L"mass"}, x);
    ASSERT_EQ(shownValues.size(), x.size());
    for (const std::size_t i : present) {
        const double kept = M * d[i] + weights[i] * perMass, derivative = M * d[i] + weights[i] * perMole;
        EXPECT_NEAR(shownValues[i], kept, 1e-12 * std::abs(kept));
        EXPECT_GT(std::abs(kept - derivative), 1e-3 * std::abs(derivative));
    }
}

TEST_F(BundledPackageInCells, MoleNumberDerivativesOfTheDensityOnAMassBasisMultiplyTwice) {
    const Reals d = property(L"density.Dmoles", {L"mole"}, x);
    double s = 0.0;
    for (const std::size_t i : present) {
        s += x[i] * d[i];
    }
    const double perMass = scalar(L"density", {L"mass"}), perMole = scalar(L"density", {L"mole"});
    const Reals shownValues = property(L"density.Dmoles", {L"mass"}, x);
    ASSERT_EQ(shownValues.size(), x.size());
    for (const std::size_t i : present) {
        const double kept = (d[i] - s) * M + (weights[i] - M) * perMass,
                     derivative = (d[i] - s) * M + (weights[i] - M) * perMole;
        EXPECT_NEAR(shownValues[i], kept, 1e-11 * std::abs(kept));
        EXPECT_GT(std::abs(kept - derivative), 1e-3 * std::abs(derivative));
    }
}

// The derivative of the density on a mole basis, by contrast, is the derivative.
TEST_F(BundledPackageInCells, MoleNumberDerivativesOnAMoleBasisMatchDifferences) {
    const Reals d = property(L"density.Dmoles", {L"mole"}, x);
    for (const std::size_t i : present) {
        const auto with = [&](double amount) {
            Reals changed = x;
            changed[i] = amount;
            return property(L"density", {L"mole"}, changed)
                .front(); // brought to a sum of one by the function
        };
        const double expected = slope(with, x[i]);
        EXPECT_NEAR(d[i], expected, 1e-7 * std::abs(expected));
    }
}

TEST_F(BundledPackageInCells, MatricesHaveARowForTheCompoundAndAColumnForTheOneDifferentiatedBy) {
    const std::size_t n = x.size();
    const auto fugacities = [&](const wchar_t* name, int orientation) {
        return numbersOf(call(L"CapeOpenMixtureProperty",
                              listOf(text(L"Gas"), text(name), text(L"Vapor"), number(300.0), number(3e6),
                                     rowOf(x), text(L"mole"), omitted(), number(orientation))),
                         name);
    };
    const Reals matrix = fugacities(L"fugacity.Dmoles", 3);
    ASSERT_EQ(matrix.size(), n * n);
    for (const std::size_t i : present) {
        for (const std::size_t j : present) {
            const auto with = [&](double amount) {
                Reals changed = x;
                changed[j] = amount;
                return property(L"fugacity", {}, changed)[i];
            };
            const double expected = slope(with, x[j]);
            EXPECT_NEAR(matrix[i * n + j], expected, 1e-7 * std::abs(expected)) << i << ' ' << j;
        }
    }
}

TEST_F(BundledPackageInCells, KValueMatricesHaveTheColumnsOfTheFirstPhaseBeforeThoseOfTheSecond) {
    const std::size_t n = x.size();
    Reals liquid(n, 0.0);
    for (const std::size_t i : present) {
        liquid[i] = 1.0 / 3.0;
    }
    const auto kValues = [&](const wchar_t* name, const Reals& first, const Reals& second, int orientation) {
        return numbersOf(
            call(L"CapeOpenTwoPhaseProperty",
                 listOf(text(L"Gas"), text(name), text(L"Vapor"), text(L"Liquid"), number(200.0), number(3e6),
                        rowOf(first), rowOf(second), omitted(), number(orientation))),
            name);
    };
    const Reals matrix = kValues(L"kvalue.Dmoles", x, liquid, 3);
    ASSERT_EQ(matrix.size(), 2 * n * n);
    for (const std::size_t i : present) {
        for (const std::size_t j : present) {
            const auto with = [&](const Reals& original, double amount) {
                Reals changed = original;
                changed[j] = amount;
                return changed;
            };
            const double byFirst =
                slope([&](double a) { return kValues(L"kvalue", with(x, a), liquid, 1)[i]; }, x[j]);
            const double bySecond =
                slope([&](double a) { return kValues(L"kvalue", x, with(liquid, a), 1)[i]; }, liquid[j]);
            EXPECT_NEAR(matrix[i * 2 * n + j], byFirst, 1e-7 * std::abs(byFirst)) << i << ' ' << j;
            EXPECT_NEAR(matrix[i * 2 * n + n + j], bySecond, 1e-7 * std::abs(bySecond)) << i << ' ' << j;
        }
    }
}

} // namespace
