#include "tests/random/judge.h"

#include "com/safe_array.h"

#include <algorithm>
#include <cmath>

namespace chance {

namespace {

// How a healthy scripted package begins what it says about a call that it refuses.
constexpr std::array<std::wstring_view, 8> scriptedWords = {packagesOwnWords,
                                                            L"The material says: ",
                                                            L"There is no ",
                                                            L"There are no fugacity coefficients",
                                                            L"No material is set",
                                                            L"Two phases are needed",
                                                            L"A condition has three parts",
                                                            L"The stream cannot be "};

struct Shape {
    UINT dimensions = 0;
    LONG rows = 1; ///< the length, for one dimension
    LONG columns = 1;
    bool hasUsualBounds = false; ///< 0 for a list, 1 for a block
};

Shape shapeOf(SAFEARRAY* array) {
    Shape shape;
    shape.dimensions = SafeArrayGetDim(array);
    LONG lower[2] = {};
    LONG upper[2] = {};
    for (UINT i = 0; i < shape.dimensions && i < 2; ++i) {
        SafeArrayGetLBound(array, i + 1, &lower[i]);
        SafeArrayGetUBound(array, i + 1, &upper[i]);
    }
    shape.rows = upper[0] - lower[0] + 1;
    if (shape.dimensions == 2) {
        shape.columns = upper[1] - lower[1] + 1;
        shape.hasUsualBounds = lower[0] == 1 && lower[1] == 1;
    } else {
        shape.hasUsualBounds = lower[0] == 0;
    }
    return shape;
}

bool isScalar(const VARIANT& value) {
    return (value.vt & (VT_ARRAY | VT_BYREF)) == 0 && value.vt != VT_DISPATCH && value.vt != VT_UNKNOWN;
}

/// What a worksheet function may give when it succeeds.
struct Promise {
    const char* function;
    VARTYPE element;    ///< of arrays
    VARTYPE single;     ///< type of a single value; VT_EMPTY: always an array
    bool listsAreLists; ///< a row is a one-dimensional array, not a block of one row
    bool hasMatrix;     ///< there may be blocks of several rows and columns
    bool staysList;     ///< does not look at the orientation
    bool keepsBounds;   ///< a list has the package's bounds
};

constexpr Promise promises[] = {
    {"PackageNames", VT_BSTR, VT_EMPTY, false, false, false, false},
    {"UnitOfMeasure", VT_EMPTY, VT_BSTR, false, false, false, false},
    {"Compounds", VT_BSTR, VT_EMPTY, false, false, false, false},
    {"Phases", VT_BSTR, VT_EMPTY, false, false, false, false},
    {"CompoundConstant", VT_VARIANT, VT_EMPTY, true, false, false, true},
    {"TemperatureDependentProperty", VT_VARIANT, VT_EMPTY, true, false, true, false},
    {"MixtureProperty", VT_R8, VT_R8, true, true, false, false},
    {"TwoPhaseProperty", VT_R8, VT_R8, true, true, false, false},
    {"PhaseEquilibrium", VT_VARIANT, VT_EMPTY, true, true, false, false},
};

std::string badShape(const Promise& promise, const Shape& shape, Direction direction) {
    if (shape.dimensions != 1 && shape.dimensions != 2) {
        return "the result has " + std::to_string(shape.dimensions) + " dimensions";
    }
    if (shape.rows < 1 || shape.columns < 1) {
        return "the result has no elements";
    }
    if (!shape.hasUsualBounds && !(promise.keepsBounds && shape.dimensions == 1)) {
        return "the result has unusual bounds";
    }
    const bool isList = shape.dimensions == 1;
    if (isList && !promise.listsAreLists && shape.rows != 1) {
        return "a row is a list, not a block";
    }
    if (!isList && promise.staysList) {
        return "the result is a block, not a list";
    }
    if (direction == Direction::any || promise.staysList || (isList && !promise.listsAreLists)) {
        return {}; // cannot be told, does not matter, or is one element
    }
    const bool isColumn = !isList && shape.columns == 1;
    const bool isBlock = !isList;
    switch (direction) {
    case Direction::column:
        return isColumn ? "" : "a column was asked for";
    case Direction::matrix:
        // Where there cannot be a matrix it is a row.
        return promise.hasMatrix || isList || shape.rows == 1 ? "" : "a matrix that cannot be is no row";
    default:
        return (promise.listsAreLists ? !isBlock : shape.rows == 1) ? "" : "a row was asked for";
    }
}

std::string badElements(const Promise& promise, SAFEARRAY* array) {
    // A package may be attached under any name, also none; what a package calls its parts has a name.
    if (promise.element == VT_BSTR && promise.function != std::string_view{"PackageNames"}) {
        const com::array_lock<BSTR> lock{array};
        return std::ranges::all_of(lock.elements(), [](BSTR text) { return !com::viewOf(text).empty(); })
                   ? ""
                   : "a name is empty";
    }
    if (promise.element == VT_VARIANT) {
        const com::array_lock<VARIANT> lock{array};
        // What a reference leads to is gone when the cell is looked at.
        const auto isReference = [](const VARIANT& cell) { return (cell.vt & VT_BYREF) != 0; };
        if (std::ranges::any_of(lock.elements(), isReference)) {
            return "a cell refers to a value elsewhere";
        }
        // A constant is the package's own value, of whatever type.
        if (promise.keepsBounds) {
            return {};
        }
        return std::ranges::all_of(lock.elements(), isScalar) ? "" : "a cell holds no single value";
    }
    return {};
}

std::string badResult(const Promise& promise, const VARIANT& result, Direction direction) {
    if (result.vt == VT_EMPTY && promise.function == std::string_view{"Phases"}) {
        return {}; // a package may have no phases
    }
    if (result.vt == promise.single && promise.single != VT_EMPTY) {
        return {};
    }
    if (promise.element == VT_EMPTY || result.vt != (VT_ARRAY | promise.element) ||
        result.parray == nullptr) {
        return "the result is of type " + std::to_string(result.vt);
    }
    VARTYPE actual = VT_EMPTY;
    if (FAILED(SafeArrayGetVartype(result.parray, &actual)) || actual != promise.element) {
        return "the elements are of another type than the result says";
    }
    if (result.parray->cLocks != 0) {
        return "the result is still locked";
    }
    std::string words = badShape(promise, shapeOf(result.parray), direction);
    return words.empty() ? badElements(promise, result.parray) : words;
}

std::wstring systemText(HRESULT code) {
    wchar_t buffer[1024];
    const DWORD length = FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                                        static_cast<DWORD>(code), LOCALE_USER_DEFAULT, buffer,
                                        static_cast<DWORD>(std::size(buffer)), nullptr);
    if (length == 0) {
        std::swprintf(buffer, std::size(buffer), L"error code 0x%08lX", static_cast<unsigned long>(code));
        return buffer;
    }
    const std::wstring text{buffer, length};
    return text.substr(0, text.find_last_not_of(L"\r\n") + 1);
}

bool lockedArgument(const Value& value) {
    const VARIANT& holder = value.target ? static_cast<const VARIANT&>(*value.target) : value.value;
    return (holder.vt & VT_ARRAY) != 0 && holder.parray != nullptr && holder.parray->cLocks != 0;
}

std::string narrow(const std::wstring& text) { return scripted::narrow(text); }

} // namespace

