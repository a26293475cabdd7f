#include "sheet/formula/formula.h"

#include "sheet/formula/ascii.h"
#include "sheet/formula/utf8.h"
#include "sheet/formula/value.h"

#include <array>
#include <optional>

namespace sheet::formula {

namespace {

// Excel's limits: a formula beyond them opens nowhere.
constexpr std::size_t longestFormula = 8192;
constexpr std::size_t longestText = 255;
constexpr std::size_t mostArguments = 255;
// One whole column; more is hardly meant, and every cell of a range is handed over as a value.
constexpr std::size_t largestReference = maximumRows;

// Excel writes the longer form into files; people may write either.
constexpr std::array<std::string_view, 2> qualifications{"Quorvane.Excel.1.", "Quorvane.Excel."};
constexpr std::string_view functionBeginning = "CapeOpen";

struct Remedy {
    std::string_view characters;
    const char* message;
};

// What may not begin an argument or a formula.
constexpr std::array unknownBeginnings{
    Remedy{"{", "array constants are not understood; write the values into cells and refer to their range"},
    Remedy{"(", "parentheses are not understood here; write one function call without calculations"},
    Remedy{"@", "the sign @ is not understood; leave it out"},
    Remedy{"#", "error values cannot be written in a formula; refer to a cell that shows the error"},
    Remedy{"'", "other worksheets cannot be referred to; copy the cells into this worksheet"},
    Remedy{"!", "other worksheets cannot be referred to; copy the cells into this worksheet"},
    Remedy{";", "arguments are separated by commas; write , instead of ;"},
};

// What may not follow an argument or a call.
constexpr std::array unknownFollowers{
    Remedy{"+-*/^&=<>%",
           "formulas cannot calculate; write the result of the calculation into a cell and refer to it"},
    Remedy{";", "arguments are separated by commas; write , instead of ;"},
    Remedy{"#", "spilled ranges cannot be referred to by #; write the range, such as B2:B9"},
    Remedy{":", "a range is written from one cell to another, such as A1:B7"},
    Remedy{"!", "other worksheets cannot be referred to; copy the cells into this worksheet"},
    Remedy{"(", "a call cannot stand inside a formula; give it a cell of its own and refer to that cell"},
};

bool isWordCharacter(char c) {
    return isLetter(c) || isDigit(c) || c == '_' || c == '.' || c == '$' || c == '\\' || c == '?' ||
           static_cast<unsigned char>(c) >= 0x80;
}

bool isOnlyLetters(std::string_view text) {
    return std::ranges::all_of(text, [](char c) { return isLetter(c) || c == '$'; });
}

class Reader {
  public:
    explicit Reader(std::string_view text) : text_{text} {}

    Formula formula() {
        ++position_; // the equals sign
        skipBlanks();
        Formula result = at('$') || isReferenceAhead() ? Formula{{}, {reference()}} : call();
        skipBlanks();
        if (!atEnd()) {
            refuse(unknownFollowers, "text follows the formula; write one function call only");
        }
        return result;
    }

  private:
    bool atEnd() const { return position_ == text_.size(); }
    bool at(char c) const { return !atEnd() && text_[position_] == c; }
    bool take(char c) {
        const bool found = at(c);
        position_ += found;
        return found;
    }
    void skipBlanks() {
        while (!atEnd() && isBlank(text_[position_])) {
            ++position_;
        }
    }

    std::string_view wordAhead() const {
        std::size_t end = position_;
        while (end < text_.size() && isWordCharacter(text_[end])) {
            ++end;
        }
        return text_.substr(position_, end - position_);
    }
    char characterAfter(std::string_view word) const {
        const std::size_t after = position_ + word.size();
        return after < text_.size() ? text_[after] : '\0';
    }
    bool isReferenceAhead() const {
        const std::string_view word = wordAhead();
        return readBlock(word).has_value() && characterAfter(word) != '(' && characterAfter(word) != '!';
    }

    Formula call() {
        const std::string_view word = wordAhead();
        constexpr std::string_view nameFollowers = "(!:";
        if (word.empty() || (!startsWithNoCase(word, functionBeginning) &&
                             nameFollowers.find(characterAfter(word)) == std::string_view::npos)) {
            refuse(unknownBeginnings, "a formula is one function call, such as =CapeOpenPhases(\"Gas\"), or "
                                      "one reference, such as =A1");
        }
        std::string_view name = word;
        for (const std::string_view qualification : qualifications) {
            if (startsWithNoCase(name, qualification)) {
                name.remove_prefix(qualification.size());
                break;
            }
        }
        if (!startsWithNoCase(name, functionBeginning)) {
            failAtWord(word);
        }
        position_ += word.size();
        skipBlanks();
        if (!take('(')) {
            fail("an opening parenthesis belongs after " + std::string{word});
        }
        return {std::string{name}, arguments()};
    }

    std::vector<Argument> arguments() {
        std::vector<Argument> result;
        skipBlanks();
        if (take(')')) {
            return result;
        }
        while (true) {
            if (result.size() == mostArguments) {
                fail("a function takes at most 255 arguments");
            }
            skipBlanks();
            result.push_back(at(',') || at(')') ? Argument{Omitted{}} : argument());
            skipBlanks();
            if (take(')')) {
                return result;
            }
            if (!take(',')) {
                refuse(unknownFollowers, atEnd() ? "the closing parenthesis is missing"
                                                 : "a comma or a closing parenthesis belongs here");
            }
        }
    }

