// What a workbook keeps of its packages.
#include "tests/src/workbook/persistence_fixture.h"

namespace quorvane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class Persist : public PersistenceTest {
  protected:
    /// Each package saves the bytes that belong to its name.
    void setStates(std::map<std::wstring, Bytes> states) {
        script.hook("Save", [this, states = std::move(states)](scripted::Call& call) {
            setState(states.at(store.packagesOf(book).at(script.count("Save") - 1).ppName));
            return call.healthy();
        });
    }
};

TEST_F(Persist, AWorkbookWithoutPackagesGivesNothing) {
    EXPECT_EQ(persist(store, book, report).value.vt, VT_EMPTY);
    store.tableOf(book);
    EXPECT_EQ(persist(store, book, report).value.vt, VT_EMPTY);
    EXPECT_THAT(messages, IsEmpty());
}
TEST_F(Persist, EachStateIsWrittenAsInTheGoldenTables) {
    const std::pair<const char*, Bytes> cases[] = {
        {"empty", {}},
        {"bytes_500", repeated(500)},
        {"bytes_501", repeated(501)},
        {"text_32000", noise(24000)},
        {"text_70000", noise(52500)},
        {"compressed_pieces", letters(60000)},
    };
    attach(L"Gas");
    for (const auto& [name, bytes] : cases) {
        setState(bytes);
        EXPECT_TRUE(save() == goldenTable(name)) << name;
    }
    EXPECT_THAT(messages, IsEmpty());
}
TEST_F(Persist, TheTableIsAsWideAsItsWidestRow) {
    attach(L"Small");
    attach(L"Large");
    setStates({{L"Small", repeated(501)}, {L"Large", noise(52500)}});
    Table table = save();
    std::ranges::sort(table);
    EXPECT_TRUE(table == goldenTable("two_widths"));
}
TEST_F(Persist, RowsStandInTheOrderOfTheWorkbooksTable) {
    for (const wchar_t* name : {L"c", L"a", L"b", L"A", L"another"}) {
        attach(name);
    }
    const auto packages = store.packagesOf(book);
    const Table table = save();
    ASSERT_EQ(table.size(), 5U);
    for (std::size_t i = 0; i < table.size(); ++i) {
        EXPECT_EQ(table[i][0], packages[i].ppName);
    }
}
TEST_F(Persist, AManagersPackageIsWrittenWithItsManager) {
    store.createPackage(book, L"Gas", L"My manager", scripted::managerInProcess, PropertyPackageManager11,
                        L"Second");
    setState({});
    EXPECT_EQ(save(), Table({{L"Gas", L"My manager", L"PropertyPackageManager11",
                              L"{7C0C0A57-5D0E-4F53-9B0B-0C8B8B3C55A2}", L"Second", L""}}));
}
TEST_F(Persist, PackagesStayChangedForTheirOwnSaving) {
    attach(L"Gas");
    save();
    EXPECT_THAT(script.calls("Save"), ElementsAre("Save(true, false)"));
}
TEST_F(Persist, EitherInterfaceServes) {
    attach(L"Gas");
    setState(bytesOf("abc"));
    script.omits(IID_IPersistStream);
    EXPECT_EQ(save(), Table({row(L"Gas", L"YWJj")}));
    script.omits(IID_IPersistStreamInit);
    EXPECT_EQ(save(), Table({row(L"Gas")}));
    EXPECT_THAT(messages, IsEmpty());
}
TEST_F(Persist, APackageThatCannotBeSavedIsToldAndWrittenWithoutState) {
    attach(L"My gas");
    script.hook("Save", [](scripted::Call& call) {
        EXPECT_EQ(call.healthy(), S_OK);
        return STG_E_MEDIUMFULL;
    });
    EXPECT_EQ(save(), Table({row(L"My gas")}));
    EXPECT_THAT(messages, ElementsAre("Failed to save package My gas: " + systemText(STG_E_MEDIUMFULL)));
}
TEST_F(Persist, APackageThatCannotBeSavedIsToldInTheSystemsWords) {
    attach(L"Gas");
    script.fails("Save", ecapeUnknown, L"the package's words");
    save();
    EXPECT_THAT(messages, ElementsAre("Failed to save package Gas: " + systemText(ecapeUnknown)));
}
TEST_F(Persist, OtherPackagesAreSavedAllTheSame) {
    attach(L"A");
    attach(L"B");
    setState(bytesOf("abc"));
    script.hook("Save",
                [this](scripted::Call& call) { return script.count("Save") == 1 ? E_FAIL : call.healthy(); });
    const Table table = save();
    ASSERT_EQ(table.size(), 2U);
    EXPECT_EQ(table[0][5], L"");
    EXPECT_EQ(table[1][5], L"YWJj");
    EXPECT_EQ(messages.size(), 1U);
}
TEST_F(Persist, StatesThatCouldNotBeRestoredTogetherAreNotAllCompressed) {
    attach(L"A");
    attach(L"B");
    setState(repeated(5000));
    const InflationAllowance allowance{6000, 9999};
    const ArrayVariant table = persist(store, book, report, allowance);
    EXPECT_TRUE(tableIn(table.value)[0][5].starts_with(L'#'));
    EXPECT_EQ(tableIn(table.value)[1][5], toBase64(repeated(5000)));
    depersist(store, otherBook, table.value, report, allowance);
    EXPECT_THAT(namesIn(otherBook), ElementsAre(L"A", L"B"));
    EXPECT_THAT(messages, IsEmpty());
}

