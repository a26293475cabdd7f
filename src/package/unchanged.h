// Unchanged: from before a package works until its results are used, nobody may have edited it.
#pragma once

#include "src/foundation/exceptions.h"

#include <cstdint>

namespace quorvane {

/// The message of a call whose package was edited before it ended.
inline constexpr const wchar_t* changedMeanwhile = L"Property package was changed during the calculation";

class Unchanged {
  public:
    /// `generation` counts the edits of the package.
    explicit Unchanged(const std::uint32_t& generation) : now_{generation}, before_{generation} {}

    bool holds() const noexcept { return now_ == before_; }
    /// To be called after the package has worked, before anything that it gave is looked at.
    void require() const {
        if (!holds()) {
            throw CWStrException{changedMeanwhile};
        }
    }

  private:
    const std::uint32_t& now_;
    std::uint32_t before_;
};

} // namespace quorvane
