#include "packages/peng_robinson/editing/edit_model.h"

#include "packages/peng_robinson/catalogue/decimal.h"

#include <algorithm>

namespace peng_robinson {
namespace {

bool contains(const std::vector<std::size_t>& values, std::size_t value) {
    return std::ranges::find(values, value) != values.end();
}

std::string_view trimmed(std::string_view text) {
    const std::size_t first = text.find_first_not_of(" \t");
    return first == std::string_view::npos ? std::string_view{}
                                           : text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

} // namespace

EditModel::EditModel(const Configuration& configuration)
    : catalogue_{configuration.sharedCatalogue()}, selection_{configuration.selection()}, original_{
                                                                                              result()} {}

std::vector<std::size_t> EditModel::available() const {
    std::vector<std::size_t> others;
    for (std::size_t compound = 0; compound < catalogue_->compounds.size(); ++compound) {
        if (!contains(chosen(), compound)) {
            others.push_back(compound);
        }
    }
    return others;
}

void EditModel::add(std::size_t compound) { selection_.compounds.push_back(compound); }

void EditModel::remove(std::size_t i) {
    selection_.compounds.erase(selection_.compounds.begin() + static_cast<std::ptrdiff_t>(i));
}

void EditModel::moveUp(std::size_t i) {
    if (i > 0) {
        std::swap(selection_.compounds[i - 1], selection_.compounds[i]);
    }
}

void EditModel::moveDown(std::size_t i) {
    if (i + 1 < selection_.compounds.size()) {
        std::swap(selection_.compounds[i], selection_.compounds[i + 1]);
    }
}

std::vector<CompoundPair> EditModel::pairs() const {
    std::vector<CompoundPair> result;
    for (std::size_t i = 0; i < chosen().size(); ++i) {
        for (std::size_t j = i + 1; j < chosen().size(); ++j) {
            result.push_back(pairOf(chosen()[i], chosen()[j]));
        }
    }
    return result;
}

std::string EditModel::nameOf(const CompoundPair& pair) const {
    return std::string{nameOf(pair.first)}.append(" - ").append(nameOf(pair.second));
}

double EditModel::parameter(const CompoundPair& pair) const {
    const auto changed = selection_.changed.find(pair);
    return changed != selection_.changed.end() ? changed->second : tabulatedParameter(pair);
}

double EditModel::tabulatedParameter(const CompoundPair& pair) const {
    return catalogue_->k(pair.first, pair.second);
}

bool EditModel::isChanged(const CompoundPair& pair) const {
    return parameter(pair) != tabulatedParameter(pair);
}

std::optional<std::string> EditModel::setParameter(const CompoundPair& pair, std::string_view text) {
    const std::string_view typed = trimmed(text);
    if (typed.empty()) {
        return "Enter a number";
    }
    const std::optional<double> k = readDecimal(typed);
    if (!k) {
        const bool hasComma = typed.find(',') != std::string_view::npos;
        return std::string{'"'}.append(typed).append(
            hasComma ? "\" is not a number; write it with a decimal point" : "\" is not a number");
    }
    if (!isInteraction(*k)) {
        return "A binary parameter is between " + decimalText(lowestInteraction) + " and " +
               decimalText(highestInteraction);
    }
    selection_.changed[pair] = *k;
    return std::nullopt;
}

void EditModel::useTabulatedParameter(const CompoundPair& pair) { selection_.changed.erase(pair); }

std::optional<std::string> EditModel::problem() const {
    return chosen().empty() ? std::optional<std::string>{"A package needs at least one compound"}
                            : std::nullopt;
}

Selection EditModel::result() const {
    Selection result = selection_;
    std::erase_if(result.changed, [this](const auto& entry) {
        const CompoundPair& pair = entry.first;
        return !contains(chosen(), pair.first) || !contains(chosen(), pair.second) || !isChanged(pair);
    });
    return result;
}

} // namespace peng_robinson