// A package that was restored keeps its text until it has been written again, once.

TEST_F(Persist, ARestoredPackageThatCannotBeSavedIsWrittenWithTheOldState) {
    restore({row(L"Gas", L"YWJj")});
    script.fails("Save", E_FAIL);
    EXPECT_EQ(save(), Table({row(L"Gas", L"YWJj")}));
    EXPECT_THAT(messages, ElementsAre("Failed to save package Gas: " + systemText(E_FAIL)));
    EXPECT_EQ(save(), Table({row(L"Gas")}));
}
TEST_F(Persist, ARestoredPackageWithNothingToSaveIsWrittenWithTheOldState) {
    restore({row(L"Gas", L"YWJj")});
    setState({});
    EXPECT_EQ(save(), Table({row(L"Gas", L"YWJj")}));
    EXPECT_EQ(save(), Table({row(L"Gas")}));
}
TEST_F(Persist, AnOldStateIsKeptToTheLetter) {
    script.omits(IID_IPersistStream);
    script.omits(IID_IPersistStreamInit);
    for (const std::wstring& text :
         {std::wstring{L"YW .. Jj"}, std::wstring{L"#nonsense"}, std::wstring(40000, L'A')}) {
        Row given = row(L"Gas", L"6");
        given.push_back(text.substr(0, 32000));
        given.push_back(text.size() > 32000 ? text.substr(32000) : L"");
        restore({given});
        const Table again = save();
        EXPECT_TRUE(text.size() < 32000 ? again == Table({row(L"Gas", text)}) : again == Table({given}));
    }
}
TEST_F(Persist, ANewStateTakesThePlaceOfTheOldOne) {
    restore({row(L"Gas", L"YWJj")});
    setState(bytesOf("foo"));
    EXPECT_EQ(save(), Table({row(L"Gas", L"Zm9v")}));
    setState({});
    EXPECT_EQ(save(), Table({row(L"Gas")}));
}

// A package calls back in the middle of its own saving.

TEST_F(Persist, AWorkbookThatIsClosedMeanwhileIsStillWritten) {
    attach(L"A");
    attach(L"B");
    setState(bytesOf("abc"));
    script.hook("Save", [this](scripted::Call& call) {
        store.closeWorkbook(book);
        return call.healthy();
    });
    EXPECT_EQ(save().size(), 2U);
    EXPECT_EQ(scripted::liveObjects(), 0);
    EXPECT_THAT(save(), IsEmpty());
}
TEST_F(Persist, APackageMayDeleteItselfMeanwhile) {
    attach(L"A");
    setState(bytesOf("abc"));
    script.hook("Save", [this](scripted::Call& call) {
        store.deletePackage(book, L"A");
        return call.healthy();
    });
    EXPECT_EQ(save(), Table({row(L"A", L"YWJj")}));
    EXPECT_EQ(scripted::liveObjects(), 0);
}
TEST_F(Persist, PackagesMayBeAddedMeanwhile) {
    attach(L"A");
    script.hook("Save", [this](scripted::Call& call) {
        for (wchar_t name = L'B'; name <= L'Z'; ++name) { // so many that the table is made anew
            attach(std::wstring(1, name).c_str());
        }
        script.recovers("Save");
        return call.healthy();
    });
    EXPECT_EQ(save().size(), 1U);
    EXPECT_EQ(save().size(), 26U);
}
TEST_F(Persist, SavingMayNest) {
    attach(L"A");
    setState(bytesOf("abc"));
    Table inner;
    script.hook("Save", [&](scripted::Call& call) {
        script.recovers("Save");
        inner = save();
        return call.healthy();
    });
    EXPECT_EQ(save(), Table({row(L"A", L"YWJj")}));
    EXPECT_EQ(inner, Table({row(L"A", L"YWJj")}));
}
TEST_F(Persist, APackageMayKeepTheStream) {
    com::com_ptr<IStream> kept;
    attach(L"A");
    setState(bytesOf("abc"));
    script.hook("Save", [&](scripted::Call& call) {
        kept = com::queryFor<IStream>(call.in[0].punkVal);
        return call.healthy();
    });
    EXPECT_EQ(save(), Table({row(L"A", L"YWJj")}));
    EXPECT_EQ(kept->Write("more", 4, nullptr), S_OK);
}

} // namespace
} // namespace quorvane
