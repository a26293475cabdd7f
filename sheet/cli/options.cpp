#include "sheet/cli/options.h"

#include "sheet/formula/value.h"

#include <algorithm>
#include <cmath>
#include <sstream>

namespace sheet::cli {

const std::string_view helpText =
    R"(quorvane-sheet calculates worksheets that call Quorvane's functions, without Excel.

usage:
  quorvane-sheet recalc FILE.csv [--packages FILE.csv] [--package NAME=PROGID]... [--array RANGE]...
                        [--out FILE.csv] [--save-packages FILE.csv] [--svg FILE.svg --x RANGE... --y RANGE...]
  quorvane-sheet info [--packages FILE.csv] [--package NAME=PROGID]...
  quorvane-sheet check NAME [--packages FILE.csv] [--package NAME=PROGID]... [--temperature K]...
                        [--pressure PA]... [--composition X,X,...]...
  quorvane-sheet list
  quorvane-sheet --help | --version

recalc
  Calculates every formula of a worksheet (CSV in UTF-8; a cell that begins with = is a formula) and prints it.
  --package NAME=PROGID          attaches the CAPE-OPEN 1.1 property package PROGID under NAME
  --package NAME=PROGID!PACKAGE  attaches PACKAGE of the property package manager PROGID under NAME
  --packages FILE.csv            attaches the packages that --save-packages wrote, before any --package
  --array B2:B9                  enters the formula in the first cell over the whole range, as Ctrl+Shift+Enter does
  --out FILE.csv                 also writes the calculated values
  --save-packages FILE.csv       writes the attached packages with all that they keep, such as edited parameters
  --svg FILE.svg                 draws a chart of --y A9:A20 over --x B9:B20; --y may be repeated, and --x as often as --y

