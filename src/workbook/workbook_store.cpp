#include "src/workbook/workbook_store.h"

#include "src/foundation/error_texts.h"
#include "src/foundation/life_cycle.h"

namespace quorvane {

namespace {

constexpr std::uint64_t fnv1aOffset = 0xcbf29ce484222325U;
constexpr std::uint64_t fnv1aPrime = 0x100000001b3U;

template <typename Unit>
std::uint64_t hashBytes(std::uint64_t hash, Unit unit) noexcept {
    for (std::size_t i = 0; i < sizeof(Unit); ++i) {
        hash = (hash ^ ((std::uint64_t{unit} >> (8 * i)) & 0xFFU)) * fnv1aPrime;
    }
    return hash;
}

} // namespace

WorkbookKey workbookKey(IUnknown* workbook) {
    const auto identity = com::queryFor<IUnknown>(workbook);
    if (!identity) {
        throw CWStrException{L"Workbook not specified"};
    }
    return reinterpret_cast<std::uintptr_t>(identity.get());
}

std::size_t Fnv1aHash::operator()(std::wstring_view name) const noexcept {
    std::uint64_t hash = fnv1aOffset;
    for (const wchar_t unit : name) {
        hash = hashBytes(hash, static_cast<std::make_unsigned_t<wchar_t>>(unit));
    }
    return hash;
}

std::size_t Fnv1aHash::operator()(WorkbookKey key) const noexcept { return hashBytes(fnv1aOffset, key); }

const std::shared_ptr<PackageTable>& WorkbookStore::sharedTableOf(WorkbookKey workbook) {
    auto entry = tables_.find(workbook);
    if (entry == tables_.end()) {
        entry = tables_.try_emplace(workbook, std::make_shared<PackageTable>()).first;
    }
    return entry->second;
}

std::shared_ptr<PropertyPackage> WorkbookStore::find(WorkbookKey workbook, const std::wstring& ppName) const {
    const auto table = tables_.find(workbook);
    if (table == tables_.end()) {
        return nullptr;
    }
    const auto entry = table->second->find(ppName);
    return entry == table->second->end() ? nullptr : entry->second;
}

std::shared_ptr<PropertyPackage> WorkbookStore::require(WorkbookKey workbook, const std::wstring& ppName) {
    const PackageTable& table = tableOf(workbook);
    const auto entry = table.find(ppName);
    if (entry == table.end()) {
        throw CWStrException{L"No such package"};
    }
    return entry->second;
}

void WorkbookStore::createPackage(WorkbookKey workbook, const std::wstring& ppName, std::wstring managerName,
                                  const GUID& managerGUID, CAPEOPENPackageManagerType type,
                                  std::wstring packageName) {
    constexpr const wchar_t* taken = L"A package with the given name already exists in this workbook";
    const OpenWorkbook opened = open(workbook);
    if (tableOf(workbook).contains(ppName)) {
        throw CWStrException{taken};
    }
    auto package = std::make_shared<PropertyPackage>(std::move(managerName), managerGUID, type,
                                                     std::move(packageName), nullptr);
    // Looked at again: creating a package runs foreign code, which may have changed the store. Of a workbook
    // that was closed nobody would ever release the package, and another one may have its key by now.
    const auto table = opened.lock();
    if (!table) {
        throw CWStrException{L"The workbook was closed while the package was created"};
    }
    if (!table->try_emplace(ppName, std::move(package)).second) {
        throw CWStrException{taken};
    }
}

bool WorkbookStore::enterPackage(const OpenWorkbook& workbook, const std::wstring& ppName,
                                 std::shared_ptr<PropertyPackage> package) {
    const auto table = workbook.lock();
    if (!table) {
        return false;
    }
    // What was there is released when this returns, the table being complete again.
    (*table)[ppName].swap(package);
    return true;
}

bool WorkbookStore::editPackage(WorkbookKey workbook, const std::wstring& ppName) const {
    constexpr const wchar_t* notEditable = L"Property package does not support editing";
    const std::shared_ptr<PropertyPackage> package = find(workbook, ppName);
    if (!package) {
        return false;
    }
    const auto utilities = com::queryFor<ICapeUtilities>(package->component());
    if (!utilities) {
        throw CWStrException{notEditable};
    }
    const HRESULT code = utilities->Edit();
    if (code == S_FALSE) {
        return false; // the user cancelled
    }
    if (isNotImplemented(code)) {
        throw CWStrException{notEditable};
    }
    // Even an edit that failed half-way may have changed the package.
    package->reset();
    requireSuccess(code, utilities.get(), {});
    return true;
}

void WorkbookStore::deletePackage(WorkbookKey workbook, const std::wstring& ppName) {
    const auto table = tables_.find(workbook);
    if (table != tables_.end()) {
        const auto removed = table->second->extract(ppName);
    }
}

ArrayVariant WorkbookStore::packageNames(WorkbookKey workbook) const {
    std::vector<std::wstring> names;
    if (const auto table = tables_.find(workbook); table != tables_.end()) {
        for (const auto& entry : *table->second) {
            names.push_back(entry.first);
        }
    }
    return stringVectorToArray(names);
}

std::vector<NamedPackage> WorkbookStore::packagesOf(WorkbookKey workbook) const {
    std::vector<NamedPackage> packages;
    if (const auto table = tables_.find(workbook); table != tables_.end()) {
        for (const auto& [ppName, package] : *table->second) {
            packages.push_back({ppName, package});
        }
    }
    return packages;
}

void WorkbookStore::closeWorkbook(WorkbookKey workbook) { const auto removed = tables_.extract(workbook); }

void WorkbookStore::clear() { const auto removed = std::exchange(tables_, {}); }

} // namespace quorvane
