#include "src/workbook/message_box.h"

#include "com/platform.h"
#include "src/foundation/error_boundary.h"

#include <quorvane_idl.h>

namespace quorvane {

namespace {

constexpr std::size_t longest = 4000; // characters; no screen shows more

} // namespace

void showMessage(const std::wstring& message) {
    MessageBoxW(nullptr, message.substr(0, longest).c_str(), L"Quorvane:", MB_OK | MB_ICONERROR);
    const com::unique_bstr description{SysAllocStringLen(message.data(), static_cast<UINT>(message.size()))};
    installErrorInfo(description.get(), __uuidof(IQuorvaneVSTOServices));
}

} // namespace quorvane
