#include "sheet/checking/report.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <limits>

namespace sheet::checking {

namespace {

std::string shortNumber(double value) {
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%.1e", value);
    return text.data();
}

// One thing by its name, several by their number.
std::string namedOrCounted(const std::vector<std::string>& names, std::size_t all) {
    if (names.size() == 1) {
        return names.front();
    }
    return names.size() == all ? "all " + std::to_string(all)
                               : std::to_string(names.size()) + " of " + std::to_string(all);
}

} // namespace

Report::Subject& Report::subject(const Question& question, const std::string& name) {
    auto asked = std::ranges::find(asked_, std::string_view{question.text},
                                   [](const Asked& a) { return std::string_view{a.question.text}; });
    if (asked == asked_.end()) {
        asked_.push_back({question, {}, {}});
        asked = std::prev(asked_.end());
    }
    const auto [place, isNew] = asked->subjects.try_emplace(name);
    if (isNew) {
        asked->order.push_back(name);
    }
    return place->second;
}

void Report::compare(const Question& question, const std::string& name, const std::string& where,
                     double deviation) {
    Subject& found = subject(question, name);
    ++found.comparisons;
    const double size = std::isnan(deviation) ? std::numeric_limits<double>::infinity() : deviation;
    if (size > found.worst) {
        found.worst = size;
        found.where = where;
    }
}

void Report::fail(const Question& question, const std::string& name, const std::string& where,
                  const std::string& text) {
    Subject& found = subject(question, name);
    ++found.comparisons;
    if (found.failure.empty()) {
        found.failure = text;
        found.where = where;
    }
}

void Report::answered(const Question& question, const std::string& name, const std::string& where) {
    compare(question, name, where, 0.0);
}

void Report::notOffered(const Question& question, const std::string& name, const std::string& text) {
    Subject& found = subject(question, name);
    if (found.comparisons == 0) {
        found.withheld = text;
    }
}

bool Report::misses(const Asked& asked, const Subject& subject) {
    return !subject.failure.empty() || subject.worst > asked.question.tolerance;
}

bool Report::agrees() const {
    return std::ranges::none_of(asked_, [](const Asked& asked) {
        return std::ranges::any_of(asked.subjects, [&](const auto& s) { return misses(asked, s.second); });
    });
}

// The first of several, and that there are several.
std::string Report::reasonOf(const Asked& asked, const std::vector<std::string>& withheld) {
    const std::string& first = asked.subjects.at(withheld.front()).withheld;
    const bool same = std::ranges::all_of(
        withheld, [&](const std::string& name) { return asked.subjects.at(name).withheld == first; });
    return same ? first : first + "; and for other reasons";
}

formula::Matrix Report::table() const {
    formula::Matrix table{1, 6, {"question", "of", "where it is worst", "deviation", "tolerance", "verdict"}};
    const auto add = [&](const Asked& asked, const std::string& of, const std::string& where,
                         const std::string& deviation, const std::string& verdict) {
        const bool compares = asked.question.tolerance > 0.0;
        const std::string tolerance = compares ? shortNumber(asked.question.tolerance) : "";
        for (const std::string& cell :
             {std::string{asked.question.text}, of, where, compares ? deviation : "", tolerance, verdict}) {
            table.values.emplace_back(cell);
        }
        ++table.rows;
    };
    for (const Asked& asked : asked_) {
        std::vector<std::string> agreeing;
        std::vector<std::string> withheld;
        const Subject* worst = nullptr;
        for (const std::string& name : asked.order) {
            const Subject& subject = asked.subjects.at(name);
            if (misses(asked, subject)) {
                const bool failed = !subject.failure.empty();
                add(asked, name, subject.where, failed ? "" : shortNumber(subject.worst),
                    failed ? "FAILS: " + subject.failure : "DIFFERS");
            } else if (subject.comparisons == 0) {
                withheld.push_back(name);
            } else {
                agreeing.push_back(name);
                worst = worst == nullptr || subject.worst > worst->worst ? &subject : worst;
            }
        }
        const bool compares = asked.question.tolerance > 0.0;
        if (!agreeing.empty()) {
            add(asked, namedOrCounted(agreeing, asked.order.size()), compares ? worst->where : "",
                shortNumber(worst->worst), compares ? "agrees" : "answered");
        }
        if (!withheld.empty()) {
            add(asked, namedOrCounted(withheld, asked.order.size()), "", "",
                "not available: " + reasonOf(asked, withheld));
        }
    }
    return table;
}

} // namespace sheet::checking
