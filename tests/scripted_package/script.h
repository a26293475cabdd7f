// Script: what a scripted component answers, and what it has heard. Methods are named as in their interfaces;
// a method that the script says nothing about behaves as that of a healthy component (model.h).
//
//   package.fails("CalcEquilibrium", ECapeComputationHR, L"Flash did not converge");
//   package.answers("GetSinglePhasePropList", scripted::reals({1.0}));
//   package.hook("CalcSinglePhaseProp", [](scripted::Call& call) { ...; return call.healthy(); });
//   package.omits(__uuidof(ICapeThermoPhases));
//   EXPECT_EQ(package.calls("CalcSinglePhaseProp"), ...);
//
// Where several are given for a method, a hook comes before a failure and a failure before an answer. The
// component shares its script with the test, so that changes hold at once.
#pragma once

#include "com/owned.h"
#include "tests/scripted_package/model.h"
#include "tests/scripted_package/variants.h"

#include <capeopen_idl.h>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

namespace scripted {

/// A deep copy; unlike Automation's own it keeps a null text null.
com::variant duplicate(const VARIANT& value);

/// Leaves Automation error information for the thread, as components of other makers do, also without
/// failing.
void leaveErrorInformation(const std::wstring& description);

/// How often somebody has used what failing calls left in outputs that are values.
std::size_t touchesOfRubbish() noexcept;

/// One output of a method. What the script gives it must be of its type.
class Out {
  public:
    enum class Kind { Fresh, InOut };

    /// [in, out] when `kind` says so: the old value is cleared then.
    Out(VARIANT* target, Kind kind) noexcept : value_{target}, kind_{kind} {}
    Out(BSTR* target) noexcept : text_{target} {}
    Out(LONG* target) noexcept : number_{target} {}
    Out(VARIANT_BOOL* target) noexcept : truth_{target} {}
    Out(IDispatch** target) noexcept : object_{target} {}

    bool isNull() const noexcept;
    /// Throws std::logic_error when `value` does not fit.
    void give(com::variant value) const;
    /// What a VARIANT output holds, after the healthy answer for instance; throws for an output of another
    /// type.
    const VARIANT& value() const;
    /// Puts something else where a healthy answer already is.
    void replace(com::variant value) const;
    /// Leaves what nobody may touch; a value is cleared before, and counts who does (touchesOfRubbish).
    void leaveRubbish() const;

  private:
    VARIANT* value_ = nullptr;
    Kind kind_ = Kind::Fresh;
    BSTR* text_ = nullptr;
    LONG* number_ = nullptr;
    VARIANT_BOOL* truth_ = nullptr;
    IDispatch** object_ = nullptr;
};

/// A call while it runs. `in` are the caller's own values: a text is VT_BSTR, an object VT_DISPATCH or
/// VT_UNKNOWN, all borrowed.
struct Call {
    const char* method;
    std::span<const VARIANT> in;
    std::span<const Out> out;
    ICapeThermoMaterial* material; ///< the active one; null when there is none
    std::function<HRESULT()> healthy;
};

/// A call that was heard, with copies of its inputs; an object is kept as `true`, null as `false`.
struct Record {
    std::string method;
    std::vector<com::variant> arguments;

    /// Method(argument, argument), as in CalcSinglePhaseProp([enthalpy], Liquid).
    std::string text() const;
};

struct Failure {
    HRESULT code = E_FAIL;
    std::wstring description; ///< what ECapeUser then says
    std::wstring name;        ///< what ECapeRoot then says
};

/// How a query for an interface ends.
struct QueryAnswer {
    enum class Pointer { None, Rubbish, Interface };

    HRESULT code;
    Pointer pointer;

    /// Ends `query`, which is the honest answer.
    HRESULT end(void** out, const std::function<HRESULT()>& query) const;
};

class Script {
  public:
    using Hook = std::function<HRESULT(Call&)>;

    Model model;

    void compounds(std::vector<Compound> list) { model.compounds = std::move(list); }
    void phases(std::vector<Phase> list) { model.phases = std::move(list); }
    /// The values that the package reports for a property, whatever the conditions.
    void calculates(std::wstring property, std::wstring basis, std::vector<double> values);
    void flashes(Flash flash) { model.flash = std::move(flash); }

    void fails(std::string method, HRESULT code, std::wstring description = {}, std::wstring name = {});
    /// The method succeeds with these outputs, in the order of its parameters; those that are left out stay
    /// untouched.
    template <typename... Variants>
    void answers(std::string method, Variants... outputs) {
        std::vector<com::variant>& answer = answers_[std::move(method)];
        answer.clear();
        (answer.push_back(std::move(outputs)), ...);
    }
    void answers(std::string method, std::vector<com::variant> outputs) {
        answers_[std::move(method)] = std::move(outputs);
    }
    void hook(std::string method, Hook hook) { hooks_[std::move(method)] = std::move(hook); }
    /// Takes back what was said about a method.
    void recovers(const std::string& method);

    /// Of the calls of a method from now on the one of this number, counted from 1, fails.
    void failsAt(std::size_t number, std::string method, HRESULT code, std::wstring description = {},
                 std::wstring name = {});
    /// The method does its work and answers this all the same. A failing one leaves rubbish in its outputs.
    void ends(std::string method, HRESULT code);

    /// The component answers E_NOINTERFACE when asked for this interface.
    void omits(REFIID iid);
    void answersQuery(REFIID iid, QueryAnswer answer);
    /// Done whenever the component is asked for this interface, before it answers.
    void whenAsked(REFIID iid, std::function<void()> action);
    /// Takes back what was said about an interface.
    void recovers(REFIID iid);

    const std::vector<Record>& records() const noexcept { return records_; }
    /// The calls heard, of one method or of all, as texts.
    std::vector<std::string> calls(std::string_view method = {}) const;
    std::size_t count(std::string_view method) const { return calls(method).size(); }
    /// The interfaces that the component was asked for, in order, repetitions included.
    const std::vector<IID>& queries() const noexcept { return queries_; }
    void forgetCalls();

    /// Each call heard from now on is also appended to this file.
    void logTo(std::wstring file) { log_ = std::move(file); }

    // The component's side.

    bool hides(REFIID iid);
    void asked(REFIID iid) const;
    const QueryAnswer* queryAnswerOf(REFIID iid) const;
    void heard(const char* method, std::span<const VARIANT> in);
    const Hook* hookOf(const char* method) const;
    const Failure* failureOf(const char* method) const;
    const std::vector<com::variant>* answerOf(const char* method) const;

  private:
    std::map<std::string, Hook, std::less<>> hooks_;
    std::map<std::string, Failure, std::less<>> failures_;
    std::map<std::string, std::vector<com::variant>, std::less<>> answers_;
    std::set<std::wstring> omitted_;
    std::map<std::wstring, QueryAnswer> queryAnswers_;
    std::map<std::wstring, std::function<void()>> queryActions_;
    std::vector<Record> records_;
    std::vector<IID> queries_;
    std::wstring log_;
};

} // namespace scripted
