// The packages that the random calls meet: scripted ones of several shapes, one of a manager, one whose
// script is disturbed again and again, and the bundled one. Each kind is attached under names that begin with
// its own, so that a caller knows what a package of that name has.
#pragma once

#include "tests/random/dice.h"
#include "tests/scripted_package/registered.h"

#include <functional>
#include <quorvane_idl.h>
#include <stdexcept>

namespace chance {

/// What a package knows, for calls that are to succeed.
struct Vocabulary {
    std::vector<std::wstring> compounds;
    std::vector<std::wstring> phases;
    std::vector<std::wstring> constants;
    std::vector<std::wstring> temperatureDependent;
    std::vector<std::wstring> singlePhase;
    std::vector<std::wstring> twoPhase;
};

struct Kind {
    std::wstring name;
    CLSID clsid;
    CAPEOPENPackageManagerType type;
    std::wstring packageName; ///< of a manager's package
    Vocabulary vocabulary;
    std::shared_ptr<scripted::Script> script; ///< null: not scripted
};

class Packages {
  public:
    /// `bundled` is PengRobinson.dll's full path. Throws std::runtime_error when it cannot be used.
    explicit Packages(const std::wstring& bundled);

    const std::vector<Kind>& kinds() const noexcept { return kinds_; }
    /// One whose script is disturbed again and again.
    bool isDisturbed(const Kind& kind) const noexcept { return kind.script == kinds_[1].script; }

    /// Changes the script of the faulty kind. What `inside` does happens now and then in the middle of one of
    /// the package's own calls.
    void disturb(Dice& dice, const std::function<void()>& inside);
    /// Forgets what the scripts have heard, what the packages have saved, and what disturbs them.
    void forget();

  private:
    void addScripted(std::wstring name, const CLSID& clsid, scripted::Script script);
    void addManaged();
    void addBundled(const std::wstring& path);
    scripted::Script& faulty() { return *kinds_[1].script; }

    std::vector<Kind> kinds_;
    std::vector<std::unique_ptr<scripted::Registration>> registrations_;
    std::vector<std::shared_ptr<scripted::Script>> managers_;
};

/// How the words of a disturbed package begin, so that they are known again in a message.
inline constexpr const wchar_t* packagesOwnWords = L"the package says:";

/// The codes with which it fails.
extern const std::vector<HRESULT> failureCodes;

} // namespace chance
