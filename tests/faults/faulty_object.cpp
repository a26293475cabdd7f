#include "tests/faults/faulty_object.h"

namespace faults {

namespace {

template <typename Map>
const typename Map::mapped_type* at(const Map& map, const typename Map::key_type& key) {
    const auto found = map.find(key);
    return found == map.end() ? nullptr : &found->second;
}

} // namespace

void FaultyObject::letGo() {
    readsAgain();
    queries.recovers();
    answers_.clear();
    describes_ = false;
}

void* FaultyObject::findInterface(REFIID iid) noexcept {
    if (iid == IID_IErrorInfo && !describes_) {
        return nullptr;
    }
    return implements::findInterface(iid == face_ ? IID_IDispatch : iid);
}

HRESULT FaultyObject::queryInterface(REFIID iid, void** out) noexcept {
    return queries.end(iid, out, [&] { return implements::queryInterface(iid, out); });
}

HRESULT STDMETHODCALLTYPE FaultyObject::GetTypeInfoCount(UINT* count) noexcept {
    return inner_->GetTypeInfoCount(count);
}

HRESULT STDMETHODCALLTYPE FaultyObject::GetTypeInfo(UINT index, LCID locale, ITypeInfo** info) noexcept {
    return inner_->GetTypeInfo(index, locale, info);
}

HRESULT STDMETHODCALLTYPE FaultyObject::GetIDsOfNames(REFIID iid, LPOLESTR* names, UINT count, LCID locale,
                                                      DISPID* ids) noexcept {
    const HRESULT code = inner_->GetIDsOfNames(iid, names, count, locale, ids);
    if (SUCCEEDED(code)) {
        names_[ids[0]] = names[0];
    }
    const HRESULT* const fault = at(unfound_, names[0]);
    return fault == nullptr ? code : *fault;
}

HRESULT STDMETHODCALLTYPE FaultyObject::Invoke(DISPID member, REFIID iid, LCID locale, WORD flags,
                                               DISPPARAMS* parameters, VARIANT* result, EXCEPINFO* exception,
                                               UINT* argument) noexcept {
    const std::wstring& name = names_[member];
    const HRESULT* const fault = at(unread_, name);
    if (fault != nullptr && FAILED(*fault)) {
        return *fault;
    }
    HRESULT code = S_OK;
    if (const Maker* const other = at(instead_, name)) {
        *result = (*other)().release();
    } else if (const Maker* const maker = at(answers_, name)) {
        *result = (*maker)().release();
    } else {
        code = inner_->Invoke(member, iid, locale, flags, parameters, result, exception, argument);
    }
    return fault == nullptr ? code : *fault;
}

HRESULT STDMETHODCALLTYPE FaultyObject::GetDescription(BSTR* out) noexcept {
    if (FAILED(descriptionCode_)) {
        // Not made by Automation, which must not free it.
        *out = words_ ? words_->data() : nullptr;
    } else {
        *out = words_ ? com::makeBstr(*words_).release() : nullptr;
    }
    return descriptionCode_;
}

} // namespace faults
