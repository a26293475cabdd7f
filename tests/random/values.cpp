#include "tests/random/values.h"

#include "com/safe_array.h"
#include "sheet/excel/application.h"

#include <algorithm>
#include <limits>

namespace chance {

namespace {

using sheet::excel::Range;
using Limits = std::numeric_limits<double>;

constexpr auto notAvailable = static_cast<SCODE>(0x800A07FAU);
constexpr auto valueError = static_cast<SCODE>(0x800A07DFU);

com::variant plain(VARTYPE type, LONGLONG bits) {
    com::variant value;
    value.vt = type;
    value.llVal = bits;
    return value;
}

// An index of the last place beyond the last or before the first one is what loops get wrong.
std::size_t lengthNear(Dice& dice, std::size_t likely) {
    switch (dice.below(12)) {
    case 0:
        return 0;
    case 1:
        return likely - 1;
    case 2:
        return likely + 1;
    case 3:
        return dice.below(40);
    case 4:
        return dice.percent(1) ? 100000 : 1;
    default:
        return likely;
    }
}

com::variant element(Dice& dice) {
    switch (dice.below(6)) {
    case 0:
        return anyScalar(dice);
    case 1:
        return com::variant{std::wstring_view{anyText(dice)}};
    case 2:
        return com::variant{1.0};
    default:
        return com::variant{anyReal(dice)};
    }
}

void fill(SAFEARRAY* array, VARTYPE type, Dice& dice) {
    if (type == VT_VARIANT) {
        const com::array_lock<VARIANT> lock{array};
        std::ranges::generate(lock.elements(), [&] { return element(dice).release(); });
    } else if (type == VT_BSTR) {
        const com::array_lock<BSTR> lock{array};
        std::ranges::generate(lock.elements(), [&] {
            return dice.percent(10) ? nullptr : com::makeBstr(anyText(dice)).release();
        });
    } else if (type == VT_R8) {
        const com::array_lock<double> lock{array};
        std::ranges::generate(lock.elements(), [&] { return anyReal(dice); });
    }
}

std::vector<com::variant> someCells(Dice& dice, std::size_t count) {
    std::vector<com::variant> cells;
    for (std::size_t i = 0; i < count; ++i) {
        cells.push_back(element(dice));
    }
    return cells;
}

void misbehave(Dice& dice, Range& range) {
    constexpr std::array members = {L"Value", L"_Default", L"Value2", L"Rows", L"Columns", L"Count"};
    constexpr std::array<HRESULT, 4> codes = {E_FAIL, DISP_E_MEMBERNOTFOUND,
                                              static_cast<HRESULT>(RPC_E_CALL_REJECTED), E_OUTOFMEMORY};
    const wchar_t* const member = dice.of(members);
    switch (dice.below(4)) {
    case 0:
        range.hide(member);
        break;
    case 1:
        range.answer(member, anyScalar(dice));
        break;
    case 2:
        range.answer(member, anyArray(dice, 3));
        break;
    default:
        range.fail(member, dice.of(codes), dice.percent(50) ? L"The cell is being edited" : L"");
    }
}

com::variant object(Dice& dice) {
    switch (dice.below(3)) {
    case 0:
        return com::variant::object(nullptr);
    case 1: {
        com::variant value = com::variant::object(com::make<sheet::excel::Workbook>(L"Book")->dispatch());
        value.vt = VT_UNKNOWN;
        return value;
    }
    default:
        return com::variant::object(com::make<sheet::excel::Workbook>(L"Book")->dispatch());
    }
}

} // namespace

double anyReal(Dice& dice) {
    constexpr std::array special = {0.0,
                                    -0.0,
                                    1.0,
                                    -1.0,
                                    2.0,
                                    3.0,
                                    0.5,
                                    1.0000005,
                                    Limits::quiet_NaN(),
                                    Limits::infinity(),
                                    -Limits::infinity(),
                                    Limits::denorm_min(),
                                    Limits::min(),
                                    Limits::max(),
                                    Limits::lowest(),
                                    2147483647.0,
                                    2147483648.0,
                                    -2147483649.0,
                                    1e300};
    switch (dice.below(3)) {
    case 0:
        return dice.of(special);
    case 1:
        return static_cast<double>(dice.below(100000)) / 100.0;
    default:
        return std::bit_cast<double>(dice.bits());
    }
}

std::wstring anyCase(Dice& dice, std::wstring word) {
    for (wchar_t& unit : word) {
        const bool isLetter = (unit >= L'a' && unit <= L'z') || (unit >= L'A' && unit <= L'Z');
        if (isLetter && dice.percent(30)) {
            unit = static_cast<wchar_t>(unit ^ 0x20);
        }
    }
    return word;
}

std::wstring anyText(Dice& dice) {
    static const std::array<std::wstring, 30> words = {L"",
                                                       L" ",
                                                       L"2",
                                                       L"-1",
                                                       L"1e3",
                                                       L"1,5",
                                                       L"0x10",
                                                       L"TRUE",
                                                       L"all",
                                                       L"horizontal",
                                                       L"vertical",
                                                       L"matrix",
                                                       L"auto",
                                                       L"mole",
                                                       L"mass",
                                                       L"both",
                                                       L"phase 1",
                                                       L"Vapor",
                                                       L"Liquid",
                                                       L"enthalpy",
                                                       L"Alpha",
                                                       L"temperature",
                                                       L"molefraction",
                                                       L"enthalpy.Dmoles",
                                                       L"enthalpy,entropy",
                                                       L",,",
                                                       L"overallResults,noTemperature",
                                                       std::wstring{L"a\0b", 3},
                                                       L"\x00e9\x4e2d",
                                                       L"volume.DmolFraction.Dtemperature"};
    switch (dice.below(5)) {
    case 0:
        return std::wstring(dice.percent(3) ? 10000 : 300, L'x');
    case 1: {
        std::wstring units(dice.below(8), L'\0');
        std::ranges::generate(units, [&] { return static_cast<wchar_t>(dice.below(0x10000)); });
        return units; // lone surrogates and null characters included
    }
    default:
        return anyCase(dice, dice.of(words));
    }
}

com::variant anyScalar(Dice& dice) {
    constexpr std::array<VARTYPE, 14> numbers = {VT_I1,  VT_UI1, VT_I2,   VT_UI2, VT_I4, VT_UI4,  VT_I8,
                                                 VT_UI8, VT_INT, VT_UINT, VT_R4,  VT_CY, VT_DATE, VT_BOOL};
    constexpr std::array<SCODE, 4> errors = {DISP_E_PARAMNOTFOUND, notAvailable, valueError, E_FAIL};
    switch (dice.below(9)) {
    case 0:
        return {};
    case 1:
    case 2:
        return plain(dice.of(numbers), static_cast<LONGLONG>(dice.percent(70) ? dice.below(5) : dice.bits()));
    case 3:
        return plain(VT_ERROR, dice.of(errors));
    case 4:
        return plain(dice.percent(50) ? VARTYPE{VT_NULL} : dice.of(unheardOfTypes), 0);
    case 5: {
        com::variant value;
        value.decVal.Lo64 = dice.below(1000);
        value.vt = VT_DECIMAL;
        return value;
    }
    case 6:
        return com::variant{com::unique_bstr{}};
    case 7:
        return com::variant{std::wstring_view{anyText(dice)}};
    default:
        return com::variant{anyReal(dice)};
    }
}

com::variant anyArray(Dice& dice, std::size_t likely) {
    constexpr std::array<VARTYPE, 9> types = {VT_R8,   VT_R8, VT_VARIANT, VT_VARIANT, VT_BSTR,
                                              VT_BSTR, VT_I4, VT_UI1,     VT_DISPATCH};
    constexpr std::array<LONG, 6> lowers = {0, 0, 1, 1, -3, 7};
    const VARTYPE type = dice.of(types);
    if (dice.percent(3)) {
        return com::variant::array({}, type);
    }
    std::array<SAFEARRAYBOUND, 3> bounds{};
    const std::size_t dimensions = dice.percent(10) ? 3 : 1 + dice.below(2);
    const std::size_t length = lengthNear(dice, likely);
    for (std::size_t i = 0; i < dimensions; ++i) {
        bounds[i] = {dimensions == 3 ? 2U : dice.percent(50) ? 1U : 2U, dice.of(lowers)};
    }
    bounds[dice.below(dimensions)].cElements = static_cast<ULONG>(length);
    com::unique_safearray array{SafeArrayCreate(type, static_cast<UINT>(dimensions), bounds.data())};
    if (!array) {
        throw std::bad_alloc{};
    }
    fill(array.get(), type, dice);
    // What the label says need not be what is in there.
    return com::variant::array(std::move(array), dice.percent(3) ? dice.of(types) : type);
}

bool holdsWhatItSays(const VARIANT& value) {
    if ((value.vt & VT_ARRAY) == 0) {
        return true;
    }
    VARTYPE actual = VT_EMPTY;
    return value.parray != nullptr && SUCCEEDED(SafeArrayGetVartype(value.parray, &actual)) &&
           value.vt == (VT_ARRAY | actual);
}

com::variant cellsOf(Dice& dice, std::vector<com::variant> cells) {
    const std::size_t count = cells.size();
    if (count == 0) {
        return com::variant::array(com::makeVector(VT_VARIANT, 0), VT_VARIANT);
    }
    const std::size_t form = dice.below(6);
    if (form < 2) {
        const auto range = com::make<Range>(form == 0 ? 1 : count, form == 0 ? count : 1, std::move(cells));
        return com::variant::object(range->dispatch());
    }
    com::unique_safearray array = form == 2   ? com::makeMatrix(VT_VARIANT, 1, count)
                                  : form == 3 ? com::makeMatrix(VT_VARIANT, count, 1)
                                              : com::makeVector(VT_VARIANT, count);
    {
        const com::array_lock<VARIANT> lock{array.get()};
        std::ranges::transform(cells, lock.elements().begin(),
                               [](com::variant& cell) { return cell.release(); });
    }
    return com::variant::array(std::move(array), VT_VARIANT);
}

com::variant anyRange(Dice& dice, std::size_t likely) {
    const std::size_t length = std::max<std::size_t>(lengthNear(dice, likely), 1);
    const std::size_t breadth = dice.percent(80) || length > 100 ? 1 : 2;
    const bool isColumn = dice.percent(50);
    const auto range = com::make<Range>(isColumn ? length : breadth, isColumn ? breadth : length,
                                        someCells(dice, length * breadth));
    if (dice.percent(15)) {
        misbehave(dice, *range);
    }
    return com::variant::object(range->dispatch());
}

com::variant anyValue(Dice& dice, std::size_t likely) {
    switch (dice.below(8)) {
    case 0:
    case 1:
        return anyArray(dice, likely);
    case 2:
        return anyRange(dice, likely);
    case 3:
        return object(dice);
    case 4:
        return com::variant::missing();
    default:
        return anyScalar(dice);
    }
}

Value byReference(com::variant value) {
    Value result;
    result.target = std::make_unique<com::variant>(std::move(value));
    VARIANT& target = *result.target;
    result.value.vt = static_cast<VARTYPE>(VT_BYREF | target.vt);
    if (target.vt == VT_EMPTY || target.vt == VT_NULL) {
        result.value.vt = VT_BYREF | VT_VARIANT;
        result.value.pvarVal = &target;
    } else if (target.vt == VT_DECIMAL) {
        result.value.pdecVal = &target.decVal;
    } else {
        result.value.pllVal = &target.llVal;
    }
    return result;
}

Value passed(Dice& dice, com::variant value) {
    const bool isScalar = (value.vt & VT_ARRAY) == 0 && value.vt != VT_DISPATCH && value.vt != VT_UNKNOWN;
    switch (dice.below(10)) {
    case 0:
        return byReference(std::move(value));
    case 1: {
        Value result;
        result.target = std::make_unique<com::variant>(std::move(value));
        result.value.vt = VT_BYREF | VT_VARIANT;
        result.value.pvarVal = result.target.get();
        return result;
    }
    case 2:
    case 3:
        if (isScalar && value.vt != VT_ERROR) {
            return {com::variant::object(Range::cell(std::move(value))->dispatch()), nullptr};
        }
        [[fallthrough]];
    default:
        return {std::move(value), nullptr};
    }
}

} // namespace chance
