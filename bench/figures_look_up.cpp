// Finding a package, a property, a compound and a phase by name, with many packages in the workbook.
#include "bench/figures.h"
#include "bench/instant_package.h"
#include "bench/quick_excel.h"

#include <vector>

namespace bench {

namespace {

constexpr double goal = 1.2;
constexpr std::size_t compounds = 10;

std::wstring packageName(std::size_t number) { return L"Package number " + std::to_wstring(number); }

bool holds(const VARIANT& list, std::wstring_view text) {
    return list.vt == (VT_ARRAY | VT_BSTR) &&
           com::viewOf(*static_cast<const BSTR*>(list.parray->pvData)) == text;
}

// Asks for packages that were entered first, last and between, so that no search along a list would do.
class LookUp {
  public:
    LookUp(const Server& server, IDispatch* application, IUnknown* workbook, std::size_t packages)
        : addIn_{server, application} {
        for (std::size_t i = 0; i < packages; ++i) {
            addIn_.attach(workbook, packageName(i), instantPackageClass);
        }
        for (std::size_t i = 0; i < asked; ++i) {
            names_.push_back(com::makeBstr(packageName(i * (packages - 1) / (asked - 1))));
        }
    }

    void run() {
        const BSTR package = names_[next_++ % asked].get();
        com::unique_bstr unit;
        addIn_->CapeOpenUnitOfMeasure(property_.get(), leftOut_, unit.put());
        com::variant compound;
        addIn_->CapeOpenCompounds(package, leftOut_, compound_, &compound);
        com::variant phase;
        addIn_->CapeOpenPhases(package, leftOut_, phase_, &phase);
        const bool found =
            com::viewOf(unit) == L"J/mol" && holds(compound, L"Compound 7") && holds(phase, L"Liquid");
        require(found ? S_OK : E_FAIL, "A name is not found");
    }

  private:
    static constexpr std::size_t asked = 8;

    AddIn addIn_;
    std::vector<com::unique_bstr> names_;
    std::size_t next_ = 0;
    com::unique_bstr property_ = com::makeBstr(L"enthalpy");
    com::variant compound_{L"Compound 7"};
    com::variant phase_{L"Liquid"};
    com::variant leftOut_ = com::variant::missing();
};

} // namespace

void lookUp(Report& report, const Server& server) {
    for (const std::size_t packages : {100U, 10000U}) {
        const std::string figure = "look-up with " + std::to_string(packages) + " packages";
        if (!report.wants(figure)) {
            continue;
        }
        const auto workbook = com::make<QuickWorkbook>();
        const auto application = com::make<QuickApplication>(workbook);
        const InstantClass instant{compounds};
        LookUp many{server, application->dispatch(), workbook->dispatch(), packages};
        LookUp one{server, application->dispatch(), workbook->dispatch(), 1};
        report.time(figure, "with one package", compare({[&] { many.run(); }}, {[&] { one.run(); }}), goal);
    }
}

} // namespace bench
