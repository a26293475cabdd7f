// What must hold of every answer of the add-in, whatever it was asked: a result that Excel can show, laid out
// as the orientation and the calling range say, or a documented text that says what was wrong.
#pragma once

#include "tests/random/call.h"
#include "tests/random/messages.h"

#include <optional>
#include <set>

namespace chance {

/// What the call left as the thread's error information, if that is the add-in's own.
std::optional<std::wstring> ownFailure();

class Judge {
  public:
    Judge();

    /// What is wrong with what a worksheet function answered; empty when nothing is. `failure` is the error
    /// information, if any. `callerIsColumn`: the formula stands in a range of several rows and one column.
    std::string complaint(const Call& call, bool callerIsColumn, HRESULT code, const VARIANT& result,
                          const std::optional<std::wstring>& failure) const;

    /// The same for a service, which tells its failure by its code.
    std::string complaint(HRESULT code, const std::optional<std::wstring>& failure) const;

  private:
    std::string badText(const std::wstring& text, bool isBundled) const;

    Messages messages_;
    std::set<std::wstring> systemTexts_; ///< which a failure without words of its own shows
};

} // namespace chance
