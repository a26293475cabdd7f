#include "src/foundation/life_cycle.h"

#include "com/com_ptr.h"
#include "src/foundation/error_texts.h"

#include <capeopen_idl.h>

namespace quorvane {

bool isNotImplemented(HRESULT code) noexcept {
    return code == E_NOTIMPL || code == static_cast<HRESULT>(ECapeNoImplHR);
}

void initializeObject(IUnknown* object) {
    if (const auto utilities = com::queryFor<ICapeUtilities>(object)) {
        const HRESULT code = utilities->Initialize();
        if (!isNotImplemented(code)) {
            // "initialized" is what users have always been shown here; support pages quote it.
            requireSuccess(code, object, L"Failed to initialized property package: ");
        }
    }
}

void terminateObject(IUnknown* object) noexcept {
    if (const auto utilities = com::queryFor<ICapeUtilities>(object)) {
        static_cast<void>(utilities->Terminate());
    }
}

} // namespace quorvane
