#include "sheet/excel/application.h"

#include <array>

namespace sheet::excel {

namespace {

constexpr SCODE refError = static_cast<SCODE>(0x800A07E7);

} // namespace

std::span<const Member<Workbook>> Workbook::members() {
    static constexpr std::array table{
        Member<Workbook>{L"Name", 110, 0, &Workbook::name},
        Member<Workbook>{L"FullName", 289, 0, &Workbook::name},
    };
    return table;
}

void Application::setCaller() noexcept {
    com::variant nobody;
    nobody.vt = VT_ERROR;
    nobody.scode = refError;
    caller_ = std::move(nobody);
}

std::span<const Member<Application>> Application::members() {
    static constexpr std::array table{
        Member<Application>{L"Name", 110, 0, &Application::name},
        Member<Application>{L"ActiveWorkbook", 308, 0, &Application::activeWorkbook},
        Member<Application>{L"Caller", 317, 1, &Application::caller},
        Member<Application>{L"COMAddIns", 1796, 0, &Application::comAddIns},
    };
    return table;
}

} // namespace sheet::excel
