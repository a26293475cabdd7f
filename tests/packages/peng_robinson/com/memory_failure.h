// The fixture of the tests of want of memory: a method of the package or of the manager is called with the
// first allocation refused that the DLL asks for, then with the second, and so on until the call needs no
// more: of its own heap and of COM's, one allocation alone or all from there on. Each time the method says
// so, the package is what it was, nothing is lost, and the same call then succeeds.
#pragma once

#include "tests/leak_gate/allocations.h"
#include "tests/packages/peng_robinson/com/byte_stream.h"
#include "tests/packages/peng_robinson/com/definition_files.h"
#include "tests/packages/peng_robinson/com/test_material.h"

namespace peng_robinson::test {

constexpr auto noMemory = static_cast<HRESULT>(ECapeNoMemoryHR);

/// The DLL's number in the book of allocations.
leak_gate::Owner packageDll();

std::string plain(std::wstring_view text);
std::string shown(const VARIANT& value);

/// What a call ends with.
struct Answer {
    HRESULT code = S_OK;
    std::string outputs = {};

    bool operator==(const Answer&) const = default;
};

void PrintTo(const Answer& answer, std::ostream* out);

/// New objects, of which nothing is set but a material.
struct Stage {
    com::com_ptr<IDispatch> package = PackageDll::instance().createPackage();
    com::com_ptr<IDispatch> manager = PackageDll::instance().createManager();
    com::com_ptr<TestMaterial> material = com::make<TestMaterial>(Texts{L"propane", L"methane"});
    com::com_ptr<ByteStream> stream = com::make<ByteStream>(); ///< with a saved package of fewer compounds

    Stage();

    template <typename Interface>
    com::com_ptr<Interface> of() const {
        return package.tryAs<Interface>();
    }
    com::com_ptr<ICapeThermoPropertyPackageManager> managing() const {
        return manager.tryAs<ICapeThermoPropertyPackageManager>();
    }

    /// What the material was given.
    std::string written(const wchar_t* label, const wchar_t* property) const;
    /// All that is kept by the package from call to call.
    std::string kept() const;
};

struct Case {
    const char* interfaceName;
    const char* method;
    Answer (*call)(Stage& stage);
    const char* further = ""; ///< for the further cases of one method
};

void PrintTo(const Case& tested, std::ostream* out);

/// With a definition "my gas" in the folder of definitions.
class MemoryFailure : public DefinitionFiles, public testing::WithParamInterface<Case> {
  public:
    void SetUp() override;

  protected:
    struct Means;

    void failEachAllocation(const Means& means);

  private:
    static Answer call();
    void failOne(const Means& means, long long position, bool& happened) const;

    leak_gate::Owner dll_ = packageDll();
    Answer healthy_{};
};

} // namespace peng_robinson::test