std::optional<std::wstring> ownFailure() {
    com::com_ptr<IErrorInfo> info;
    if (GetErrorInfo(0, info.put()) != S_OK) {
        return std::nullopt;
    }
    com::unique_bstr source;
    com::unique_bstr description;
    info->GetSource(source.put());
    info->GetDescription(description.put());
    return com::viewOf(source) == L"Quorvane.Excel" ? std::optional{std::wstring{com::viewOf(description)}}
                                                    : std::nullopt;
}

Judge::Judge() {
    for (const HRESULT code : failureCodes) {
        systemTexts_.insert(systemText(code));
    }
    for (const HRESULT code : {DISP_E_TYPEMISMATCH, DISP_E_BADVARTYPE, DISP_E_MEMBERNOTFOUND}) {
        systemTexts_.insert(systemText(code));
    }
}

std::string Judge::badText(const std::wstring& text, bool isBundled) const {
    if (text.empty()) {
        return "the failure has no text";
    }
    if (std::wcslen(text.c_str()) != text.size()) {
        return "a null character ends the text early: " + narrow(text);
    }
    const bool isScripted =
        std::ranges::any_of(scriptedWords, [&](std::wstring_view words) { return text.starts_with(words); });
    if (isBundled || isScripted || systemTexts_.contains(text)) {
        return {};
    }
    // A damaged table may have a package quoted that ends in a name of anything.
    const bool endsAsOthersSay = std::ranges::any_of(
        scriptedWords, [&](std::wstring_view words) { return text.find(words) != std::wstring::npos; });
    if (!endsAsOthersSay && std::iswspace(text.back()) != 0) {
        return "the text does not end well: " + narrow(text);
    }
    if (messages_.describe(text)) {
        return {};
    }
    return "nothing explains this text: " + narrow(text);
}

std::string Judge::complaint(const Call& call, bool callerIsColumn, HRESULT code, const VARIANT& result,
                             const std::optional<std::wstring>& failure) const {
    if (std::ranges::any_of(call.arguments, lockedArgument)) {
        return "an argument is still locked";
    }
    if (call.arguments.size() > call.function->parameters.size()) {
        return code == DISP_E_BADPARAMCOUNT && result.vt == VT_EMPTY ? ""
                                                                     : "too many arguments were accepted";
    }
    if (code == DISP_E_BADVARTYPE && hasUnheardOfType(call)) {
        return {};
    }
    if (code != S_OK) {
        return "the code is " + std::to_string(code);
    }
    if (failure) {
        if (result.vt != VT_BSTR || com::viewOf(result.bstrVal) != *failure) {
            return "the cell does not show the failure: " + narrow(*failure);
        }
        return badText(*failure, call.isOfBundled);
    }
    Direction direction = call.direction;
    if (direction == Direction::unsaid) {
        direction = callerIsColumn ? Direction::column : Direction::row;
    }
    const auto promise = std::ranges::find(promises, std::string_view{call.function->name},
                                           [](const Promise& row) { return std::string_view{row.function}; });
    return badResult(*promise, result, direction);
}

std::string Judge::complaint(HRESULT code, const std::optional<std::wstring>& failure) const {
    if (code == E_POINTER) {
        return failure ? "a missing output has a text" : "";
    }
    if (code != S_OK && code != E_FAIL) {
        return "the code is " + std::to_string(code);
    }
    if (!failure) {
        return code == S_OK ? "" : "the failure has no text";
    }
    // A success may have shown a message: of one package among several.
    return badText(*failure, false);
}

} // namespace chance
