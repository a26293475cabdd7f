// Application and Workbook: what an add-in sees of Excel itself.
#pragma once

#include "sheet/excel/add_ins.h"
#include "sheet/excel/range.h"

namespace sheet::excel {

class Workbook final : public LateBound<Workbook> {
  public:
    explicit Workbook(std::wstring name) : name_{std::move(name)} {}

    static std::span<const Member<Workbook>> members();

  private:
    com::variant name(Arguments) { return com::variant{name_}; }

    std::wstring name_;
};

class Application final : public LateBound<Application, ExcelApplication> {
  public:
    /// No workbook is open, and nobody is calling.
    Application() { setCaller(); }

    /// Null: no workbook is open.
    void setActiveWorkbook(com::com_ptr<Workbook> workbook) noexcept { workbook_ = std::move(workbook); }

    /// The range in which the formula being calculated stands.
    void setCaller(const com::com_ptr<Range>& range) noexcept {
        caller_ = objectOrNothing(range->dispatch());
    }
    /// Whatever else calls: a text for a button, an error value.
    void setCaller(com::variant caller) noexcept { caller_ = std::move(caller); }
    /// Nobody, which Excel answers by the error value #REF!.
    void setCaller() noexcept;

    COMAddIns& addIns() noexcept { return *addIns_; }

    static std::span<const Member<Application>> members();

  private:
    com::variant name(Arguments) { return com::variant{L"Microsoft Excel"}; }
    com::variant activeWorkbook(Arguments) {
        return objectOrNothing(workbook_ ? workbook_->dispatch() : nullptr);
    }
    com::variant caller(Arguments) { return com::variant::copyOf(caller_); }
    com::variant comAddIns(Arguments) { return objectOrNothing(addIns_->dispatch()); }

    com::com_ptr<Workbook> workbook_;
    com::variant caller_;
    com::com_ptr<COMAddIns> addIns_ = com::make<COMAddIns>();
};

} // namespace sheet::excel
