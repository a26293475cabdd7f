// A flash table with three properties, with the bundled package: the add-in beside the same calls made
// directly.
#include "bench/figures.h"
#include "bench/flash_client.h"
#include "bench/quick_excel.h"
#include "com/safe_array.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

namespace bench {

namespace {

constexpr double goal = 1.05;
constexpr double temperature = 230.0; // K
constexpr double pressure = 4e6;      // Pa
constexpr std::size_t components = 10;

// {BEB0F1DE-6F53-44A9-B382-F371CEA70202}, the manager of the bundled packages
constexpr CLSID managerClass = {0xBEB0F1DE, 0x6F53, 0x44A9, {0xB3, 0x82, 0xF3, 0x71, 0xCE, 0xA7, 0x02, 0x02}};

// Lets CoCreateInstance find the manager without the registry.
class BundledPackages {
  public:
    BundledPackages() {
        require(CoRegisterClassObject(managerClass, server_.factory(managerClass).get(), CLSCTX_INPROC_SERVER,
                                      REGCLS_MULTI_SEPARATE, &cookie_),
                "The bundled packages cannot be offered in this process");
    }
    BundledPackages(const BundledPackages&) = delete;
    BundledPackages& operator=(const BundledPackages&) = delete;
    ~BundledPackages() { CoRevokeClassObject(cookie_); }

    com::com_ptr<IDispatch> create(BSTR name) const {
        com::com_ptr<ICapeThermoPropertyPackageManager> manager;
        require(CoCreateInstance(managerClass, nullptr, CLSCTX_INPROC_SERVER,
                                 __uuidof(ICapeThermoPropertyPackageManager), manager.putVoid()),
                "The manager of the bundled packages cannot be made");
        com::com_ptr<IDispatch> package;
        require(manager->GetPropertyPackage(name, package.put()), "A bundled package cannot be made");
        return package;
    }

  private:
    Server server_{L"PengRobinson.dll"};
    DWORD cookie_ = 0;
};

class FlashScene {
  public:
    explicit FlashScene(const Server& server)
        : addIn_{server, application_->dispatch()}, client_{application_->dispatch(),
                                                            packages_.create(package_.get()),
                                                            {L"enthalpy", L"density", L"entropy"}} {
        require(addIn_->CreateWorkbookPP(workbook_->dispatch(), package_.get(), managerClass,
                                         PropertyPackageManager11, package_.get(), package_.get()),
                "A bundled package cannot be attached");
        // A natural gas: much methane, little of the heavy ones; the others are not in it.
        amounts_.assign(client_.compounds(), 0.0);
        constexpr double gas[components] = {1.2, 1.8, 0.1, 84.0, 6.6, 3.2, 0.7, 1.0, 0.4, 0.35};
        std::ranges::copy(gas, amounts_.begin());
        composition_ = com::realArray(amounts_);
    }

    void addIn(VARIANT* result) {
        addIn_->CapeOpenPhaseEquilibrium(package_.get(), composition_, names_[0].get(), temperature,
                                         names_[1].get(), pressure, leftOut_, options_, leftOut_, matrix_,
                                         leftOut_, result);
    }
    void client(VARIANT* result) { client_.flash(temperature, pressure, amounts_, result); }

    // The add-in's table has labels and a row of units as well; all numbers of the client's must be in it.
    void requireSameResults() {
        com::variant ours;
        addIn(&ours);
        com::variant expected;
        client(&expected);
        if (ours.vt != (VT_ARRAY | VT_VARIANT)) {
            throw std::runtime_error("The add-in's flash fails");
        }
        const com::array_lock<VARIANT> cells{ours.parray};
        const com::array_lock<double> numbers{expected.parray};
        for (const double number : numbers.elements()) {
            const bool found = std::ranges::any_of(cells.elements(), [number](const VARIANT& cell) {
                return cell.vt == VT_R8 && std::abs(cell.dblVal - number) <= 1e-9 * std::abs(number);
            });
            if (!found) {
                throw std::runtime_error(
                    "The flash of the add-in and that of the hand-written client differ");
            }
        }
    }

  private:
    com::com_ptr<QuickWorkbook> workbook_ = com::make<QuickWorkbook>();
    com::com_ptr<QuickApplication> application_ = com::make<QuickApplication>(workbook_);
    BundledPackages packages_;
    com::unique_bstr package_ = com::makeBstr(L"Natural gas");
    AddIn addIn_;
    FlashClient client_;
    std::vector<double> amounts_;
    com::variant composition_;
    com::unique_bstr names_[2] = {com::makeBstr(L"temperature"), com::makeBstr(L"pressure")};
    com::variant options_{L"enthalpy,density,entropy"};
    com::variant matrix_{L"matrix"}; // left out, it would be asked of a calling range, which there is none
    com::variant leftOut_ = com::variant::missing();
};

} // namespace

void equilibria(Report& report, const Server& server) {
    constexpr const char* figure = "T-P flash table, 3 properties, 10 compounds";
    if (!report.wants(figure)) {
        return;
    }
    FlashScene scene{server};
    scene.requireSameResults();
    const auto addIn = [&] {
        com::variant result;
        scene.addIn(&result);
    };
    const auto client = [&] {
        com::variant result;
        scene.client(&result);
    };
    report.time(figure, "the package called directly", compare({addIn}, {client}), goal);
}

} // namespace bench
