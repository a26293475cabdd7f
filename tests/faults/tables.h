// The tables of the matrix, which lie beside the test program: calls.tsv, names.tsv, outputs.tsv,
// writes.tsv and ways.tsv. Each explains its columns at its head.
#pragma once

#include <map>
#include <string>
#include <vector>

namespace faults {

struct Call {
    std::string name;
    std::string interfaceName;
    std::string method;
    std::string object;
    std::string way;
    std::string failure;
    std::string except;

    bool isQuery() const { return method == "QueryInterface"; }
    bool isCreation() const { return method == "CoCreateInstance"; }
    bool isProperty() const { return interfaceName == "property"; }
    /// The package's own words are shown when this fails.
    bool tellsReason() const { return failure.find("<reason>") != std::string::npos; }

    /// How the call ends with this code, or when a property's name is "unnamed": `failure` or an exception.
    std::string outcome(const std::string& code) const;
};

/// All rows that are calls; not those that stand for every property.
const std::vector<Call>& calls();
const Call& callNamed(const std::string& name);

/// An array that somebody else hands over, and what is shown when it is not as it should be.
struct ArrayRow {
    std::string call;
    std::string place; ///< the output's number, from 0, or the words of a write
    std::string element;
    std::string wrong;
    std::string none;
    std::string fewer;
    std::string more;
    std::string null;  ///< of texts: the first is null
    std::string empty; ///< of texts: the first has no characters
    std::string odd;   ///< of texts: the first is very long or no valid text

    std::string name() const;
};

const std::vector<ArrayRow>& outputs();
const std::vector<ArrayRow>& writes();

/// A text that a package hands over with its results, and what is shown when it is not as it should be.
struct NameRow {
    std::string call;
    std::string setter;
    std::string argument;
    std::string null;
    std::string empty;
    std::string odd;
};

const std::vector<NameRow>& writtenNames();

/// What the user sees when nothing fails, for each way.
const std::map<std::string, std::string>& resultsWithoutFault();

std::vector<std::string> split(const std::string& text, const std::string& separator);
/// Letters and digits of the text, words in capitals: fit for the name of a test.
std::string inNames(const std::string& text);

} // namespace faults
