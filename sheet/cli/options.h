// The command line, read. Texts are UTF-8.
#pragma once

#include "sheet/checking/check.h"
#include "sheet/formula/address.h"

#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace sheet::cli {

/// NAME=PROGID, or NAME=PROGID!PACKAGE for a package that a package manager makes.
struct PackageOption {
    std::string name;
    std::string progId;
    std::optional<std::string> managed;

    bool operator==(const PackageOption&) const = default;
};

/// The packages that are attached.
struct PackageOptions {
    std::optional<std::string> file; // saved packages
    std::vector<PackageOption> named;
};

struct Recalc {
    std::string file;
    PackageOptions packages;
    std::vector<formula::Block> arrays;
    std::optional<std::string> out;
    std::optional<std::string> svg;
    std::vector<formula::Block> chartX; // one for all of chartY, or one for each, of as many cells
    std::vector<formula::Block> chartY;
    std::optional<std::string> savePackages;
};
struct Info {
    PackageOptions packages;
};
struct Check {
    std::string name; // of an attached package
    PackageOptions packages;
    checking::Choices choices;
};
struct List {};
struct Help {};
struct Version {};

using Command = std::variant<Recalc, Info, Check, List, Help, Version>;

class UsageError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// `arguments` without the program's own name. Throws UsageError.
Command readCommandLine(std::span<const std::string> arguments);

extern const std::string_view helpText;

} // namespace sheet::cli
