#include "src/workbook/message_box.h"

#include "com/platform.h"
#include "src/foundation/error_boundary.h"

#include <quorvane_idl.h>

namespace quorvane {

namespace {

constexpr std::size_t longest = 4000; // characters; no screen shows more

} // namespace

MessageBoxes::~MessageBoxes() {
    if (!last_.empty()) {
        const com::unique_bstr description{SysAllocStringLen(last_.data(), static_cast<UINT>(last_.size()))};
        installErrorInfo(description.get(), __uuidof(IQuorvaneVSTOServices));
    }
}

void MessageBoxes::show(const std::wstring& message) {
    last_ = message;
    MessageBoxW(nullptr, message.substr(0, longest).c_str(), L"Quorvane:", MB_OK | MB_ICONERROR);
}

} // namespace quorvane
