#include "tests/scripted_package/script_text.h"

#include <algorithm>
#include <cwctype>
#include <stdexcept>

namespace scripted {

namespace {

struct Interface {
    const wchar_t* name;
    const IID& iid;
};

const Interface interfaces[] = {
    {L"ICapeIdentification", __uuidof(ICapeIdentification)},
    {L"ICapeUtilities", __uuidof(ICapeUtilities)},
    {L"ICapeThermoCompounds", __uuidof(ICapeThermoCompounds)},
    {L"ICapeThermoPhases", __uuidof(ICapeThermoPhases)},
    {L"ICapeThermoPropertyRoutine", __uuidof(ICapeThermoPropertyRoutine)},
    {L"ICapeThermoEquilibriumRoutine", __uuidof(ICapeThermoEquilibriumRoutine)},
    {L"ICapeThermoUniversalConstant", __uuidof(ICapeThermoUniversalConstant)},
    {L"ICapeThermoMaterialContext", __uuidof(ICapeThermoMaterialContext)},
    {L"ICapeThermoPropertyPackageManager", __uuidof(ICapeThermoPropertyPackageManager)},
    {L"ECapeUser", __uuidof(ECapeUser)},
    {L"ECapeRoot", __uuidof(ECapeRoot)},
    {L"IPersistStream", __uuidof(IPersistStream)},
    {L"IPersistStreamInit", __uuidof(IPersistStreamInit)},
};

[[noreturn]] void reject(std::wstring_view setting) {
    throw std::invalid_argument("The script has a setting that cannot be understood: " + narrow(setting));
}

constexpr std::wstring_view partlyWord = L"partly ";
constexpr std::wstring_view leavesWord = L"leaves ";
constexpr std::wstring_view notReported = L"-";

std::vector<std::wstring> pieces(std::wstring_view text, wchar_t separator) {
    std::vector<std::wstring> result;
    for (;;) {
        const std::size_t end = text.find(separator);
        result.emplace_back(text.substr(0, end));
        if (end == std::wstring_view::npos) {
            return result;
        }
        text.remove_prefix(end + 1);
    }
}

std::optional<double> numberIn(const std::wstring& text) {
    wchar_t* end = nullptr;
    const double value = std::wcstod(text.c_str(), &end);
    return text.empty() || *end != L'\0' ? std::nullopt : std::optional{value};
}

double number(const std::wstring& text, std::wstring_view setting) {
    const std::optional<double> value = numberIn(text);
    if (!value) {
        reject(setting);
    }
    return *value;
}

// Numbers where the texts are numbers.
com::variant mixedArray(const std::vector<std::wstring>& texts) {
    com::unique_safearray array = com::makeVector(VT_VARIANT, texts.size());
    {
        const com::array_lock<VARIANT> lock{array.get()};
        std::ranges::transform(texts, lock.elements().begin(), [](const std::wstring& text) {
            const std::optional<double> value = numberIn(text);
            return (value ? com::variant{*value} : com::variant{std::wstring_view{text}}).release();
        });
    }
    return com::variant::array(std::move(array), VT_VARIANT);
}

// One "key=value" of a script.
class Setting {
  public:
    Setting(Script& script, std::wstring_view whole) : script_{script}, whole_{whole} {
        const std::size_t equals = whole.find(L'=');
        if (equals == std::wstring_view::npos || equals == 0) {
            reject(whole);
        }
        key_ = whole.substr(0, equals);
        value_ = whole.substr(equals + 1);
    }

    void apply() {
        if (value_ == L"none") {
            omit();
        } else if (key_ == L"compounds") {
            compounds();
        } else if (key_ == L"phases") {
            phases();
        } else if (key_ == L"flash") {
            flash();
        } else if (key_ == L"state") {
            script_.model.state = narrow(value_);
        } else if (key_ == L"log") {
            script_.logTo(value_);
        } else if (std::iswupper(key_.front()) || key_.starts_with(L"get_")) {
            method();
        } else {
            property();
        }
    }

  private:
    void omit() {
        for (const Interface& known : interfaces) {
            if (key_ == known.name) {
                script_.omits(known.iid);
                return;
            }
        }
        reject(whole_);
    }

    std::pair<std::wstring, std::wstring> halves(const std::wstring& text) const {
        const std::size_t colon = text.find(L':');
        if (colon == std::wstring::npos) {
            reject(whole_);
        }
        return {text.substr(0, colon), text.substr(colon + 1)};
    }

    void compounds() {
        std::vector<Compound> list;
        for (const std::wstring& piece : pieces(value_, L',')) {
            const auto [name, weight] = halves(piece);
            const std::wstring position = std::to_wstring(list.size() + 1);
            std::wstring cas = position + position;
            cas.append(L"-").append(position).append(position).append(L"-").append(position);
            list.push_back({L"C" + position, name, L"F" + position,
                            100.0 * static_cast<double>(list.size() + 1), number(weight, whole_),
                            std::move(cas)});
        }
        script_.compounds(std::move(list));
    }

    void phases() {
        std::vector<Phase> list;
        for (const std::wstring& piece : pieces(value_, L',')) {
            auto [label, state] = halves(piece);
            list.push_back({std::move(label), std::move(state)});
        }
        script_.phases(std::move(list));
    }

