#include "sheet/cli/options.h"

#include <algorithm>

namespace sheet::cli {

const std::string_view helpText =
    R"(quorvane-sheet calculates worksheets that call Quorvane's functions, without Excel.

usage:
  quorvane-sheet recalc FILE.csv [--package NAME=PROGID]... [--array RANGE]... [--out FILE.csv]
  quorvane-sheet list
  quorvane-sheet --help | --version

recalc
  Calculates every formula of a worksheet (CSV in UTF-8; a cell that begins with = is a formula) and prints it.
  --package NAME=PROGID          attaches the CAPE-OPEN 1.1 property package PROGID under NAME
  --package NAME=PROGID!PACKAGE  attaches PACKAGE of the property package manager PROGID under NAME
  --array B2:B9                  enters the formula in the first cell over the whole range, as Ctrl+Shift+Enter does
  --out FILE.csv                 also writes the calculated values

  A formula is one call, =CapeOpenCompounds("Gas","vertical"), with texts, numbers, TRUE, FALSE, references (A1, $A$1,
  A1:B7) and left-out arguments; or one reference, =A1. Its result spills over the empty cells right of it and below.

list
  Lists the CAPE-OPEN 1.1 property packages and package managers that are installed.

exit codes
  0  everything was calculated
  1  a cell shows a failure; all of them are listed on standard error
  2  the command line, the worksheet or a package cannot be used
)";

namespace {

// All of them are filled with values: as many as a whole column has.
constexpr std::size_t maximumArrayCells = formula::maximumRows;

[[noreturn]] void fail(const std::string& message) {
    throw UsageError{message + "; see quorvane-sheet --help"};
}

PackageOption readPackage(const std::string& text) {
    const std::size_t equals = text.find('=');
    if (equals == 0 || equals == std::string::npos || equals + 1 == text.size()) {
        fail("--package wants NAME=PROGID, not \"" + text + "\"");
    }
    PackageOption package{text.substr(0, equals), text.substr(equals + 1), std::nullopt};
    if (const std::size_t mark = package.progId.find('!'); mark != std::string::npos) {
        package.managed = package.progId.substr(mark + 1);
        package.progId.resize(mark);
        if (package.progId.empty() || package.managed->empty()) {
            fail("--package wants NAME=MANAGERPROGID!PACKAGENAME, not \"" + text + "\"");
        }
    }
    return package;
}

class Reader {
  public:
    explicit Reader(std::span<const std::string> arguments) : left_{arguments} {}

    Command command() {
        if (left_.empty()) {
            fail("a command is missing");
        }
        const std::string word = take();
        if (word == "--help" || word == "-h" || word == "help") {
            return Help{};
        }
        if (word == "--version") {
            return Version{};
        }
        if (word == "list") {
            if (!left_.empty()) {
                fail("list takes no arguments, but \"" + left_.front() + "\" is given");
            }
            return List{};
        }
        if (word == "recalc") {
            return recalc();
        }
        fail("\"" + word + "\" is no command");
    }

  private:
    Command recalc() {
        Recalc result;
        bool onlyFiles = false;
        while (!left_.empty()) {
            const std::string word = take();
            if (onlyFiles || !word.starts_with('-')) {
                if (!result.file.empty()) {
                    fail("one worksheet at a time: \"" + result.file + "\" and \"" + word + "\" are given");
                }
                result.file = word;
            } else if (word == "--") {
                onlyFiles = true;
            } else if (word == "--help" || word == "-h") {
                return Help{};
            } else {
                readOption(word, result);
            }
        }
        if (result.file.empty()) {
            fail("recalc wants the name of a worksheet");
        }
        return result;
    }

    // "--option value" or "--option=value"
    void readOption(const std::string& word, Recalc& result) {
        const std::size_t equals = word.find('=');
        const std::string option = word.substr(0, equals);
        const auto value = [&] {
            if (equals != std::string::npos) {
                return word.substr(equals + 1);
            }
            if (left_.empty()) {
                fail(option + " wants a value");
            }
            return take();
        };
        if (option == "--package") {
            addPackage(readPackage(value()), result);
        } else if (option == "--array") {
            addArray(value(), result);
        } else if (option == "--out") {
            if (result.out) {
                fail("--out is given twice");
            }
            result.out = value();
            if (result.out->empty()) {
                fail("--out wants the name of a file");
            }
        } else {
            fail("the option " + option + " is unknown");
        }
    }

    static void addPackage(PackageOption package, Recalc& result) {
        if (std::ranges::find(result.packages, package.name, &PackageOption::name) != result.packages.end()) {
            fail("two packages are named " + package.name);
        }
        result.packages.push_back(std::move(package));
    }

    static void addArray(const std::string& text, Recalc& result) {
        const std::optional<formula::Block> block = formula::readBlock(text);
        if (!block) {
            fail("--array wants a range such as B2:B9, not \"" + text + "\"");
        }
        if (block->cellCount() > maximumArrayCells) {
            fail("--array takes at most 1,048,576 cells, and " + text + " has more");
        }
        result.arrays.push_back(*block);
    }

    std::string take() {
        const std::string& word = left_.front();
        left_ = left_.subspan(1);
        return word;
    }

    std::span<const std::string> left_;
};

} // namespace

Command readCommandLine(std::span<const std::string> arguments) { return Reader{arguments}.command(); }

} // namespace sheet::cli
