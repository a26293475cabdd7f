// ICapeUtilities::Edit: a person chooses compounds and parameters in a window.
#include "packages/peng_robinson/com/property_package.h"
#include "packages/peng_robinson/dialog/edit_dialog.h"

namespace peng_robinson {
namespace {

/// Sets a flag for as long as it lives.
class Raised {
  public:
    explicit Raised(bool& flag) : flag_{flag} { flag = true; }
    Raised(const Raised&) = delete;
    Raised& operator=(const Raised&) = delete;
    ~Raised() { flag_ = false; }

  private:
    bool& flag_;
};

} // namespace

// OK is S_OK even when nothing was changed, and Cancel is S_FALSE: clients tell the two answers apart by it.
HRESULT STDMETHODCALLTYPE PropertyPackage::Edit() noexcept {
    // While the window is open the client may call back, and may let the package go.
    const auto self = com::com_ptr<ICapeUtilities>::share(this);
    bool isAccepted = false;
    const HRESULT result = call(L"ICapeUtilities", L"Edit", [&] {
        if (isEdited_) {
            throw CapeError{ECapeBadInvOrderHR, L"The package is being edited already"};
        }
        const Raised whileOpen{isEdited_};
        EditModel model{*configuration_};
        const DialogAnswer answer = showEditDialog(model, L"Edit " + name());
        if (answer == DialogAnswer::unavailable) {
            throw CapeError{ECapeFailedInitialisationHR,
                            L"The package cannot be edited: there is no screen to show its window"};
        }
        isAccepted = answer == DialogAnswer::accepted;
        if (isAccepted && model.isChanged()) {
            configure(model.result());
            isDirty_ = true;
        }
    });
    return SUCCEEDED(result) && !isAccepted ? S_FALSE : result;
}

} // namespace peng_robinson