    Argument argument() {
        if (atEnd()) {
            fail("the closing parenthesis is missing");
        }
        const char c = text_[position_];
        if (c == '"') {
            return text();
        }
        if (isDigit(c) || c == '.' || c == '+' || c == '-') {
            return number();
        }
        if (isReferenceAhead()) {
            return reference();
        }
        const std::string_view word = wordAhead();
        if (word.empty()) {
            refuse(unknownBeginnings,
                   "an argument is a text in quotes, a number, TRUE, FALSE or a reference");
        }
        const bool truth = equalsNoCase(word, "TRUE");
        if (!truth && !equalsNoCase(word, "FALSE")) {
            failAtWord(word);
        }
        position_ += word.size();
        return truth;
    }

    std::string text() {
        const std::size_t begin = position_++;
        std::string result;
        while (true) {
            const std::size_t quote = text_.find('"', position_);
            if (quote == std::string_view::npos) {
                position_ = begin;
                fail("the text that begins here is never closed; add the closing quote");
            }
            result += text_.substr(position_, quote - position_);
            position_ = quote + 1;
            if (!take('"')) {
                break;
            }
            result += '"';
        }
        if (utf16Length(result) > longestText) {
            position_ = begin;
            fail(
                "a text in a formula has at most 255 characters; write it into a cell and refer to the cell");
        }
        return result;
    }

    double number() {
        std::size_t end = position_;
        const auto takeSign = [&] { end += end < text_.size() && (text_[end] == '+' || text_[end] == '-'); };
        takeSign();
        while (end < text_.size() && (isDigit(text_[end]) || text_[end] == '.')) {
            ++end;
        }
        if (end < text_.size() && upper(text_[end]) == 'E') {
            ++end;
            takeSign();
            while (end < text_.size() && isDigit(text_[end])) {
                ++end;
            }
        }
        const std::optional<double> value = readNumber(text_.substr(position_, end - position_));
        if (!value || (end < text_.size() && isWordCharacter(text_[end]))) {
            fail("this is not a number; write numbers like -12.5 or 1.2E-5, and calculations into cells of "
                 "their own");
        }
        position_ = end;
        return *value;
    }

    Block reference() {
        const std::size_t begin = position_;
        std::optional<Block> block = readBlock(wordAhead());
        position_ += wordAhead().size();
        if (block && take(':')) {
            const std::string_view last = wordAhead();
            const std::optional<Block> corner = readBlock(last);
            if (!corner) {
                fail("a range is written from one cell to another, such as A1:B7");
            }
            position_ += last.size();
            block = spanning(block->first, corner->first);
        }
        if (!block) {
            position_ = begin;
            fail("this is no cell of a worksheet; write a reference like A1, $A$1 or A1:B7");
        }
        if (block->cellCount() > largestReference) {
            position_ = begin;
            fail("the range " + nameOf(*block) +
                 " has more than 1048576 cells; write the range that is used");
        }
        return *block;
    }

    [[noreturn]] void failAtWord(std::string_view word) const {
        const std::string name{word};
        switch (characterAfter(word)) {
        case '(':
            if (startsWithNoCase(word, functionBeginning) || startsWithNoCase(word, qualifications.back())) {
                fail("a call cannot stand inside a call; give " + name +
                     " a cell of its own and refer to that cell");
            }
            fail("the function " + name +
                 " is not one of the add-in's; write its result into a cell as a number or text");
        case '!':
            fail("other worksheets cannot be referred to; copy the cells into this worksheet");
        case ':':
            if (isOnlyLetters(word)) {
                fail("whole columns cannot be referred to; write the rows too, such as A1:A20");
            }
            break;
        default:
            break;
        }
        fail("the name " + name +
             " is not known; write a text in quotes, a number, TRUE, FALSE or a reference like A1");
    }

    template <std::size_t N>
    [[noreturn]] void refuse(const std::array<Remedy, N>& remedies, const char* otherwise) const {
        const auto found = std::ranges::find_if(remedies, [this](const Remedy& remedy) {
            return !atEnd() && remedy.characters.find(text_[position_]) != std::string_view::npos;
        });
        fail(found == remedies.end() ? otherwise : found->message);
    }

    [[noreturn]] void fail(const std::string& message) const {
        throw FormulaError{"the formula cannot be read at character " +
                           std::to_string(characterCount(text_.substr(0, position_)) + 1) + ": " + message};
    }

    std::string_view text_;
    std::size_t position_ = 0;
};

} // namespace

std::vector<Block> Formula::references() const {
    std::vector<Block> result;
    for (const Argument& argument : arguments) {
        if (const Block* const block = std::get_if<Block>(&argument)) {
            result.push_back(*block);
        }
    }
    return result;
}

Formula readFormula(std::string_view text) {
    if (utf16Length(text) > longestFormula) {
        throw FormulaError{
            "the formula has more than 8192 characters; write long texts into cells and refer to them"};
    }
    return Reader{text}.formula();
}

} // namespace sheet::formula
