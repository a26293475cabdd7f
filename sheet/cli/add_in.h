// AddIn: Quorvane, loaded and used as Excel does. Excel's part is played by the stand-ins of sheet/excel.
#pragma once

#include "sheet/checking/package.h"
#include "sheet/cli/components.h"
#include "sheet/cli/options.h"
#include "sheet/excel/application.h"
#include "sheet/excel/front_end.h"
#include "sheet/formula/csv.h"
#include "sheet/formula/recalculation.h"

#include <office_idl.h>

#include <map>
#include <stdexcept>

namespace sheet::cli {

/// The add-in or a package cannot be used.
class AddInError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

class AddIn {
  public:
    /// Creates and connects it, with `workbookName` as the open workbook. COM must be initialised.
    explicit AddIn(const std::string& workbookName);
    AddIn(const AddIn&) = delete;
    AddIn& operator=(const AddIn&) = delete;
    /// Shuts it down.
    ~AddIn() = default;

    void attach(const PackageOption& package, const Component& component);

    /// Restores a package from one row of a table of saved packages. Says what hinders it.
    std::optional<std::string> restore(const std::vector<std::string>& row);
    /// The table of all packages. Throws AddInError also when it lacks the state of a package.
    formula::CsvTable savedPackages();

    /// The attached packages, in the order of the alphabet.
    std::vector<std::string> packageNames();
    /// The add-in's description of an attached package: lines that end with "\n". Throws AddInError.
    std::string describe(const std::string& name);

    /// What an attached package says that it can calculate. It refers to this object.
    checking::Offer offerOf(const std::string& name);

    bool hasFunction(const std::string& name);
    /// The formula's own cell or range is the caller. hasFunction() must be true.
    formula::Result call(const formula::EnteredFormula& entered, const formula::Grid& grid);

  private:
    // A member of its own, because an add-in that has been connected must be disconnected also when the
    // constructor fails afterwards.
    class Connection {
      public:
        explicit Connection(excel::FrontEnd& frontEnd) : frontEnd_{frontEnd} {}
        Connection(const Connection&) = delete;
        Connection& operator=(const Connection&) = delete;
        ~Connection();

        com::com_ptr<_IDTExtensibility2> extension; // null while it is not connected

      private:
        excel::FrontEnd& frontEnd_;
    };

    com::com_ptr<excel::Application> application_ = com::make<excel::Application>();
    com::com_ptr<excel::Workbook> workbook_;
    com::com_ptr<excel::FrontEnd> frontEnd_ = com::make<excel::FrontEnd>();
    com::com_ptr<IDispatch> functions_;
    std::map<std::string, DISPID> identifiers_;
    Connection connection_{*frontEnd_};
};

} // namespace sheet::cli
