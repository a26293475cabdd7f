#include "tests/scripted_package/component.h"

#include <stdexcept>

namespace scripted {

Component::Component(std::shared_ptr<Script> script, std::wstring name)
    : script_{std::move(script)}, name_{std::move(name)} {
    ++liveComponents;
}

Component::~Component() { --liveComponents; }

void* Component::findInterface(REFIID iid) noexcept {
    return implements::findInterface(iid == IID_IDispatch ? __uuidof(ICapeIdentification) : iid);
}

HRESULT Component::queryInterface(REFIID iid, void** out) noexcept {
    script_->asked(iid);
    const QueryAnswer* const answer = script_->queryAnswerOf(iid);
    const auto query = [&] { return implements::queryInterface(iid, out); };
    return answer == nullptr || out == nullptr ? query() : answer->end(out, query);
}

VARIANT Component::argument(BSTR text) noexcept {
    VARIANT value{};
    value.vt = VT_BSTR;
    value.bstrVal = text;
    return value;
}

VARIANT Component::argument(double number) noexcept {
    VARIANT value{};
    value.vt = VT_R8;
    value.dblVal = number;
    return value;
}

VARIANT Component::argument(LONG number) noexcept {
    VARIANT value{};
    value.vt = VT_I4;
    value.lVal = number;
    return value;
}

VARIANT Component::argument(bool truth) noexcept {
    VARIANT value{};
    value.vt = VT_BOOL;
    value.boolVal = truth ? VARIANT_TRUE : VARIANT_FALSE;
    return value;
}

VARIANT Component::argument(IUnknown* object) noexcept {
    VARIANT value{};
    value.vt = VT_UNKNOWN;
    value.punkVal = object;
    return value;
}

HRESULT Component::refuse(HRESULT code, std::wstring description, std::wstring name) {
    lastError_ = {code, std::move(description), std::move(name)};
    return code;
}

HRESULT Component::giveAnswer(const std::vector<com::variant>& answer, std::span<const Out> out) {
    if (answer.size() > out.size()) {
        throw std::logic_error("The script's answer has more outputs than the method");
    }
    for (std::size_t i = 0; i < answer.size(); ++i) {
        out[i].give(duplicate(answer[i]));
    }
    return S_OK;
}

HRESULT Component::perform(Call& call) {
    lastMethod_ = call.method;
    script_->heard(call.method, call.in);
    if (const Script::Hook* hook = script_->hookOf(call.method)) {
        // A copy: the hook may change the script, itself included.
        return Script::Hook{*hook}(call);
    }
    if (const Failure* failure = script_->failureOf(call.method)) {
        return refuse(failure->code, failure->description, failure->name);
    }
    if (const auto* answer = script_->answerOf(call.method)) {
        return giveAnswer(*answer, call.out);
    }
    return call.healthy();
}

HRESULT Component::respond(const char* method, std::initializer_list<VARIANT> in,
                           std::initializer_list<Out> out, const std::function<void()>& healthy) noexcept {
    for (const Out& output : out) {
        if (output.isNull()) {
            return E_POINTER;
        }
    }
    try {
        Call call{method, {in.begin(), in.size()}, {out.begin(), out.size()}, activeMaterial(), [&] {
                      healthy();
                      return S_OK;
                  }};
        return perform(call);
    } catch (const Refusal& refusal) {
        lastError_ = {refusal.code, refusal.description, {}};
        return refusal.code;
    } catch (const Failure& failure) {
        return refuse(failure.code, failure.description, failure.name);
    } catch (const std::exception& failure) {
        lastError_ = {E_UNEXPECTED, wide(failure.what()), {}};
        return E_UNEXPECTED;
    } catch (...) {
        return E_UNEXPECTED;
    }
}

HRESULT STDMETHODCALLTYPE Component::get_ComponentName(BSTR* name) noexcept {
    return respond("get_ComponentName", {}, {name}, [&] { *name = com::makeBstr(name_).release(); });
}

HRESULT STDMETHODCALLTYPE Component::put_ComponentName(BSTR name) noexcept {
    return respond("put_ComponentName", {argument(name)}, {}, [&] { name_ = com::viewOf(name); });
}

HRESULT STDMETHODCALLTYPE Component::get_ComponentDescription(BSTR* description) noexcept {
    return respond("get_ComponentDescription", {}, {description},
                   [&] { *description = com::makeBstr(description_).release(); });
}

HRESULT STDMETHODCALLTYPE Component::put_ComponentDescription(BSTR description) noexcept {
    return respond("put_ComponentDescription", {argument(description)}, {},
                   [&] { description_ = com::viewOf(description); });
}

HRESULT STDMETHODCALLTYPE Component::get_parameters(IDispatch** parameters) noexcept {
    return respond("get_parameters", {}, {parameters}, [] {
        throw Refusal{static_cast<HRESULT>(ECapeNoImplHR), L"The scripted component has no parameters"};
    });
}

HRESULT STDMETHODCALLTYPE Component::put_simulationContext(IDispatch* context) noexcept {
    return respond("put_simulationContext", {argument(context)}, {}, [] {});
}

HRESULT STDMETHODCALLTYPE Component::Initialize() noexcept {
    return respond("Initialize", {}, {}, [] {});
}

HRESULT STDMETHODCALLTYPE Component::Terminate() noexcept {
    return respond("Terminate", {}, {}, [&] { terminated(); });
}

HRESULT STDMETHODCALLTYPE Component::Edit() noexcept {
    return respond("Edit", {}, {}, [&] { script_->model.state += ", edited"; });
}

// The error interfaces speak of the call before, and so must not change what they speak of.
HRESULT Component::giveErrorText(const char* method, BSTR* out, const std::wstring& text) noexcept {
    const Failure kept = lastError_;
    const std::string keptMethod = lastMethod_;
    com::unique_bstr given;
    const HRESULT code = respond(method, {}, {out}, [&] {
        given = com::makeBstr(text);
        *out = given.get();
    });
    // What came with a failure is not the caller's to free, nor to read.
    if (SUCCEEDED(code)) {
        static_cast<void>(given.release());
    }
    lastError_ = kept;
    lastMethod_ = keptMethod;
    return code;
}

HRESULT STDMETHODCALLTYPE Component::get_name(BSTR* name) noexcept {
    return giveErrorText("get_name", name, lastError_.name);
}

HRESULT STDMETHODCALLTYPE Component::get_code(LONG* code) noexcept {
    return respond("get_code", {}, {code}, [&] { *code = 0; });
}

HRESULT STDMETHODCALLTYPE Component::get_description(BSTR* description) noexcept {
    return giveErrorText("get_description", description, lastError_.description);
}

HRESULT STDMETHODCALLTYPE Component::get_scope(BSTR* scope) noexcept {
    return giveErrorText("get_scope", scope, name_);
}

HRESULT STDMETHODCALLTYPE Component::get_interfaceName(BSTR* interfaceName) noexcept {
    return giveErrorText("get_interfaceName", interfaceName, L"N/A");
}

HRESULT STDMETHODCALLTYPE Component::get_operation(BSTR* operation) noexcept {
    return giveErrorText("get_operation", operation, wide(lastMethod_));
}

HRESULT STDMETHODCALLTYPE Component::get_moreInfo(BSTR* moreInfo) noexcept {
    return giveErrorText("get_moreInfo", moreInfo, {});
}

} // namespace scripted
