// FaultyObject: stands before one of Excel's objects and passes on what a client asks of it, except where a
// test has said otherwise. FaultyFrontEnd: a front end that may refuse the services.
#pragma once

#include "com/com_ptr.h"
#include "com/dual.h"
#include "com/implements.h"
#include "tests/scripted_package/script.h"

#include <quorvane_idl.h>

namespace faults {

/// Interfaces that are answered in another way than the object itself would.
class FaultyQueries {
  public:
    void answersQuery(REFIID iid, scripted::QueryAnswer answer) {
        iid_ = iid;
        answer_ = answer;
    }
    void recovers() noexcept { answer_.reset(); }

    HRESULT end(REFIID iid, void** out, const std::function<HRESULT()>& query) const {
        return answer_ && iid == iid_ ? answer_->end(out, query) : query();
    }

  private:
    IID iid_{};
    std::optional<scripted::QueryAnswer> answer_;
};

class FaultyObject final : public com::implements<com::COMObject, IDispatch, IErrorInfo> {
  public:
    /// `face` is the interface by which Excel's object is known: Range, _Application or IDispatch.
    FaultyObject(com::com_ptr<IDispatch> inner, REFIID face) : inner_{std::move(inner)}, face_{face} {}

    using Maker = std::function<com::variant()>;

    void failsToFind(const std::wstring& member, HRESULT code) { unfound_[member] = code; }
    void failsToRead(const std::wstring& member, HRESULT code) { unread_[member] = code; }
    void answers(const std::wstring& member, Maker maker) { answers_[member] = std::move(maker); }
    void answers(const std::wstring& member, IDispatch* object) {
        answers(member,
                [kept = com::com_ptr<IDispatch>::share(object)] { return com::variant::object(kept.get()); });
    }
    /// Until it reads again, instead of its answer.
    void instead(const std::wstring& member, Maker maker) { instead_[member] = std::move(maker); }
    /// Asked for the words of its last failure it answers this; without words the text is null.
    void describes(HRESULT code, std::optional<std::wstring> words) {
        describes_ = true;
        descriptionCode_ = code;
        words_ = std::move(words);
    }
    FaultyQueries queries;

    /// Every member is found and read again.
    void readsAgain() {
        unfound_.clear();
        unread_.clear();
        instead_.clear();
    }
    /// Takes back everything.
    void letGo();

    IDispatch* dispatch() noexcept { return static_cast<IDispatch*>(this); }

    void* findInterface(REFIID iid) noexcept override;
    HRESULT queryInterface(REFIID iid, void** out) noexcept override;

    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) noexcept override;
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo** info) noexcept override;
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID,
                                            DISPID* ids) noexcept override;
    HRESULT STDMETHODCALLTYPE Invoke(DISPID member, REFIID, LCID, WORD flags, DISPPARAMS* parameters,
                                     VARIANT* result, EXCEPINFO*, UINT*) noexcept override;

    HRESULT STDMETHODCALLTYPE GetGUID(GUID*) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetSource(BSTR*) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetDescription(BSTR* out) noexcept override;
    HRESULT STDMETHODCALLTYPE GetHelpFile(BSTR*) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetHelpContext(DWORD*) noexcept override { return E_NOTIMPL; }

  private:
    com::com_ptr<IDispatch> inner_;
    IID face_;
    std::map<std::wstring, HRESULT> unfound_;
    std::map<std::wstring, HRESULT> unread_;
    std::map<std::wstring, Maker> answers_;
    std::map<std::wstring, Maker> instead_;
    /// The value of an object is read without asking for its name; a call by that number is known as
    /// "Invoke".
    std::map<DISPID, std::wstring> names_{{DISPID_VALUE, L"Invoke"}};
    bool describes_ = false;
    HRESULT descriptionCode_ = S_OK;
    std::optional<std::wstring> words_;
};

class FaultyFrontEnd final : public com::implements<com::COMObject, com::RefusedDual<IQuorvaneVSTOContext>> {
  public:
    void* findInterface(REFIID iid) noexcept override {
        return iid == IID_IDispatch ? static_cast<IDispatch*>(this) : implements::findInterface(iid);
    }
    HRESULT queryInterface(REFIID iid, void** out) noexcept override {
        return queries.end(iid, out, [&] { return implements::queryInterface(iid, out); });
    }
    HRESULT STDMETHODCALLTYPE SetServices(IQuorvaneVSTOServices* given) noexcept override {
        if (SUCCEEDED(code)) {
            services = com::com_ptr<IQuorvaneVSTOServices>::share(given);
        }
        return code;
    }

    FaultyQueries queries;
    HRESULT code = S_OK;
    com::com_ptr<IQuorvaneVSTOServices> services;
};

} // namespace faults
