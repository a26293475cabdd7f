// Session: the add-in's connection with Excel. It holds the packages of the open workbooks, knows which
// workbook is current, and hands the services object over to the front end.
#pragma once

#include "src/workbook/workbook_store.h"

#include <array>
#include <quorvane_idl.h>
#include <vector>

namespace quorvane {

class Session {
  public:
    Session() = default;
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;
    /// Excel need not say goodbye before it lets go of the add-in.
    ~Session() { store_.clear(); }

    /// Takes Excel's application object, or lets go of the one held when `application` is null or is not
    /// Excel's.
    void connect(IDispatch* application);
    /// Lets go of Excel, then of all packages.
    void disconnect();
    /// Lets go of all packages, then of Excel, which still answers while the packages are terminated.
    void beginShutdown();

    /// Excel's application object, one for the whole process; null while the add-in is not connected.
    /// Borrowed.
    static com::com_ptr<IDispatch> application() noexcept;

    WorkbookStore& store() noexcept { return store_; }

    /// The packages of the active workbook; it need not be the one that holds the calling cell. Throws
    /// CWStrException "Cannot determine current workbook" or "No current workbook".
    PackageTable& currentWorkbook();

    /// Gives `services` to the front end, Excel's COM add-in "Quorvane", once. Failures are not errors: the
    /// front end may be loaded later, and the next call tries again.
    void handOver(IQuorvaneVSTOServices* services) noexcept;

    /// Memory for numbers that a call works with, to be given back at its end: a sheet calls so often that
    /// taking and freeing it each time is felt. A call inside a call gets memory of its own.
    std::vector<double> lendReals() noexcept;
    void takeBackReals(std::vector<double> reals) noexcept;

  private:
    WorkbookStore store_;
    bool handedOver_ = false;
    bool handingOver_ = false;
    std::array<std::vector<double>, 3> spareReals_; ///< no call has more than two compositions and a result
};

} // namespace quorvane
