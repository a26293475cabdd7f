#include "src/workbook/persistence.h"

#include "com/held_ptr.h"
#include "src/foundation/error_boundary.h"
#include "src/foundation/error_texts.h"
#include "src/foundation/guid_text.h"
#include "src/foundation/range_value.h"
#include "src/foundation/text.h"
#include "src/workbook/memory_stream.h"
#include "src/workbook/saved_state/persisted_package.h"
#include "src/workbook/saved_state/state_text.h"
#include "src/workbook/string_matrix.h"

#include <algorithm>

namespace quorvane {

namespace {

Bytes savedBytesOf(const std::wstring& ppName, const PropertyPackage& package, const Report& report) {
    const auto buffer = std::make_shared<Bytes>();
    const auto stream = com::held_ptr<MemoryStream>::make(buffer, MemoryStream::Access::writable);
    const HRESULT code = package.saveState(stream.get());
    if (FAILED(code)) {
        report(joined(L"Failed to save package ", ppName.c_str(), L": ") + systemErrorText(code));
        return {};
    }
    return std::move(*buffer);
}

PersistedPackage persisted(const std::wstring& ppName, const PropertyPackage& package, const Report& report,
                           InflationAllowance& allowance) {
    const Bytes bytes = savedBytesOf(ppName, package, report);
    return {ppName,
            package.managerName(),
            kindText(package.managerType()),
            guidText(package.managerGUID()),
            package.packageName(),
            bytes.empty() ? package.keptStateText() : stateTextOf(bytes, allowance)};
}

ArrayVariant tableOf(const std::vector<PersistedPackage>& packages) {
    const std::size_t rows = packages.size();
    std::size_t columns = fixedColumns;
    for (const PersistedPackage& package : packages) {
        columns = std::max(columns, columnCount(package));
    }
    ArrayVariant table;
    table.createMatrix(static_cast<std::int32_t>(rows), static_cast<std::int32_t>(columns), VT_BSTR);
    const std::span<BSTR> cells = table.elements<BSTR>();
    for (std::size_t row = 0; row < rows; ++row) {
        for (std::size_t column = 0; column < columns; ++column) {
            if (const std::wstring_view text = cellOf(packages[row], column); !text.empty()) {
                cells[row + column * rows] = com::makeBstr(text).release();
            }
        }
    }
    return table;
}

// Whoever has a hundred messages to close does not want to close a million.
class Messages {
  public:
    explicit Messages(const Report& report) noexcept : report_{report} {}

    void tell(const std::wstring& message) {
        if (++count_ <= most) {
            report_(message);
        }
    }
    void sumUp() {
        if (count_ > most) {
            // Not by to_wstring, which would bring the whole of wprintf into the DLL.
            report_(joined(L"Cannot restore ", utf8ToWide(std::to_string(count_ - most).c_str()),
                           L" more property packages"));
        }
    }

  private:
    static constexpr std::size_t most = 100;

    const Report& report_;
    std::size_t count_ = 0;
};

CAPEOPENPackageManagerType requiredKind(const PersistedPackage& saved) {
    const auto kind = kindOf(saved.kind);
    if (!kind) {
        throw CWStrException{L"unknown/unsupported CAPE-OPEN package manager type. Perhaps this document was "
                             L"stored with a newer version of Quorvane."};
    }
    return static_cast<CAPEOPENPackageManagerType>(*kind);
}

std::shared_ptr<PropertyPackage> restored(const PersistedPackage& saved, InflationAllowance& allowance) {
    if (saved.ppName.empty()) {
        throw CWStrException{L"Excel package name unknown"};
    }
    if (saved.managerGUID.empty()) {
        throw CWStrException{L"GUID unknown"};
    }
    CLSID managerGUID{};
    if (FAILED(CLSIDFromString(saved.managerGUID.c_str(), &managerGUID))) {
        throw CWStrException{L"invalid GUID string"};
    }
    const CAPEOPENPackageManagerType kind = requiredKind(saved);
    const auto bytes = std::make_shared<Bytes>(bytesOfStateText(saved.stateText, allowance));
    const auto stream = bytes->empty()
                            ? com::held_ptr<MemoryStream>{}
                            : com::held_ptr<MemoryStream>::make(bytes, MemoryStream::Access::readOnly);
    return std::make_shared<PropertyPackage>(saved.managerName, managerGUID, kind, saved.packageName,
                                             stream.get());
}

} // namespace

ArrayVariant persist(const WorkbookStore& store, WorkbookKey workbook, const Report& report,
                     InflationAllowance allowance) {
    const std::vector<NamedPackage> packages = store.packagesOf(workbook);
    std::vector<PersistedPackage> rows;
    rows.reserve(packages.size());
    for (const auto& [ppName, package] : packages) {
        rows.push_back(persisted(ppName, *package, report, allowance));
    }
    if (rows.empty()) {
        return {};
    }
    ArrayVariant table = tableOf(rows);
    // Kept for one table only: of a package that cannot be saved a second table holds no state.
    for (const auto& [ppName, package] : packages) {
        package->keepStateText({});
    }
    return table;
}

void depersist(WorkbookStore& store, WorkbookKey workbook, const VARIANT& table, const Report& report,
               InflationAllowance allowance) {
    const VARIANT value = withoutReference(table);
    if (value.vt == VT_EMPTY) {
        return;
    }
    const StringMatrix cells{value};
    if (cells.rows() == 0 || cells.columns() == 0) {
        return;
    }
    const OpenWorkbook opened = store.open(workbook);
    Messages messages{report};
    for (std::size_t row = 0; row < cells.rows(); ++row) {
        PersistedPackage saved =
            readPersistedPackage(cells.columns(), [&](std::size_t column) { return cells.at(row, column); });
        if (saved.managerName.empty()) {
            saved.managerName = L"<Unknown manager>";
        }
        try {
            auto package = restored(saved, allowance);
            package->keepStateText(std::move(saved.stateText));
            if (!WorkbookStore::enterPackage(opened, saved.ppName, std::move(package))) {
                return; // the workbook was closed meanwhile
            }
        } catch (const std::bad_alloc&) {
            throw;
        } catch (...) {
            const com::unique_bstr reason = currentFailureMessage();
            // A name ends at a zero, as a message box does: the reason is to be seen behind it.
            messages.tell(joined(L"Cannot restore property package from ", saved.managerName.c_str(), L": ") +
                          std::wstring{com::viewOf(reason)});
        }
    }
    messages.sumUp();
}

} // namespace quorvane
