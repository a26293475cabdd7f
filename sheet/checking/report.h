// What has been asked of a package, and how the answers compare: one line for everything that agrees on a
// question, and one for each property that does not.
#pragma once

#include "sheet/formula/value.h"

#include <map>
#include <string>
#include <vector>

namespace sheet::checking {

struct Question {
    const char* text;
    double tolerance;
};

class Report {
  public:
    /// A comparison: `deviation` within the question's tolerance agrees. NaN does not.
    void compare(const Question& question, const std::string& subject, const std::string& where,
                 double deviation);
    /// Something that the package should have answered.
    void fail(const Question& question, const std::string& subject, const std::string& where,
              const std::string& text);
    /// Something that it answered.
    void answered(const Question& question, const std::string& subject, const std::string& where);
    /// Something that it need not answer.
    void notOffered(const Question& question, const std::string& subject, const std::string& text);

    bool agrees() const;
    /// The questions in the order in which they were first asked, with a line of headings.
    formula::Matrix table() const;

  private:
    struct Subject {
        std::size_t comparisons = 0;
        double worst = -1.0;
        std::string where;   // the worst place
        std::string failure; // the first one
        std::string withheld;
    };
    struct Asked {
        Question question;
        std::vector<std::string> order;
        std::map<std::string, Subject> subjects;
    };

    Subject& subject(const Question& question, const std::string& name);
    static bool misses(const Asked& asked, const Subject& subject);
    static std::string reasonOf(const Asked& asked, const std::vector<std::string>& withheld);

    std::vector<Asked> asked_;
};

} // namespace sheet::checking
