// The fixture of the tests of want of memory: a call is made with the first allocation refused that the
// add-in asks for, then with the second, and so on until the call needs no more: of its own heap and of
// COM's, one allocation alone or all from there on. Each time the failure is reported, the workbook has what
// it had, nothing is lost, and the same call then succeeds.
#pragma once

#include "tests/leak_gate/allocations.h"
#include "tests/src/server/worksheet.h"

#include <functional>

namespace tests {

struct MemoryFailureCase;

/// Tells what the caller of the add-in sees.
class Caller : public Worksheet {
  public:
    std::string function(const wchar_t* name, std::vector<com::variant> arguments);
    std::string service(const std::function<HRESULT(com::variant& out)>& call);

    using Worksheet::addIn;
    using Worksheet::book;
    using Worksheet::create;
    using Worksheet::package;

  protected:
    leak_gate::Owner dll_ = leak_gate::ownerOf("Quorvane.dll");
};

/// Each call starts with a workbook that has the packages P and Q.
class MemoryFailure : public Caller, public testing::WithParamInterface<MemoryFailureCase> {
  public:
    void SetUp() override;

    com::variant savedTable;

  protected:
    struct Means;

    void failEachAllocation(const Means& means);

  private:
    void attachBoth();
    std::string call();
    std::string contents();
    void deleteCreated();
    void failOne(const Means& means, long long position, bool& happened);

    std::string healthy_;
};

struct MemoryFailureCase {
    const char* name; ///< that of a method, with more behind it for the further cases of one
    std::string (*call)(MemoryFailure& test);
    void (*prepare)(scripted::Script& package) = [](scripted::Script&) {};
};

void PrintTo(const MemoryFailureCase& tested, std::ostream* out);

} // namespace tests
