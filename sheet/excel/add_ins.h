// Application.COMAddIns and its items, as far as add-ins look at them.
#pragma once

#include "sheet/excel/late_bound.h"

namespace sheet::excel {

class COMAddIn final : public LateBound<COMAddIn> {
  public:
    explicit COMAddIn(std::wstring progId) : progId_{std::move(progId)} {}

    const std::wstring& progId() const noexcept { return progId_; }
    /// Null: the add-in offers no object.
    void setObject(com::com_ptr<IDispatch> object) noexcept { object_ = std::move(object); }

    static std::span<const Member<COMAddIn>> members();

  private:
    com::variant description(Arguments) { return com::variant{progId_}; }
    com::variant progIdText(Arguments) { return com::variant{progId_}; }
    com::variant connect(Arguments) { return com::variant{true}; }
    com::variant object(Arguments) { return objectOrNothing(object_.get()); }

    std::wstring progId_;
    com::com_ptr<IDispatch> object_;
};

class COMAddIns final : public LateBound<COMAddIns> {
  public:
    COMAddIn& add(std::wstring progId, com::com_ptr<IDispatch> object = {});
    void clear() noexcept { addIns_.clear(); }

    static std::span<const Member<COMAddIns>> members();

  private:
    com::variant item(Arguments arguments);
    com::variant count(Arguments) { return com::variant{static_cast<long>(addIns_.size())}; }

    std::vector<com::com_ptr<COMAddIn>> addIns_;
};

} // namespace sheet::excel
