#include "tests/scripted_package/script.h"

#include "com/com_ptr.h"

#include <cstdio>
#include <new>
#include <stdexcept>

namespace scripted {

namespace {

template <typename Map>
auto* valueAt(Map& map, const char* key) {
    const auto found = map.find(key);
    return found == map.end() ? nullptr : &found->second;
}

void appendLine(const std::wstring& file, const std::string& line) {
    if (std::FILE* stream = _wfopen(file.c_str(), L"ab")) {
        std::fprintf(stream, "%s\n", line.c_str());
        std::fclose(stream);
    }
}

std::wstring guidText(REFIID iid) {
    wchar_t text[40];
    StringFromGUID2(iid, text, static_cast<int>(std::size(text)));
    return text;
}

void require(bool fits) {
    if (!fits) {
        throw std::logic_error("The script's answer has not the type of the method's output");
    }
}

// Stands where nobody may use anything.
class Rubbish final : public IUnknown {
  public:
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void** out) noexcept override {
        ++touches;
        *out = nullptr;
        return E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() noexcept override { return static_cast<ULONG>(++touches); }
    ULONG STDMETHODCALLTYPE Release() noexcept override { return static_cast<ULONG>(++touches); }

    std::size_t touches = 0;
    wchar_t text[8] = L"rubbish"; ///< not made by Automation, which must not free it
};

Rubbish& rubbish() {
    static Rubbish object;
    return object;
}

} // namespace

std::size_t touchesOfRubbish() noexcept { return rubbish().touches; }

com::variant duplicate(const VARIANT& value) {
    return value.vt == VT_BSTR && value.bstrVal == nullptr ? com::variant::attach(value)
                                                           : com::variant::copyOf(value);
}

void leaveErrorInformation(const std::wstring& description) {
    com::com_ptr<ICreateErrorInfo> creator;
    if (FAILED(CreateErrorInfo(creator.put()))) {
        throw std::bad_alloc{};
    }
    creator->SetSource(std::wstring{L"Scripted package"}.data());
    creator->SetDescription(std::wstring{description}.data());
    SetErrorInfo(0, creator.tryAs<IErrorInfo>().get());
}

bool Out::isNull() const noexcept {
    return value_ == nullptr && text_ == nullptr && number_ == nullptr && truth_ == nullptr &&
           object_ == nullptr;
}

void Out::give(com::variant value) const {
    if (value_ != nullptr) {
        if (kind_ == Kind::InOut) {
            com::assign(value_, std::move(value));
        } else {
            *value_ = value.release();
        }
    } else if (text_ != nullptr) {
        require(value.vt == VT_BSTR);
        *text_ = value.release().bstrVal;
    } else if (number_ != nullptr) {
        require(value.vt == VT_I4);
        *number_ = value.lVal;
    } else if (truth_ != nullptr) {
        require(value.vt == VT_BOOL);
        *truth_ = value.boolVal;
    } else if (object_ != nullptr) {
        require(value.vt == VT_DISPATCH);
        *object_ = value.release().pdispVal;
    }
}

const VARIANT& Out::value() const {
    require(value_ != nullptr);
    return *value_;
}

void Out::replace(com::variant value) const {
    require(value_ != nullptr);
    com::assign(value_, std::move(value));
}

void Out::leaveRubbish() const {
    if (value_ != nullptr) {
        com::variant::attach(*value_).clear();
        value_->vt = VT_UNKNOWN;
        value_->punkVal = &rubbish();
    } else if (text_ != nullptr) {
        *text_ = rubbish().text;
    }
}

HRESULT QueryAnswer::end(void** out, const std::function<HRESULT()>& query) const {
    static std::uintptr_t rubbish[4] = {};
    if (pointer == Pointer::Interface) {
        return SUCCEEDED(query()) ? code : E_NOINTERFACE;
    }
    *out = pointer == Pointer::Rubbish ? static_cast<void*>(rubbish) : nullptr;
    return code;
}

std::string Record::text() const {
    std::string text = method + "(";
    for (const com::variant& argument : arguments) {
        if (&argument != &arguments.front()) {
            text += ", ";
        }
        text += textOf(argument);
    }
    return text + ")";
}

void Script::calculates(std::wstring property, std::wstring basis, std::vector<double> values) {
    model.calculated[std::move(property)] = {std::move(basis), std::move(values)};
}

void Script::fails(std::string method, HRESULT code, std::wstring description, std::wstring name) {
    failures_[std::move(method)] = {code, std::move(description), std::move(name)};
}

void Script::failsAt(std::size_t number, std::string method, HRESULT code, std::wstring description,
                     std::wstring name) {
    hook(std::move(method),
         [number, calls = std::make_shared<std::size_t>(0),
          failure = Failure{code, std::move(description), std::move(name)}](Call& call) -> HRESULT {
             if (++*calls != number) {
                 return call.healthy();
             }
             throw Failure{failure};
         });
}

void Script::ends(std::string method, HRESULT code) {
    hook(std::move(method), [code](Call& call) {
        static_cast<void>(call.healthy());
        if (FAILED(code)) {
            for (const Out& output : call.out) {
                output.leaveRubbish();
            }
        }
        return code;
    });
}

void Script::omits(REFIID iid) { omitted_.insert(guidText(iid)); }

void Script::answersQuery(REFIID iid, QueryAnswer answer) {
    queryAnswers_.insert_or_assign(guidText(iid), answer);
}

void Script::whenAsked(REFIID iid, std::function<void()> action) {
    queryActions_.insert_or_assign(guidText(iid), std::move(action));
}

void Script::asked(REFIID iid) const {
    if (const auto found = queryActions_.find(guidText(iid)); found != queryActions_.end()) {
        const std::function<void()> action = found->second; // which may take itself back
        action();
    }
}

void Script::recovers(REFIID iid) {
    omitted_.erase(guidText(iid));
    queryAnswers_.erase(guidText(iid));
    queryActions_.erase(guidText(iid));
}

const QueryAnswer* Script::queryAnswerOf(REFIID iid) const {
    const auto found = queryAnswers_.find(guidText(iid));
    return found == queryAnswers_.end() ? nullptr : &found->second;
}

void Script::recovers(const std::string& method) {
    hooks_.erase(method);
    failures_.erase(method);
    answers_.erase(method);
}

std::vector<std::string> Script::calls(std::string_view method) const {
    std::vector<std::string> texts;
    for (const Record& record : records_) {
        if (method.empty() || record.method == method) {
            texts.push_back(record.text());
        }
    }
    return texts;
}

void Script::forgetCalls() {
    records_.clear();
    queries_.clear();
}

bool Script::hides(REFIID iid) {
    queries_.push_back(iid);
    return omitted_.contains(guidText(iid));
}

void Script::heard(const char* method, std::span<const VARIANT> in) {
    Record& record = records_.emplace_back();
    record.method = method;
    for (const VARIANT& value : in) {
        // A record that kept objects alive would hide that somebody else forgot to.
        record.arguments.push_back(value.vt == VT_DISPATCH || value.vt == VT_UNKNOWN
                                       ? com::variant{value.punkVal != nullptr}
                                       : duplicate(value));
    }
    if (!log_.empty()) {
        appendLine(log_, record.text());
    }
}

const Script::Hook* Script::hookOf(const char* method) const { return valueAt(hooks_, method); }

const Failure* Script::failureOf(const char* method) const { return valueAt(failures_, method); }

const std::vector<com::variant>* Script::answerOf(const char* method) const {
    return valueAt(answers_, method);
}

} // namespace scripted
