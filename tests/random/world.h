// World: Excel's stand-in with several workbooks and calling ranges, the built add-in connected to it, and
// the packages. One step is a call of a worksheet function or of a service, or something that Excel does; a
// judge looks at each answer.
//
// Workbooks and their packages come and go, except one with a package of each kind that does as it should: it
// is open as long as the world is, as a user's is for days. It is attached to an add-in of its own, which
// Excel never disconnects.
#pragma once

#include "sheet/excel/application.h"
#include "sheet/excel/front_end.h"
#include "tests/random/judge.h"
#include "tests/src/server/add_in.h"

#include <map>

namespace chance {

/// What the cells show; also of an array that holds something else than it says, as a component may have
/// made.
std::string shownText(const VARIANT& value);

/// What happened, for tests that look whether enough of it did.
struct Tally {
    long calls = 0; ///< of worksheet functions
    long services = 0;
    std::map<std::string, long> succeeded; ///< by function
    std::map<std::string, long> failed;
    std::set<std::wstring> messages; ///< of worksheet functions
};

/// What a world does. Wine 8 itself leaks memory when it refuses a value of a type that Automation does not
/// have, and handles when it is asked for the name of a class that is not registered, or to create one: where
/// memory is looked at, that is left out.
enum class Reach { everything, withoutLeaksOfThePlatform };

class World {
  public:
    explicit World(std::uint64_t seed, Reach reach = Reach::everything);
    World(const World&) = delete;
    World& operator=(const World&) = delete;
    ~World();

    /// One step. Returns what is wrong with the answer, and which call it was; empty when nothing is.
    std::string step();

    /// All packages of all workbooks but the lasting one go, and what was kept of them; Excel stays
    /// connected.
    void closeWorkbooks();
    /// What then is left of the objects of scripted packages.
    long lastingObjects() const noexcept { return lastingObjects_; }

    const Tally& tally() const noexcept { return tally_; }
    /// Of all answers so far.
    std::uint64_t digest() const noexcept { return digest_.value(); }

  private:
    struct Caller {
        com::variant value;
        bool isColumn;
    };

    void makeCallers();
    void furnish();
    void furnishLasting();
    void settleLasting();
    IUnknown* someWorkbook();
    void activate();
    void connect();
    void insideOfACall();
    void letACellCall(Call& call);

    std::string lastingStep();
    std::string lastingService();
    std::string worksheetCall(const std::vector<Kind>& kinds);
    HRESULT invoke(const Call& call, VARIANT* result);
    HRESULT callThroughSlot(const Call& call, VARIANT* result);
    std::string service();
    std::string lists(IUnknown* workbook, BSTR name);
    HRESULT create(IUnknown* workbook, const Kind& kind, const std::wstring& name);
    HRESULT restore(IUnknown* workbook);
    HRESULT save(IUnknown* workbook);
    void damage(com::variant& table);

    Reach reach_;
    Dice dice_;
    Packages packages_;
    Judge judge_;
    Tally tally_;
    Digest digest_;
    com::com_ptr<sheet::excel::Application> excel_ = com::make<sheet::excel::Application>();
    com::com_ptr<sheet::excel::FrontEnd> frontEnd_ = com::make<sheet::excel::FrontEnd>();
    std::vector<com::com_ptr<sheet::excel::Workbook>> workbooks_;
    std::vector<com::com_ptr<sheet::excel::Range>> ranges_;
    std::vector<Caller> callers_;
    std::vector<com::variant> saved_; ///< tables that workbooks were saved into
    std::vector<Kind> lastingKinds_;
    com::com_ptr<sheet::excel::Workbook> lastingWorkbook_ = com::make<sheet::excel::Workbook>(L"Lasting");
    com::com_ptr<IQuorvaneVSTOServices> lastingAddIn_;
    long lastingObjects_ = 0;
    com::com_ptr<IQuorvaneVSTOServices> addIn_;
    com::com_ptr<_IDTExtensibility2> events_;
    bool isInside_ = false;
    std::size_t steps_ = 0;
};

} // namespace chance
