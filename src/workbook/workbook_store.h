// WorkbookStore: the named property packages of every open workbook. A workbook is known by the address of
// its COM identity, compared as a plain number: the store never calls the workbook and holds no reference to
// it, so the front end's CloseWorkbook is what keeps a later workbook at the same address from finding the
// packages of an earlier one.
//
// Packages are shared: a call that works with one keeps it alive even if it is deleted meanwhile. Deleting a
// package runs code of its vendor, which may call back; entries are therefore out of the tables before they
// die.
#pragma once

#include "src/package/property_package.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace quorvane {

using WorkbookKey = std::uint64_t;

/// The key of a workbook object. Throws CWStrException "Workbook not specified" for null.
WorkbookKey workbookKey(IUnknown* workbook);

// 64-bit FNV-1a over bytes, low byte of each unit first. Source: Fowler, Noll, Vo.
struct Fnv1aHash {
    using is_transparent = void;
    std::size_t operator()(std::wstring_view name) const noexcept;
    std::size_t operator()(WorkbookKey key) const noexcept;
};

/// From a package's name in the workbook, compared exactly, to the package.
using PackageTable =
    std::unordered_map<std::wstring, std::shared_ptr<PropertyPackage>, Fnv1aHash, std::equal_to<>>;

/// A workbook's table as long as the workbook is open: expired from then on, even if the workbook has got
/// another one since.
using OpenWorkbook = std::weak_ptr<PackageTable>;

struct NamedPackage {
    std::wstring ppName;
    std::shared_ptr<PropertyPackage> package;
};

class WorkbookStore {
  public:
    /// The table of a workbook; an empty one is made for a workbook seen for the first time.
    PackageTable& tableOf(WorkbookKey workbook) { return *sharedTableOf(workbook); }
    /// The same, to tell later whether the workbook was closed meanwhile.
    OpenWorkbook open(WorkbookKey workbook) { return sharedTableOf(workbook); }
    /// The package, or null when the workbook or the name is unknown.
    std::shared_ptr<PropertyPackage> find(WorkbookKey workbook, const std::wstring& ppName) const;
    /// The package. Throws CWStrException "No such package".
    std::shared_ptr<PropertyPackage> require(WorkbookKey workbook, const std::wstring& ppName);

    /// Creates a package and enters it. Throws CWStrException when `ppName` is taken or the workbook is
    /// closed meanwhile, and what PropertyPackage throws; the store is then as it was.
    void createPackage(WorkbookKey workbook, const std::wstring& ppName, std::wstring managerName,
                       const GUID& managerGUID, CAPEOPENPackageManagerType type, std::wstring packageName);
    /// Enters a package in the place of one that has the name. False when the workbook was closed; nothing is
    /// entered then.
    static bool enterPackage(const OpenWorkbook& workbook, const std::wstring& ppName,
                             std::shared_ptr<PropertyPackage> package);
    /// Lets the user edit a package; true when it may have changed. An unknown package is not edited. Throws
    /// CWStrException "Property package does not support editing" or WStrException with the package's own
    /// text.
    bool editPackage(WorkbookKey workbook, const std::wstring& ppName) const;
    void deletePackage(WorkbookKey workbook, const std::wstring& ppName);
    /// Names in the table's order, a one-dimensional array of strings; empty for an unknown workbook or an
    /// empty table.
    ArrayVariant packageNames(WorkbookKey workbook) const;
    /// The packages in the table's order, to work with while the table may change.
    std::vector<NamedPackage> packagesOf(WorkbookKey workbook) const;
    void closeWorkbook(WorkbookKey workbook);
    void clear();

  private:
    const std::shared_ptr<PackageTable>& sharedTableOf(WorkbookKey workbook);

    std::unordered_map<WorkbookKey, std::shared_ptr<PackageTable>, Fnv1aHash> tables_; ///< the only owner
};

} // namespace quorvane
