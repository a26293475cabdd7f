#include "sheet/excel/add_ins.h"

#include <array>

namespace sheet::excel {

std::span<const Member<COMAddIn>> COMAddIn::members() {
    static constexpr std::array table{
        Member<COMAddIn>{L"Description", 0, 0, &COMAddIn::description},
        Member<COMAddIn>{L"ProgId", 3, 0, &COMAddIn::progIdText},
        Member<COMAddIn>{L"Connect", 6, 0, &COMAddIn::connect},
        Member<COMAddIn>{L"Object", 7, 0, &COMAddIn::object},
    };
    return table;
}

COMAddIn& COMAddIns::add(std::wstring progId, com::com_ptr<IDispatch> object) {
    addIns_.push_back(com::make<COMAddIn>(std::move(progId)));
    addIns_.back()->setObject(std::move(object));
    return *addIns_.back();
}

std::span<const Member<COMAddIns>> COMAddIns::members() {
    static constexpr std::array table{
        Member<COMAddIns>{L"Item", DISPID_VALUE, 1, &COMAddIns::item},
        Member<COMAddIns>{L"Count", 1, 0, &COMAddIns::count},
    };
    return table;
}

com::variant COMAddIns::item(Arguments arguments) {
    if (arguments.empty()) {
        throw Refusal{DISP_E_BADPARAMCOUNT};
    }
    const com::variant& index = arguments[0];
    if (index.vt == VT_BSTR) {
        const std::wstring name{com::viewOf(index.bstrVal)};
        for (const com::com_ptr<COMAddIn>& addIn : addIns_) {
            if (equalsNoCase(addIn->progId().c_str(), name.c_str())) {
                return objectOrNothing(addIn->dispatch());
            }
        }
        throw Refusal{DISP_E_BADINDEX};
    }
    const com::variant position = converted(index, VT_I4);
    if (position.vt != VT_I4) {
        throw Refusal{DISP_E_TYPEMISMATCH};
    }
    if (position.lVal < 1 || static_cast<std::size_t>(position.lVal) > addIns_.size()) {
        throw Refusal{DISP_E_BADINDEX};
    }
    return objectOrNothing(addIns_[static_cast<std::size_t>(position.lVal) - 1]->dispatch());
}

} // namespace sheet::excel
