// Stage: the worksheet of the matrix. Excel's objects stand behind faulty ones, the workbook has the package
// P, and each way by which a user comes to a foreign call can be gone and gone again. What the user sees is
// one text: the message of a failure behind "! ", or the result.
#pragma once

#include "tests/faults/codes.h"
#include "tests/faults/faulty_object.h"
#include "tests/faults/tables.h"
#include "tests/src/server/worksheet.h"

namespace faults {

class Stage : public tests::Worksheet {
  public:
    struct Way {
        std::function<void(Stage&)> prepare;   ///< with everything healthy
        std::function<std::string(Stage&)> go; ///< what the user sees
        std::function<std::string(Stage&)>
            again; ///< the same once more, without preparation; none: not possible
    };
    static const Way& wayNamed(const std::string& name);
    static std::vector<std::string> wayNames();

    /// What the user sees when nothing fails.
    static const std::string& healthy(const std::string& way);
    /// Prepares and goes; `fault` comes in between.
    std::string go(const std::string& way, const std::function<void()>& fault);
    /// After the fault was taken back: the same objects work again where they failed, and new ones do. What a
    /// package hands over is remembered where it could be used.
    enum class Memory { none, ofResults, ofEverything };
    void expectHealthyAgain(const std::string& way, const std::string& seen, Memory memory = Memory::none);
    /// The user sees what the outcome of the table says, for a failure with this code and these words of the
    /// package.
    std::string expected(const std::string& outcome, const std::string& way, HRESULT code,
                         const std::string& reason = {});

    // What the ways are made of.

    void attachNew();
    void remove();
    std::string worksheet(const wchar_t* function, std::vector<com::variant> arguments);
    /// What a service ended with; `result` is asked when it succeeded. A failure with another code than
    /// `ofFailures` is told with its code: Persist and Depersist report what failed and go on.
    std::string service(HRESULT code, const std::function<std::string()>& result,
                        HRESULT ofFailures = E_FAIL);
    std::string connect();
    /// Connects another add-in, whose front end has no services yet.
    void startAnew();

    com::com_ptr<FaultyObject> objectNamed(const std::string& name) const;
    const com::com_ptr<FaultyFrontEnd>& newFrontEnd() const { return frontEndObject_; }
    scripted::Script& scriptOf(const std::string& object);
    IUnknown* faultyBook() const { return objectNamed("book")->dispatch(); }

    using Worksheet::addIn;
    using Worksheet::excel;
    using Worksheet::manager;
    using Worksheet::package;

    com::variant savedTable;

  protected:
    void SetUp() override;
    void TearDown() override;

  private:
    void put(const std::string& name, IDispatch* inner, REFIID face);

    std::map<std::string, com::com_ptr<FaultyObject>> objects_;
    com::com_ptr<FaultyFrontEnd> frontEndObject_;
};

/// As text: the elements of an array, whatever its bounds, rows separated by "/"; the first of many and their
/// number.
std::string seen(const VARIANT& value);

/// What the material says about a write that it refused, as a failure of the package.
scripted::Failure refusalOf(ICapeThermoMaterial* material);

IID iidNamed(const std::string& interfaceName);

} // namespace faults
