#include "src/workbook/saved_state/persisted_package.h"

#include "src/foundation/exceptions.h"

#include <algorithm>
#include <array>

namespace quorvane {

namespace {

constexpr const wchar_t* firstPieceColumn = L"6";
static_assert(fixedColumns == 6);

// By CAPEOPENPackageManagerType.
constexpr std::array<const wchar_t*, 2> kinds = {L"StandAlonePackage11", L"PropertyPackageManager11"};

bool isCut(std::wstring_view stateText) noexcept { return stateText.size() >= cellLength; }

} // namespace

std::size_t columnCount(const PersistedPackage& package) noexcept {
    // A text that fills its last piece gets one column more than it needs: existing workbooks have it.
    return isCut(package.stateText) ? fixedColumns + package.stateText.size() / cellLength + 1 : fixedColumns;
}

std::wstring_view cellOf(const PersistedPackage& package, std::size_t column) noexcept {
    const std::wstring_view state = package.stateText;
    if (column >= fixedColumns) {
        const std::size_t begin = (column - fixedColumns) * cellLength;
        return isCut(state) && begin < state.size() ? state.substr(begin, cellLength) : std::wstring_view{};
    }
    const std::array<std::wstring_view, fixedColumns> cells = {
        package.ppName,      package.managerName, package.kind,
        package.managerGUID, package.packageName, isCut(state) ? std::wstring_view{firstPieceColumn} : state};
    return cells[column];
}

const wchar_t* kindText(std::int32_t kind) {
    if (kind < 0 || static_cast<std::size_t>(kind) >= kinds.size()) {
        throw CWStrException{L"Internal error: unsupported manager type"};
    }
    return kinds[static_cast<std::size_t>(kind)];
}

std::optional<std::int32_t> kindOf(std::wstring_view text) noexcept {
    const auto found =
        std::ranges::find(kinds, text, [](const wchar_t* kind) { return std::wstring_view{kind}; });
    if (found == kinds.end()) {
        return std::nullopt;
    }
    return static_cast<std::int32_t>(found - kinds.begin());
}

namespace detail {

std::optional<std::size_t> firstPiece(std::wstring_view text, std::size_t columns) noexcept {
    if (text.empty() || text.find_first_not_of(L"0123456789") != std::wstring_view::npos) {
        return std::nullopt;
    }
    std::size_t number = 0;
    for (const wchar_t digit : text) {
        number = std::min(number * 10 + static_cast<std::size_t>(digit - L'0'), columns);
    }
    return number;
}

} // namespace detail

} // namespace quorvane
