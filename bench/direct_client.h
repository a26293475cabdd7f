// DirectClient: the least that a conforming client can do for a worksheet's call. It knows its one package
// and the member identifiers of Excel, looks nothing up and checks little; what it does is what any client
// must: ask which workbook is active, read and normalise the composition, call the package, give the result.
#pragma once

#include "bench/client_material.h"
#include "com/com_ptr.h"
#include "com/owned.h"

#include <span>

namespace bench {

class DirectClient {
  public:
    /// `molecularWeights` in g/mol. The application is borrowed and must outlive the client.
    DirectClient(IDispatch* application, REFCLSID packageClass, std::span<const double> molecularWeights);

    /// A property of one phase as the package gives it: one value, or a list.
    void property(BSTR name, BSTR phase, double T, double P, const VARIANT& composition, VARIANT* result);
    /// The same for a value per pair of compounds, as a matrix.
    void matrix(BSTR name, BSTR phase, double T, double P, const VARIANT& composition, VARIANT* result);
    /// A derivative by mole fractions of a property per mole, per mass: that takes the property itself as
    /// well.
    void massDerivative(BSTR name, BSTR baseName, BSTR phase, double T, double P, const VARIANT& composition,
                        VARIANT* result);

  private:
    void findWorkbook();
    void load(double T, double P, const VARIANT& composition);
    void calculate(BSTR name, BSTR phase);

    IDispatch* application_;
    com::com_ptr<IUnknown> workbook_;
    com::com_ptr<ICapeThermoPropertyRoutine> routine_;
    com::com_ptr<ClientMaterial> material_;
    com::variant names_;
    std::vector<double> weights_; ///< kg/mol
    std::vector<double> derivatives_;
};

} // namespace bench
