// What a test tells a stand-in object to do, and what the object remembers of being used. The names given
// here are those of the object's table; a name that is not in it throws std::invalid_argument, so that a test
// cannot script what never happens.
#pragma once

#include "com/owned.h"

#include <algorithm>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

namespace sheet::excel {

/// The value as another type; empty when Automation cannot convert it.
com::variant converted(const com::variant& value, VARTYPE type);

/// Without regard to case, as Automation finds names.
bool equalsNoCase(const wchar_t* a, const wchar_t* b) noexcept;

struct Failure {
    HRESULT code = S_OK;
    std::wstring description; // empty: the code alone is returned, else an exception with this text is raised
};

// Gives the description of the last failure to a client that asks the object for IErrorInfo.
class FailureFace : public IErrorInfo {
  public:
    using interface_type = IErrorInfo;

    HRESULT STDMETHODCALLTYPE GetGUID(GUID* guid) noexcept override;
    HRESULT STDMETHODCALLTYPE GetSource(BSTR* out) noexcept override;
    HRESULT STDMETHODCALLTYPE GetDescription(BSTR* out) noexcept override;
    HRESULT STDMETHODCALLTYPE GetHelpFile(BSTR* file) noexcept override;
    HRESULT STDMETHODCALLTYPE GetHelpContext(DWORD* context) noexcept override;

    const std::wstring& description() const noexcept { return description_; }

  protected:
    /// DISP_E_EXCEPTION with `exception` filled in, or the bare code when the failure has no description.
    HRESULT raiseFailure(const Failure& failure, EXCEPINFO* exception);

  private:
    std::wstring description_;
};

class Script {
  public:
    Script() = default;
    Script(const Script&) = delete;
    Script& operator=(const Script&) = delete;

    /// From now on the member fails.
    void fail(std::wstring_view member, HRESULT code, std::wstring description = {});
    /// From now on the member answers a copy of this.
    void answer(std::wstring_view member, com::variant value);
    /// From now on the member's name is not found (its identifier still is).
    void hide(std::wstring_view member);
    /// Takes fail, answer and hide back.
    void behave(std::wstring_view member);

    /// The members that were invoked, in order, with their arguments: L"Value(10)".
    const std::vector<std::wstring>& heard() const noexcept { return heard_; }
    void forget() noexcept { heard_.clear(); }

  protected:
    ~Script() = default;

    virtual bool hasMember(std::wstring_view name) const = 0;

    void hear(const wchar_t* member, const std::vector<com::variant>& arguments);
    bool isHidden(const wchar_t* member) const;
    const Failure* failureOf(const wchar_t* member) const;
    const com::variant* answerOf(const wchar_t* member) const;

    /// Parameters by position, in declared order; references are followed.
    static HRESULT readArguments(const DISPPARAMS* parameters, UINT most,
                                 std::vector<com::variant>& arguments);

  private:
    struct Wish {
        bool hidden = false;
        bool fails = false;
        bool answers = false;
        Failure failure;
        com::variant answer;
    };
    struct NoCase {
        bool operator()(const std::wstring& a, const std::wstring& b) const noexcept;
    };

    Wish& wishFor(std::wstring_view member);
    const Wish* wishOf(const wchar_t* member) const;

    std::map<std::wstring, Wish, NoCase> wishes_;
    std::vector<std::wstring> heard_;
};

} // namespace sheet::excel
