// A client that uses objects by name, as scripts do.
#pragma once

#include "com/com_ptr.h"
#include "com/owned.h"

#include <array>
#include <gtest/gtest.h>
#include <span>

namespace sheet::excel {

struct Answer {
    HRESULT code = S_OK;
    com::variant value;
};

inline Answer invoke(IDispatch* object, DISPID id, std::span<VARIANT> arguments = {},
                     EXCEPINFO* exception = nullptr) {
    DISPPARAMS parameters{arguments.data(), nullptr, static_cast<UINT>(arguments.size()), 0};
    Answer answer;
    answer.code = object->Invoke(id, IID_NULL, LOCALE_SYSTEM_DEFAULT, DISPATCH_PROPERTYGET, &parameters,
                                 &answer.value, exception, nullptr);
    return answer;
}

inline DISPID idOf(IDispatch* object, const wchar_t* name) {
    DISPID id = DISPID_UNKNOWN;
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-const-cast): it is only read
    wchar_t* names[] = {const_cast<wchar_t*>(name)};
    const HRESULT code = object->GetIDsOfNames(IID_NULL, names, 1, LOCALE_USER_DEFAULT, &id);
    EXPECT_EQ(SUCCEEDED(code), id != DISPID_UNKNOWN);
    return id;
}

/// Arguments in declared order.
template <typename... Values>
Answer get(IDispatch* object, const wchar_t* name, Values... values) {
    std::array<com::variant, sizeof...(values)> arguments{com::variant{values}...};
    std::array<VARIANT, sizeof...(values)> reversed{};
    std::copy(arguments.rbegin(), arguments.rend(), reversed.begin());
    return invoke(object, idOf(object, name), reversed);
}

inline com::com_ptr<IDispatch> getObject(IDispatch* object, const wchar_t* name) {
    const Answer answer = get(object, name);
    EXPECT_EQ(answer.code, S_OK);
    EXPECT_EQ(answer.value.vt, VT_DISPATCH);
    return com::com_ptr<IDispatch>::share(answer.value.pdispVal);
}

inline long getNumber(IDispatch* object, const wchar_t* name) {
    const Answer answer = get(object, name);
    EXPECT_EQ(answer.code, S_OK);
    EXPECT_EQ(answer.value.vt, VT_I4);
    return answer.value.lVal;
}

/// Checks that a test leaves no object behind.
class NothingLeft : public testing::Test {
  protected:
    void TearDown() override { EXPECT_EQ(com::liveObjects.load(), before_); }

  private:
    const long before_ = com::liveObjects.load();
};

} // namespace sheet::excel
