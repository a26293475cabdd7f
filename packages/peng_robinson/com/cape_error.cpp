#include "packages/peng_robinson/com/cape_error.h"

#include "com/com_ptr.h"
#include "com/owned.h"

#include <algorithm>
#include <iterator>

namespace peng_robinson {
namespace {

struct ErrorName {
    eCapeErrorInterfaceHR code;
    const wchar_t* name;
};

// The errors that this package raises.
constexpr ErrorName names[] = {
    {ECapeUnknownHR, L"ECapeUnknown"},
    {ECapeInvalidArgumentHR, L"ECapeInvalidArgument"},
    {ECapeOutOfBoundsHR, L"ECapeOutOfBounds"},
    {ECapeNoImplHR, L"ECapeNoImpl"},
    {ECapeLimitedImplHR, L"ECapeLimitedImpl"},
    {ECapeNoMemoryHR, L"ECapeNoMemory"},
    {ECapeFailedInitialisationHR, L"ECapeFailedInitialisation"},
    {ECapeSolvingErrorHR, L"ECapeSolvingError"},
    {ECapeBadInvOrderHR, L"ECapeBadInvOrder"},
    {ECapeThrmPropertyNotAvailableHR, L"ECapeThrmPropertyNotAvailable"},
};

} // namespace

const wchar_t* errorName(HRESULT code) noexcept {
    const auto* const found = std::ranges::find_if(
        names, [code](const ErrorName& entry) { return static_cast<HRESULT>(entry.code) == code; });
    return found == std::end(names) ? L"ECapeUnknown" : found->name;
}

std::wstring describeFailure(IUnknown* object) {
    const auto user = com::queryFor<ECapeUser>(object);
    com::unique_bstr text;
    if (!user || FAILED(user->get_description(text.put()))) {
        return {};
    }
    return std::wstring{com::viewOf(text)};
}

} // namespace peng_robinson