    void method() {
        const std::string name = narrow(key_);
        if (value_.starts_with(L"0x")) {
            const std::size_t colon = value_.find(L':');
            wchar_t* end = nullptr;
            const unsigned long code = std::wcstoul(value_.c_str(), &end, 16);
            if (*end != L'\0' && *end != L':') {
                reject(whole_);
            }
            script_.fails(name, static_cast<HRESULT>(code),
                          colon == std::wstring::npos ? std::wstring{} : value_.substr(colon + 1));
        } else if (value_ == L"nothing") {
            script_.answers(name);
        } else if (value_.starts_with(leavesWord)) {
            script_.hook(name, [words = value_.substr(leavesWord.size())](Call& call) {
                leaveErrorInformation(words);
                return call.healthy();
            });
        } else if (value_.starts_with(partlyWord)) {
            givePartly(name, outputs(value_.substr(partlyWord.size())));
        } else {
            script_.answers(name, outputs(value_));
        }
    }

    std::vector<com::variant> outputs(std::wstring_view text) const {
        constexpr std::wstring_view separator = L" & ";
        std::vector<com::variant> result;
        for (;;) {
            const std::size_t end = text.find(separator);
            result.push_back(output(std::wstring{text.substr(0, end)}));
            if (end == std::wstring_view::npos) {
                return result;
            }
            text.remove_prefix(end + separator.size());
        }
    }

    com::variant output(const std::wstring& text) const {
        const auto after = [&](std::wstring_view word) { return text.substr(word.size()); };
        if (text == L"empty") {
            return {};
        }
        if (text.starts_with(L"texts ")) {
            return com::textArray(pieces(after(L"texts "), L','));
        }
        if (text.starts_with(L"reals ")) {
            return com::realArray(numbers(after(L"reals ")));
        }
        if (text.starts_with(L"values ")) {
            return mixedArray(pieces(after(L"values "), L','));
        }
        if (text.starts_with(L"text block ")) {
            return textBlock(static_cast<std::size_t>(number(after(L"text block "), whole_)));
        }
        if (text.starts_with(L"real block ")) {
            return realBlock(static_cast<std::size_t>(number(after(L"real block "), whole_)));
        }
        if (text.starts_with(L"text ")) {
            return com::variant{after(L"text ")};
        }
        reject(whole_);
    }

    void givePartly(const std::string& name, std::vector<com::variant> given) {
        const auto kept = std::make_shared<const std::vector<com::variant>>(std::move(given));
        script_.hook(name, [kept](Call& call) {
            for (std::size_t i = 0; i < std::min(kept->size(), call.out.size()); ++i) {
                call.out[i].give(duplicate((*kept)[i]));
            }
            return static_cast<HRESULT>(ECapeThrmPropertyNotAvailableHR);
        });
    }

    void flash() {
        Flash flash;
        for (const std::wstring& piece : pieces(value_, L',')) {
            const std::vector<std::wstring> words = pieces(piece, L' ');
            if (words.size() < 3) {
                reject(whole_);
            }
            const auto temperature = reported(words[1]);
            const auto pressure = reported(words[2]);
            if (words.front() == L"overall" && words.size() == 3) {
                flash.temperature = temperature;
                flash.pressure = pressure;
            } else if (words.size() >= 7) {
                flash.phases.push_back(flashPhase(words, temperature, pressure));
            } else {
                reject(whole_);
            }
        }
        script_.flashes(std::move(flash));
    }

    FlashPhase flashPhase(const std::vector<std::wstring>& words, std::optional<double> temperature,
                          std::optional<double> pressure) const {
        FlashPhase phase{words[0],     reported(words[3]), words[4], std::nullopt,
                         words.back(), temperature,        pressure};
        if (words[5] != notReported) {
            phase.composition.emplace();
            for (std::size_t i = 5; i + 1 < words.size(); ++i) {
                phase.composition->push_back(number(words[i], whole_));
            }
        }
        return phase;
    }

    std::optional<double> reported(const std::wstring& text) const {
        return text == notReported ? std::nullopt : std::optional{number(text, whole_)};
    }

    void property() {
        const std::size_t blank = value_.find(L' ');
        const std::wstring basis = value_.substr(0, blank);
        if (blank == std::wstring::npos || (basis != L"Mole" && basis != L"Mass" && basis != L"None")) {
            reject(whole_);
        }
        script_.calculates(key_, basis == L"None" ? L"" : basis, numbers(value_.substr(blank + 1)));
    }

    std::vector<double> numbers(const std::wstring& text) const {
        std::vector<double> result;
        for (const std::wstring& piece : pieces(text, L',')) {
            result.push_back(number(piece, whole_));
        }
        return result;
    }

    Script& script_;
    std::wstring_view whole_;
    std::wstring key_;
    std::wstring value_;
};

} // namespace

ParsedScripts parseScripts(std::wstring_view text) {
    constexpr std::wstring_view forManager = L"manager.";
    ParsedScripts scripts;
    for (const std::wstring& piece : pieces(text, L';')) {
        std::wstring_view setting{piece};
        if (setting.find_first_not_of(L' ') == std::wstring_view::npos) {
            continue;
        }
        setting.remove_prefix(setting.find_first_not_of(L' '));
        const bool isManagers = setting.starts_with(forManager);
        Setting{isManagers ? *scripts.manager : *scripts.package,
                setting.substr(isManagers ? forManager.size() : 0)}
            .apply();
    }
    return scripts;
}

} // namespace scripted
