#include "packages/peng_robinson/catalogue/named_packages.h"
#include "packages/peng_robinson/com/identity.h"
#include "packages/peng_robinson/state/state.h"
#include "tests/packages/peng_robinson/com/byte_stream.h"
#include "tests/packages/peng_robinson/com/definition_files.h"
#include "tests/packages/peng_robinson/com/test_material.h"

namespace peng_robinson::test {
namespace {

const std::string header =
    "[compounds]\nname,formula,CAS number,molecular weight,critical temperature,critical "
    "pressure,acentric factor,normal boiling point,cp0\n";
const std::string twoCompounds = header + "methane,CH4,74-82-8,16.0428,190.564,4599200,0.01142,111.667,36\n"
                                          "ethane,C2H6,74-84-0,30.06904,305.322,4872200,0.0995,184.569,53\n";

class Manager : public DefinitionFiles {
  protected:
    Texts list() const {
        com::variant names;
        EXPECT_EQ(manager->GetPropertyPackageList(&names), S_OK);
        return textsOf(names);
    }
    void expectRefused(const wchar_t* name, eCapeErrorInterfaceHR code,
                       const std::wstring& description) const {
        com::com_ptr<IDispatch> package = object;
        expectFailure(object.get(), get(name, package), code, description,
                      L"ICapeThermoPropertyPackageManager", L"GetPropertyPackage");
        EXPECT_FALSE(package);
    }
    static Texts compoundsOf(const com::com_ptr<IDispatch>& package) {
        return compoundIdsOf(*package.tryAs<ICapeThermoCompounds>());
    }
    static Bytes saved(const com::com_ptr<IDispatch>& package) {
        const auto stream = com::make<ByteStream>();
        EXPECT_EQ(package.tryAs<IPersistStreamInit>()->Save(stream.get(), TRUE), S_OK);
        return stream->bytes;
    }
    static HRESULT load(const com::com_ptr<IDispatch>& package, const Bytes& state) {
        const auto stream = com::make<ByteStream>();
        stream->bytes = state;
        return package.tryAs<IPersistStreamInit>()->Load(stream.get());
    }
};

const Texts builtIn{L"All compounds",       L"Natural gas",      L"Air separation",
                    L"Refinery light ends", L"Hydrogen and CO2", L"Benzene and toluene"};

Texts builtInAnd(const Texts& names) {
    Texts all = builtIn;
    all.insert(all.end(), names.begin(), names.end());
    return all;
}

TEST_F(Manager, OffersTheBuiltInPackages) { EXPECT_EQ(list(), builtIn); }

TEST_F(Manager, OffersEveryDefinitionByTheNameOfItsFile) {
    write(L"my gas.txt", twoCompounds);
    write(L"Caf\x00E9.CSV", twoCompounds);
    write(L"Broken.txt", "nonsense");
    write(L"notes.md", "no definition");
    write(L"folder.txt/inner.txt", twoCompounds);
    EXPECT_EQ(list(), builtInAnd({L"Broken", L"Caf\x00E9", L"my gas"}));
}

TEST_F(Manager, FolderThatDoesNotExistIsAnEmptyOne) {
    SetEnvironmentVariableW(variable, (folder / L"nowhere").c_str());
    EXPECT_EQ(list(), builtIn);
}

TEST_F(Manager, WithoutTheVariableTheFolderIsTheUsersOwn) {
    SetEnvironmentVariableW(variable, nullptr);
    std::wstring before(32767, L'\0');
    before.resize(GetEnvironmentVariableW(L"LOCALAPPDATA", before.data(), static_cast<DWORD>(before.size())));
    SetEnvironmentVariableW(L"LOCALAPPDATA", folder.c_str());
    write(L"Tarnwick/PengRobinson/mine.txt", twoCompounds);
    EXPECT_EQ(list(), builtInAnd({L"mine"}));
    SetEnvironmentVariableW(L"LOCALAPPDATA", nullptr);
    EXPECT_EQ(list(), builtIn);
    SetEnvironmentVariableW(L"LOCALAPPDATA", before.empty() ? nullptr : before.c_str());
}

TEST_F(Manager, MakesEveryBuiltInPackage) {
    for (const NamedPackage& named : namedPackages()) {
        const std::wstring name{named.name.begin(), named.name.end()};
        const auto package = open(name.c_str());
        ASSERT_TRUE(package);
        EXPECT_EQ(compoundsOf(package).size(), named.configuration().size()) << named.name;
        com::unique_bstr text;
        EXPECT_EQ(package.tryAs<ICapeIdentification>()->get_ComponentName(text.put()), S_OK);
        EXPECT_EQ(com::viewOf(text), name);
        EXPECT_EQ(package.tryAs<ICapeIdentification>()->get_ComponentDescription(text.put()), S_OK);
        EXPECT_EQ(com::viewOf(text), std::wstring(named.description.begin(), named.description.end()));
    }
}

TEST_F(Manager, FindsNamesInAnyCase) {
    EXPECT_EQ(compoundsOf(open(L"air SEPARATION")), (Texts{L"nitrogen", L"oxygen", L"argon"}));
}

TEST_F(Manager, MakesANewPackageForEveryCall) {
    const auto first = open(L"Air separation"), second = open(L"Air separation");
    EXPECT_NE(first.get(), second.get());
}

TEST_F(Manager, PackagesOutliveTheManager) {
    const auto package = open(L"Air separation");
    manager.reset();
    object.reset();
    EXPECT_EQ(compoundsOf(package).size(), 3u);
}

TEST_F(Manager, UnknownNameIsRefused) {
    const std::wstring where =
        L"it is not built in, and there is no such definition in the folder \"" + folder.wstring() + L"\"";
    expectRefused(L"Nope", ECapeInvalidArgumentHR, L"There is no package \"Nope\": " + where);
    expectRefused(L"", ECapeInvalidArgumentHR, L"There is no package \"\": " + where);
    EXPECT_EQ(lastFailure(object.get()).name, L"ECapeInvalidArgument");
}

TEST_F(Manager, FolderThatIsNoneIsNamed) {
    write(L"file", "");
    SetEnvironmentVariableW(variable, (folder / L"file").c_str());
    EXPECT_EQ(list(), builtIn);
    expectRefused(L"Nope", ECapeInvalidArgumentHR,
                  L"There is no package \"Nope\": it is not built in, and there is no such definition in the "
                  L"folder \"" +
                      (folder / L"file").wstring() + L"\", which cannot be read");
}

TEST_F(Manager, DefinitionGivesItsCompounds) {
    write(L"mine.txt", "[package]\ndescription,Caf\xC3\xA9 gas\n" + twoCompounds);
    const auto package = open(L"Mine");
    EXPECT_EQ(compoundsOf(package), (Texts{L"methane", L"ethane"}));
    com::unique_bstr text;
    EXPECT_EQ(package.tryAs<ICapeIdentification>()->get_ComponentName(text.put()), S_OK);
    EXPECT_EQ(com::viewOf(text), L"mine");
    EXPECT_EQ(package.tryAs<ICapeIdentification>()->get_ComponentDescription(text.put()), S_OK);
    EXPECT_EQ(com::viewOf(text), L"Caf\x00E9 gas");
}

TEST_F(Manager, MistakeInADefinitionIsToldWithFileAndLine) {
    write(L"mine.txt", twoCompounds + "propane,C3H8,74-98-6,44.1,cold,4251200,0.1521,231,74\n");
    expectRefused(L"mine", ECapeFailedInitialisationHR,
                  (folder / L"mine.txt").wstring() +
                      L", line 5: the critical temperature \"cold\" is not a number");
    EXPECT_EQ(lastFailure(object.get()).name, L"ECapeFailedInitialisation");
    write(L"mine.txt", "");
    expectRefused(L"mine", ECapeFailedInitialisationHR,
                  (folder / L"mine.txt").wstring() + L": the file has no section [compounds]");
}

TEST_F(Manager, HugeFileIsRefused) {
    write(L"mine.txt", std::string(3000000, '\n'));
    expectRefused(L"mine", ECapeFailedInitialisationHR,
                  (folder / L"mine.txt").wstring() + L": the file is larger than 1 MB");
}

TEST_F(Manager, TwoDefinitionsOfOneNameAreRefused) {
    write(L"mine.txt", twoCompounds);
    write(L"mine.csv", twoCompounds);
    EXPECT_EQ(list(), builtInAnd({L"mine"}));
    expectRefused(L"mine", ECapeFailedInitialisationHR,
                  L"The package \"mine\" is defined twice: in " + (folder / L"mine.csv").wstring() +
                      L" and in " + (folder / L"mine.txt").wstring());
}

TEST_F(Manager, DefinitionStandsInPlaceOfABuiltInPackage) {
    write(L"natural gas.txt", twoCompounds);
    EXPECT_EQ(list(), builtIn);
    EXPECT_EQ(compoundsOf(open(L"Natural gas")).size(), 2u);
}

TEST_F(Manager, DefinitionIsReadAnewForEveryPackage) {
    write(L"mine.txt", twoCompounds);
    const auto before = open(L"mine");
    write(L"mine.txt", twoCompounds + "propane,C3H8,74-98-6,44.1,369.89,4251200,0.1521,231,74\n");
    EXPECT_EQ(compoundsOf(open(L"mine")).size(), 3u);
    EXPECT_EQ(compoundsOf(before).size(), 2u);
}

TEST_F(Manager, PackageIsCalculatedWithTheConstantsOfItsDefinition) {
    write(L"mine.txt", "[package]\ngas constant,8.314\nomega a,0.45724\nomega b,0.0778\n" + twoCompounds);
    const auto package = open(L"mine");
    const com::unique_bstr name = com::makeBstr(L"molarGasConstant");
    com::variant value;
    EXPECT_EQ(package.tryAs<ICapeThermoUniversalConstant>()->GetUniversalConstant(name.get(), &value), S_OK);
    EXPECT_EQ(value.dblVal, 8.314);
    const auto boiling = [](const com::com_ptr<IDispatch>& of) {
        com::variant values;
        EXPECT_EQ(of.tryAs<ICapeThermoCompounds>()->GetPDependentProperty(
                      texts({L"boilingPointTemperature"}), 101325.0, texts({L"methane"}), &values),
                  S_OK);
        return realsOf(values).at(0);
    };
    EXPECT_NE(boiling(package), boiling(open(L"All compounds")));
    EXPECT_NEAR(boiling(package), boiling(open(L"All compounds")), 0.01);
}

TEST_F(Manager, ValueThatADefinitionDoesNotGiveIsMissing) {
    write(L"mine.txt", header + "C7+,,,110,580,2600000,0.36,,180\n");
    const auto compounds = open(L"mine").tryAs<ICapeThermoCompounds>();
    com::variant values;
    const HRESULT result = compounds->GetCompoundConstant(
        texts({L"casRegistryNumber", L"standardFormationEnthalpyGas", L"criticalVolume",
               L"normalBoilingPoint", L"criticalTemperature"}),
        com::variant{}, &values);
    expectFailure(compounds.get(), result, ECapeThrmPropertyNotAvailableHR,
                  L"No value for casRegistryNumber of C7+; the other values are valid",
                  L"ICapeThermoCompounds", L"GetCompoundConstant");
    ASSERT_EQ(values.vt, VT_ARRAY | VT_VARIANT);
    const auto* const elements = static_cast<const VARIANT*>(values.parray->pvData);
    ASSERT_EQ(elements[0].vt, VT_BSTR);
    EXPECT_EQ(com::viewOf(elements[0].bstrVal), L"");
    for (int i = 1; i < 4; ++i) {
        ASSERT_EQ(elements[i].vt, VT_R8) << i;
        EXPECT_TRUE(std::isnan(elements[i].dblVal)) << i;
    }
    EXPECT_EQ(elements[4].dblVal, 580.0);
}

TEST_F(Manager, SavedPackageOfADefinitionComesBack) {
    write(L"mine.txt", twoCompounds);
    const Bytes state = saved(open(L"mine"));
    const auto restored = open(L"mine");
    ASSERT_EQ(load(restored, state), S_OK);
    EXPECT_EQ(compoundsOf(restored), (Texts{L"methane", L"ethane"}));
    EXPECT_EQ(saved(restored), state);
}

TEST_F(Manager, SavedPackageTakesTheValuesThatTheDefinitionHasNow) {
    write(L"mine.txt", twoCompounds);
    const Bytes state = saved(open(L"mine"));
    write(L"mine.txt", header + "ethane,C2H6,74-84-0,30.07,305.4,4880000,0.098,184.6,53\n"
                                "propane,C3H8,74-98-6,44.1,369.89,4251200,0.1521,231,74\n"
                                "methane,CH4,74-82-8,16.043,190.6,4600000,0.008,111.7,36\n");
    const auto restored = open(L"mine");
    ASSERT_EQ(load(restored, state), S_OK);
    EXPECT_EQ(compoundsOf(restored), (Texts{L"methane", L"ethane"}));
    com::variant values;
    EXPECT_EQ(restored.tryAs<ICapeThermoCompounds>()->GetCompoundConstant(texts({L"criticalTemperature"}),
                                                                          texts({L"methane"}), &values),
              S_OK);
    EXPECT_EQ(static_cast<const VARIANT*>(values.parray->pvData)->dblVal, 190.6);
}

TEST_F(Manager, SavedPackageNamesTheCompoundThatTheDefinitionHasLost) {
    write(L"mine.txt", twoCompounds);
    const Bytes state = saved(open(L"mine"));
    write(L"mine.txt", header + "methane,CH4,74-82-8,16.0428,190.564,4599200,0.01142,111.667,36\n");
    const auto package = open(L"mine");
    EXPECT_EQ(load(package, state), HRESULT_FROM_WIN32(ERROR_NOT_FOUND));
    EXPECT_EQ(
        lastFailure(package.get()).description,
        L"The saved package has the compound \"ethane\", which is not among those of the package definition "
        L"\"mine\"");
    EXPECT_EQ(compoundsOf(package), Texts{L"methane"});
}

TEST_F(Manager, SavedBuiltInPackageDoesNotTurnIntoADefinition) {
    const Bytes state = saved(open(L"Natural gas"));
    write(L"Natural gas.txt", twoCompounds);
    const auto package = open(L"Natural gas");
    EXPECT_EQ(load(package, state), HRESULT_FROM_WIN32(ERROR_NOT_FOUND));
    EXPECT_EQ(
        lastFailure(package.get()).description,
        L"The saved package was made from the built-in compounds, but this one is made from the package "
        L"definition \"Natural gas\"");
}

TEST_F(Manager, SavedBuiltInPackageOpensInTheStandAloneClass) {
    const auto package = PackageDll::instance().createPackage();
    ASSERT_EQ(load(package, saved(open(L"Air separation"))), S_OK);
    EXPECT_EQ(compoundsOf(package), (Texts{L"nitrogen", L"oxygen", L"argon"}));
}

TEST_F(Manager, HasALifeCycleButNoWindowAndNoParameters) {
    const auto utilities = object.tryAs<ICapeUtilities>();
    EXPECT_EQ(utilities->Initialize(), S_OK);
    EXPECT_EQ(utilities->put_simulationContext(nullptr), S_OK);
    expectFailure(object.get(), utilities->Edit(), ECapeNoImplHR,
                  L"This manager has no window; edit the packages that it makes", L"ICapeUtilities", L"Edit");
    com::com_ptr<IDispatch> parameters;
    expectFailure(object.get(), utilities->get_parameters(parameters.put()), ECapeNoImplHR,
                  L"This manager has no parameters", L"ICapeUtilities", L"parameters");
    EXPECT_EQ(utilities->Terminate(), S_OK);
    com::unique_bstr name;
    EXPECT_EQ(object.tryAs<ICapeIdentification>()->get_ComponentName(name.put()), S_OK);
    EXPECT_EQ(com::viewOf(name), L"Peng-Robinson packages");
}

TEST_F(Manager, MissingPlacesForResultsAreRefused) {
    const com::unique_bstr name = com::makeBstr(L"Air separation");
    EXPECT_EQ(manager->GetPropertyPackage(name.get(), nullptr), E_POINTER);
    EXPECT_EQ(manager->GetPropertyPackageList(nullptr), E_POINTER);
    com::com_ptr<IDispatch> package;
    EXPECT_EQ(manager->GetPropertyPackage(nullptr, package.put()),
              static_cast<HRESULT>(ECapeInvalidArgumentHR));
}

} // namespace
} // namespace peng_robinson::test
