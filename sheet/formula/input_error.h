// What makes a worksheet unusable before anything is calculated, each problem with its place and with what to
// do.
#pragma once

#include "sheet/formula/address.h"

#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace sheet::formula {

struct Problem {
    std::optional<Address> cell; // none: the file as a whole
    std::string message;

    /// "sheet.csv: row 3, column 2 (B3): message"
    std::string inFile(const std::string& file) const;
};

class InputError : public std::runtime_error {
  public:
    explicit InputError(std::vector<Problem> problems)
        : std::runtime_error{problems.empty() ? "unusable worksheet" : problems.front().message},
          problems_{std::move(problems)} {}
    InputError(std::optional<Address> cell, std::string message)
        : InputError{{Problem{cell, std::move(message)}}} {}

    const std::vector<Problem>& problems() const { return problems_; }

  private:
    std::vector<Problem> problems_;
};

} // namespace sheet::formula
