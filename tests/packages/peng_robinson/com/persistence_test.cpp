#include "packages/peng_robinson/com/identity.h"
#include "packages/peng_robinson/state/state.h"
#include "tests/packages/peng_robinson/com/byte_stream.h"
#include "tests/packages/peng_robinson/com/support.h"
#include "tests/packages/peng_robinson/com/test_material.h"

namespace peng_robinson::test {
namespace {

// A state as another session would have saved it.
Bytes stateOf(const std::vector<std::string>& names, double kOfTheFirstTwo) {
    const auto catalogue = builtInCatalogue();
    Selection selection;
    for (const std::string& name : names) {
        selection.compounds.push_back(catalogue->find(name).value());
    }
    selection.changed[pairOf(selection.compounds[0], selection.compounds[1])] = kOfTheFirstTwo;
    return writeState({catalogue, selection});
}

class Persistence : public Package {
  protected:
    com::com_ptr<IPersistStreamInit> persistence = object.tryAs<IPersistStreamInit>();
    com::com_ptr<ByteStream> stream = com::make<ByteStream>();

    Texts compoundList() { return compoundIdsOf(*compounds); }
    Bytes saved() {
        const auto target = com::make<ByteStream>();
        EXPECT_EQ(persistence->Save(target.get(), FALSE), S_OK);
        return target->bytes;
    }
    HRESULT load(Bytes bytes) {
        stream->bytes = std::move(bytes);
        stream->position = 0;
        return persistence->Load(stream.get());
    }
    /// Logarithms of the fugacity coefficients in an equimolar vapor at 250 K and 1 MPa.
    Reals lnPhi(const Texts& names) {
        const auto material = com::make<TestMaterial>(names);
        EXPECT_EQ(context->SetMaterial(material->self()), S_OK);
        return lnPhiOfTheMaterial(names.size());
    }
    Reals lnPhiOfTheMaterial(std::size_t size) {
        const com::unique_bstr vapor = com::makeBstr(L"Vapor");
        com::variant values, dT, dP, dn;
        EXPECT_EQ(properties->CalcAndGetLnPhi(vapor.get(), 250.0, 1e6, reals(Reals(size, 1.0)),
                                              CAPE_LOG_FUGACITY_COEFFICIENTS, &values, &dT, &dP, &dn),
                  S_OK);
        return realsOf(values);
    }
    void expectRefused(const Bytes& state, HRESULT code, const std::wstring& description) {
        const Bytes before = saved();
        EXPECT_EQ(load(state), code);
        EXPECT_EQ(lastFailure(object.get()).description, description);
        EXPECT_EQ(saved(), before);
        EXPECT_EQ(compoundList().size(), 25u);
    }
};

TEST_F(Persistence, IsOneInterfaceOfThePackage) {
    const auto persist = object.tryAs<IPersist>();
    ASSERT_TRUE(persist);
    CLSID clsid{};
    EXPECT_EQ(persist->GetClassID(&clsid), S_OK);
    EXPECT_EQ(clsid, packageClsid);
    EXPECT_EQ(persist.tryAs<IUnknown>().get(), object.tryAs<IUnknown>().get());
    EXPECT_FALSE(object.tryAs<IPersistStream>());
}

TEST_F(Persistence, NewPackageHasAllCompounds) {
    EXPECT_EQ(persistence->InitNew(), S_OK);
    EXPECT_EQ(persistence->IsDirty(), S_FALSE);
    EXPECT_EQ(compoundList().size(), 25u);
}

TEST_F(Persistence, SavedPackageComesBack) {
    const Bytes state = stateOf({"ethane", "nitrogen", "methane"}, 0.2);
    ASSERT_EQ(load(state), S_OK);
    EXPECT_EQ(persistence->IsDirty(), S_FALSE);
    EXPECT_EQ(compoundList(), (Texts{L"ethane", L"nitrogen", L"methane"}));
    EXPECT_EQ(saved(), state);
}

TEST_F(Persistence, ChangedParameterIsUsed) {
    const Texts names{L"ethane", L"nitrogen"};
    const Reals tabulated = lnPhi(names);
    ASSERT_EQ(load(stateOf({"ethane", "nitrogen"}, 0.2)), S_OK);
    EXPECT_NE(lnPhi(names), tabulated);
}

TEST_F(Persistence, MaterialThatIsSetIsCalculatedWithTheNewParameters) {
    const Texts names{L"ethane", L"nitrogen"};
    const Reals tabulated = lnPhi(names);
    ASSERT_EQ(load(stateOf({"ethane", "nitrogen"}, 0.2)), S_OK);
    const Reals changed = lnPhiOfTheMaterial(2);
    EXPECT_NE(changed, tabulated);
    EXPECT_EQ(lnPhi(names), changed);
}

TEST_F(Persistence, MaterialWithCompoundsThatAreGoneIsUnset) {
    lnPhi({L"ethane", L"nitrogen"});
    ASSERT_EQ(load(stateOf({"ethane", "methane"}, 0.1)), S_OK);
    com::variant values, dT, dP, dn;
    expectFailure(
        properties->CalcAndGetLnPhi(nullptr, 250.0, 1e6, reals({1.0, 1.0}), 1, &values, &dT, &dP, &dn),
        ECapeBadInvOrderHR, L"No material is set; call SetMaterial first", L"ICapeThermoPropertyRoutine",
        L"CalcAndGetLnPhi");
}

TEST_F(Persistence, CompoundsThatAreNotChosenAreUnknown) {
    ASSERT_EQ(load(stateOf({"ethane", "methane"}, 0.1)), S_OK);
    LONG count = 0;
    EXPECT_EQ(compounds->GetNumCompounds(&count), S_OK);
    EXPECT_EQ(count, 2);
    com::variant values;
    expectFailure(compounds->GetCompoundConstant(texts({L"acentricFactor"}), texts({L"nitrogen"}), &values),
                  ECapeInvalidArgumentHR, L"\"nitrogen\" is not a compound of this package",
                  L"ICapeThermoCompounds", L"GetCompoundConstant");
    expectFailure(context->SetMaterial(com::make<TestMaterial>(Texts{L"nitrogen"})->self()),
                  ECapeFailedInitialisationHR,
                  L"The compound \"nitrogen\" of the material object is not in this package",
                  L"ICapeThermoMaterialContext", L"SetMaterial");
}

TEST_F(Persistence, StreamMayHandOutOneByteAtATime) {
    stream->largestPiece = 1;
    EXPECT_EQ(load(stateOf({"ethane", "methane"}, 0.1)), S_OK);
    EXPECT_EQ(compoundList().size(), 2u);
}

TEST_F(Persistence, LoadingEndsWhereTheStateEnds) {
    Bytes state = stateOf({"ethane", "methane"}, 0.1);
    const std::size_t size = state.size();
    state.insert(state.end(), 1000, 42);
    EXPECT_EQ(load(state), S_OK);
    EXPECT_EQ(stream->position, size);
}

TEST_F(Persistence, SizeIsThatOfWhatIsSaved) {
    ULARGE_INTEGER size{};
    EXPECT_EQ(persistence->GetSizeMax(&size), S_OK);
    EXPECT_EQ(size.QuadPart, saved().size());
}

TEST_F(Persistence, PackageIsInitialisedOnce) {
    ASSERT_EQ(persistence->InitNew(), S_OK);
    EXPECT_EQ(persistence->InitNew(), E_UNEXPECTED);
    EXPECT_EQ(lastFailure(object.get()).description, L"InitNew or Load has been called before");
    EXPECT_EQ(load(stateOf({"ethane", "methane"}, 0.1)), E_UNEXPECTED);
    EXPECT_EQ(compoundList().size(), 25u);
}

TEST_F(Persistence, LoadedPackageIsNotInitialisedAgain) {
    ASSERT_EQ(load(stateOf({"ethane", "methane"}, 0.1)), S_OK);
    EXPECT_EQ(persistence->InitNew(), E_UNEXPECTED);
    EXPECT_EQ(load(stateOf({"ethane", "nitrogen"}, 0.1)), E_UNEXPECTED);
    EXPECT_EQ(compoundList(), (Texts{L"ethane", L"methane"}));
}

TEST_F(Persistence, PackageThatFailedToLoadCanStillBeInitialised) {
    EXPECT_NE(load({1, 2, 3}), S_OK);
    EXPECT_EQ(load(stateOf({"ethane", "methane"}, 0.1)), S_OK);
}

TEST_F(Persistence, GarbageLeavesThePackageAsItWas) {
    Bytes state = stateOf({"ethane", "methane"}, 0.1);
    expectRefused(Bytes(100, 7), HRESULT_FROM_WIN32(ERROR_INVALID_DATA), L"This is no saved package");
    expectRefused({state.begin(), state.end() - 1}, HRESULT_FROM_WIN32(ERROR_HANDLE_EOF),
                  L"The saved package ends too early");
    expectRefused({}, HRESULT_FROM_WIN32(ERROR_HANDLE_EOF), L"The saved package ends too early");
    state.back() ^= 1;
    expectRefused(state, HRESULT_FROM_WIN32(ERROR_INVALID_DATA), L"The saved package is damaged");
    state[8] = 9;
    expectRefused(state, HRESULT_FROM_WIN32(ERROR_UNKNOWN_REVISION),
                  L"The package was saved in the format 9; this version reads the format 1");
}

TEST_F(Persistence, StateOfOtherCompoundsIsRefusedByName) {
    const auto definition = std::make_shared<Catalogue>();
    definition->origin = "Caf\xC3\xA9";
    definition->compounds.push_back(eos::compounds()[0]);
    definition->k = eos::InteractionMatrix{1};
    expectRefused(writeState(Configuration::allOf(definition)), HRESULT_FROM_WIN32(ERROR_NOT_FOUND),
                  L"The saved package was made from the package definition \"Caf\x00E9\", but this one is "
                  L"made from the "
                  L"built-in compounds");
}

TEST_F(Persistence, FailingStreamTellsItsReason) {
    stream->failure = STG_E_ACCESSDENIED;
    EXPECT_EQ(load(stateOf({"ethane", "methane"}, 0.1)), STG_E_ACCESSDENIED);
    EXPECT_EQ(lastFailure(object.get()).description, L"The stream cannot be read");
    EXPECT_EQ(persistence->Save(stream.get(), TRUE), STG_E_ACCESSDENIED);
    EXPECT_EQ(lastFailure(object.get()).description, L"The stream cannot be written");
}

TEST_F(Persistence, StreamThatTakesTooLittleIsFull) {
    stream->largestPiece = 10;
    EXPECT_EQ(persistence->Save(stream.get(), TRUE), STG_E_MEDIUMFULL);
}

TEST_F(Persistence, StreamThatTellsTooMuchIsRefused) {
    stream->additionalCount = 100000;
    EXPECT_EQ(load(stateOf({"ethane", "methane"}, 0.1)), STG_E_READFAULT);
}

TEST_F(Persistence, MissingArgumentsAreRefused) {
    EXPECT_EQ(persistence->Load(nullptr), E_POINTER);
    EXPECT_EQ(persistence->Save(nullptr, TRUE), E_POINTER);
    EXPECT_EQ(persistence->GetSizeMax(nullptr), E_POINTER);
    EXPECT_EQ(persistence->GetClassID(nullptr), E_POINTER);
}

} // namespace
} // namespace peng_robinson::test
