// Busy: while it lives, a package does what it must not do a second time meanwhile.
#pragma once

#include "src/foundation/exceptions.h"

#include <utility>

namespace quorvane {

class Busy {
  public:
    /// Sets the mark. Throws CWStrException when it is set already.
    explicit Busy(bool& mark) : mark_{mark} {
        if (std::exchange(mark_, true)) {
            throw CWStrException{L"Property package is already calculating"};
        }
    }
    Busy(const Busy&) = delete;
    Busy& operator=(const Busy&) = delete;
    ~Busy() { mark_ = false; }

  private:
    bool& mark_;
};

} // namespace quorvane
