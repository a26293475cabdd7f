// A workbook with a scripted package that keeps the material which it is given.
#pragma once

#include "tests/src/server/every_call.h"
#include "tests/src/server/worksheet.h"

namespace tests {

class Lifetime : public Worksheet {
  protected:
    void SetUp() override {
        Worksheet::SetUp();
        package->hook("SetMaterial", [this](scripted::Call& call) {
            kept = com::queryFor<IUnknown>(call.in[0].punkVal);
            return call.healthy();
        });
        attach();
    }
    void TearDown() override {
        kept.reset();
        Worksheet::TearDown();
    }

    /// From now on the package calls every method of its material in the middle of `method`.
    void callsBackDuring(const char* method) {
        package->hook(method, [this](scripted::Call& call) {
            said = callEverything(kept.get());
            return call.healthy();
        });
    }

    std::string enthalpy() {
        return show(L"CapeOpenMixtureProperty", text(L"P"), text(L"enthalpy"), text(L"Liquid"), number(300.0),
                    number(1e5), cells({1.0, 1.0, 2.0}));
    }
    HRESULT close() { return addIn->CloseWorkbook(book()); }
    HRESULT remove() { return addIn->DeleteWorkbookPP(book(), com::makeBstr(L"P").get()); }

    com::com_ptr<IUnknown> kept;
    std::vector<std::string> said; ///< by the material
};

} // namespace tests
