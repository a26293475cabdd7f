// MixtureScene: an instant package attached to the active workbook under the name of the call, and the
// hand-written clients with packages of the same kind.
#pragma once

#include "bench/add_in.h"
#include "bench/careful_client.h"
#include "bench/direct_client.h"
#include "bench/instant_package.h"
#include "bench/mixture_call.h"
#include "bench/quick_excel.h"

#include <stdexcept>

namespace bench {

class MixtureScene {
  public:
    MixtureScene(const Server& server, const MixtureArguments& arguments);

    void addInByVtable() const;
    void addInByInvoke();
    void client();
    void carefulClient();
    void clientMatrix();

    /// One call each way; throws std::runtime_error when the results differ.
    void requireSameResults();
    void requireSameMatrices();

    com::com_ptr<QuickWorkbook> workbook = com::make<QuickWorkbook>();
    com::com_ptr<QuickApplication> application = com::make<QuickApplication>(workbook);
    InstantClass packages;
    AddIn addIn;
    MixtureCall call;
    DirectClient direct;
    CarefulClient careful;

  private:
    void askCareful(VARIANT* result);
};

/// Of the compounds of an instant package, g/mol.
std::vector<double> molecularWeights(std::size_t compounds);

} // namespace bench