  A formula is one call, =CapeOpenCompounds("Gas","vertical"), with texts, numbers, TRUE, FALSE, references (A1, $A$1,
  A1:B7) and left-out arguments; or one reference, =A1. Its result spills over the empty cells right of it and below.

info
  Describes each package that the options attach, in the order of the names.

check
  Asks the attached package NAME, or the one whose PROGID or PROGID!PACKAGE is given for NAME, whether its results fit
  each other: fugacities across phases, balances, derivatives, energies, K-values, and which listed properties fail.
  --temperature K                asks at this temperature, --pressure PA at this pressure, --composition X,X,... for
                                 these mole amounts; each may be repeated, and what is left out is chosen

list
  Lists the CAPE-OPEN 1.1 property packages and package managers that are installed.

exit codes
  0  everything was calculated; everything that was checked agrees
  1  a cell shows a failure, all of them are listed on standard error; a check found something that does not fit
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
        if (word == "info") {
            return info();
        }
        if (word == "check") {
            return check();
        }
        fail("\"" + word + "\" is no command");
    }

  private:
    // "--option value" or "--option=value"
    struct Option {
        std::string name;
        std::optional<std::string> attached;
    };

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
        requireChart(result);
        return result;
    }

    Command info() {
        Info result;
        while (!left_.empty()) {
            const Option option = takeOption(take());
            if (option.name == "--help" || option.name == "-h") {
                return Help{};
            }
            if (!option.name.starts_with('-')) {
                fail("info takes options only, but \"" + option.name + "\" is given");
            }
            if (!readPackageOption(option, result.packages)) {
                fail("info does not have the option " + option.name);
            }
        }
        return result;
    }

    Command check() {
        Check result;
        while (!left_.empty()) {
            const std::string word = take();
            if (word == "--help" || word == "-h") {
                return Help{};
            }
            if (!word.starts_with('-')) {
                if (!result.name.empty()) {
                    fail("one package at a time: \"" + result.name + "\" and \"" + word + "\" are given");
                }
                result.name = word;
                continue;
            }
            readCheckOption(takeOption(word), result);
        }
        if (result.name.empty()) {
            fail("check wants the name of a package");
        }
        if (std::ranges::find(result.packages.named, result.name, &PackageOption::name) ==
                result.packages.named.end() &&
            !result.packages.file) {
            result.packages.named.push_back(readPackage(result.name + '=' + result.name));
        }
        return result;
    }

    void readCheckOption(const Option& option, Check& result) {
        if (readPackageOption(option, result.packages)) {
            return;
        }
        if (option.name == "--temperature") {
            result.choices.temperatures.push_back(positiveNumber(option));
        } else if (option.name == "--pressure") {
            result.choices.pressures.push_back(positiveNumber(option));
        } else if (option.name == "--composition") {
            result.choices.compositions.push_back(amounts(option));
        } else {
            fail("check does not have the option " + option.name);
        }
    }

    double positiveNumber(const Option& option) {
        const std::string text = valueOf(option);
        const std::optional<double> number = formula::readNumber(text);
        if (!number || *number <= 0.0) {
            fail(option.name + " wants a positive number, not \"" + text + "\"");
        }
        return *number;
    }

    checking::Composition amounts(const Option& option) {
        const std::string text = valueOf(option);
        checking::Composition result;
        std::istringstream parts{text + ','};
        double sum = 0.0;
        for (std::string part; std::getline(parts, part, ',');) {
            const std::optional<double> number = formula::readNumber(part);
            if (!number || *number < 0.0) {
                fail(option.name + " wants amounts with commas between them, not \"" + text + "\"");
            }
            result.push_back(*number);
            sum += *number;
        }
        if (!(sum > 0.0 && std::isfinite(sum))) {
            fail(option.name + " wants an amount of something, not \"" + text + "\"");
        }
        return result;
    }

    static Option takeOption(const std::string& word) {
        const std::size_t equals = word.find('=');
        Option option{word.substr(0, equals), std::nullopt};
        if (equals != std::string::npos) {
            option.attached = word.substr(equals + 1);
        }
        return option;
    }
    std::string valueOf(const Option& option) {
        if (option.attached) {
            return *option.attached;
        }
        if (left_.empty()) {
            fail(option.name + " wants a value");
        }
        return take();
    }

    void readOption(const std::string& word, Recalc& result) {
        const Option option = takeOption(word);
        if (readPackageOption(option, result.packages)) {
            return;
        }
        if (option.name == "--array") {
            addArray(valueOf(option), result);
        } else if (option.name == "--out") {
            readFileName(option, result.out);
        } else if (option.name == "--save-packages") {
            readFileName(option, result.savePackages);
        } else if (option.name == "--svg") {
            readFileName(option, result.svg);
        } else if (option.name == "--x") {
            result.chartX.push_back(line(option));
        } else if (option.name == "--y") {
            result.chartY.push_back(line(option));
        } else {
            fail("the option " + option.name + " is unknown");
        }
    }

    bool readPackageOption(const Option& option, PackageOptions& result) {
        if (option.name == "--package") {
            addPackage(readPackage(valueOf(option)), result);
            return true;
        }
        if (option.name == "--packages") {
            readFileName(option, result.file);
            return true;
        }
        return false;
    }

    void readFileName(const Option& option, std::optional<std::string>& file) {
        if (file) {
            fail(option.name + " is given twice");
        }
        file = valueOf(option);
        if (file->empty()) {
            fail(option.name + " wants the name of a file");
        }
    }

    static void addPackage(PackageOption package, PackageOptions& result) {
        if (std::ranges::find(result.named, package.name, &PackageOption::name) != result.named.end()) {
            fail("two packages are named " + package.name);
        }
        result.named.push_back(std::move(package));
    }

    // One row or one column.
    formula::Block line(const Option& option) {
        const std::string text = valueOf(option);
        const std::optional<formula::Block> block = formula::readBlock(text);
        if (!block || (block->rows > 1 && block->columns > 1)) {
            fail(option.name + " wants a part of a row or column such as B9:B20, not \"" + text + "\"");
        }
        return *block;
    }

    static void requireChart(const Recalc& recalc) {
        const std::vector<formula::Block>& x = recalc.chartX;
        const std::vector<formula::Block>& y = recalc.chartY;
        if (!recalc.svg && (!x.empty() || !y.empty())) {
            fail("--x and --y go with --svg");
        }
        if (!recalc.svg) {
            return;
        }
        if (x.empty() || y.empty()) {
            fail("--svg wants --x RANGE and --y RANGE");
        }
        if (x.size() != 1 && x.size() != y.size()) {
            fail("--x is given once, or as often as --y");
        }
        for (std::size_t i = 0; i < y.size(); ++i) {
            const formula::Block& over = x.size() == 1 ? x.front() : x[i];
            if (over.cellCount() != y[i].cellCount()) {
                fail("a chart wants as many cells in " + nameOf(y[i]) + " as in " + nameOf(over));
            }
        }
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
