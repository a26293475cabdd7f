// A formula that was read is written again as the same, a refusal names a place in it, and cells have names
// that name them.
#include "sheet/formula/formula.h"

#include "sheet/formula/utf8.h"
#include "sheet/formula/value.h"
#include "tests/fuzz/fuzz.h"

namespace fuzz {

namespace {

using namespace sheet::formula;

std::string written(const Argument& argument) {
    struct Writer {
        std::string operator()(Omitted) const { return {}; }
        std::string operator()(double number) const { return exactText(number); }
        std::string operator()(bool truth) const { return truth ? "true" : "False"; }
        std::string operator()(const Block& block) const { return nameOf(block); }
        std::string operator()(const std::string& text) const {
            std::string result{'"'};
            for (const char c : text) {
                result.append(c == '"' ? 2 : 1, c);
            }
            return result + '"';
        }
    };
    return std::visit(Writer{}, argument);
}

std::string written(const Formula& formula) {
    std::string text;
    for (const Argument& argument : formula.arguments) {
        text += (text.empty() ? "" : " , ") + written(argument);
        text += text.empty() ? " " : ""; // the next one needs its comma
    }
    return formula.function.empty() ? "=" + text
                                    : "=Quorvane.Excel.1." + formula.function + " (" + text + ")";
}

void requireRoundTrip(const Formula& formula) {
    for (const Block& block : formula.references()) {
        require(block.endRow() <= maximumRows && block.endColumn() <= maximumColumns && block.cellCount() > 0,
                "a reference lies on the worksheet");
    }
    const bool omitsOnlyOne =
        formula.arguments.size() == 1 && std::holds_alternative<Omitted>(formula.arguments.front());
    require(!omitsOnlyOne, "empty parentheses hold no argument");
    const std::string text = written(formula);
    constexpr std::size_t longest = 8192; // the text may have become longer
    require(utf16Length(text) > longest || readFormula(text) == formula, "written again it is the same");
}

void requireNames(std::string_view text) {
    const std::optional<Block> block = readBlock(text);
    require(!block || readBlock(nameOf(*block)) == block, "a range has the name that names it");
    std::string_view left = text;
    const std::optional<Address> cell = takeAddress(left);
    require(cell || left == text, "what is no address stays");
    if (cell) {
        std::string name = nameOf(*cell);
        std::string_view rest = name;
        require(takeAddress(rest) == cell && rest.empty(), "a cell has the name that names it");
    }
}

} // namespace

void run(Input input) {
    const std::string text = "=" + std::string{input.text()};
    try {
        requireRoundTrip(readFormula(text));
    } catch (const FormulaError& error) {
        constexpr std::string_view beginning = "the formula cannot be read at character ";
        const std::string message = error.what();
        require(utf16Length(text) > 8192 || message.starts_with(beginning), "a refusal names a place");
        require(!message.starts_with(beginning) ||
                    std::stoul(message.substr(beginning.size())) <= characterCount(text) + 1,
                "the place lies in the formula");
    }
    requireNames(std::string_view{text}.substr(1));
}

} // namespace fuzz
