// What a workbook gets back of its packages.
#include "src/workbook/string_matrix.h"
#include "tests/src/workbook/persistence_fixture.h"

namespace quorvane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class Depersist : public PersistenceTest {
  protected:
    std::string refusal(const VARIANT& value) {
        return failureOf([&] { restore(value); });
    }
    /// The only message after this row is restored; the row behind it is fine.
    std::string messageFor(Row bad) {
        messages.clear();
        bad.resize(6);
        restore({bad, row(L"Good")});
        EXPECT_TRUE(store.find(book, L"Good"));
        store.closeWorkbook(book);
        EXPECT_EQ(messages.size(), 1U);
        return messages.empty() ? std::string{} : messages.front();
    }
};

TEST_F(Depersist, NothingChangesNothing) {
    attach(L"Gas");
    restore(com::variant{});
    EXPECT_THAT(namesIn(), ElementsAre(L"Gas"));
}
TEST_F(Depersist, RestoresTheGoldenTables) {
    const std::pair<const char*, Bytes> cases[] = {
        {"bytes_500", repeated(500)}, {"bytes_501", repeated(501)},          {"text_32000", noise(24000)},
        {"text_70000", noise(52500)}, {"compressed_pieces", letters(60000)},
    };
    for (const auto& [name, bytes] : cases) {
        restore(goldenTable(name));
        EXPECT_EQ(state(), bytes) << name;
    }
    EXPECT_THAT(namesIn(), ElementsAre(L"Gas"));
    EXPECT_THAT(messages, IsEmpty());
}
TEST_F(Depersist, APackageWithoutStateStartsAfresh) {
    script.omits(IID_IPersistStream);
    restore(goldenTable("empty"));
    EXPECT_THAT(script.calls("Load"), IsEmpty());
    EXPECT_THAT(script.calls("InitNew"), ElementsAre("InitNew()"));
}
TEST_F(Depersist, ATableOfTwoWidthsIsRestored) {
    std::vector<Bytes> loaded;
    script.hook("Load", [&](scripted::Call& call) {
        const HRESULT code = call.healthy();
        loaded.push_back(state());
        return code;
    });
    restore(goldenTable("two_widths"));
    EXPECT_THAT(namesIn(), ElementsAre(L"Large", L"Small"));
    EXPECT_TRUE(loaded == std::vector({noise(52500), repeated(501)}));
}
TEST_F(Depersist, ARoundTripIntoAFreshWorkbookGivesTheSame) {
    attach(L"Gas");
    store.createPackage(book, L"Oil", L"My manager", scripted::managerInProcess, PropertyPackageManager11,
                        L"Second");
    for (const Bytes& bytes : {bytesOf("abc"), noise(24000), letters(60000)}) {
        setState(bytes);
        Table table = save();
        restore(table, otherBook);
        EXPECT_EQ(state(), bytes);
        Table again = save(otherBook);
        std::ranges::sort(table); // the order is each workbook's own
        std::ranges::sort(again);
        EXPECT_TRUE(again == table);
        store.closeWorkbook(otherBook);
    }
    EXPECT_THAT(messages, IsEmpty());
}
TEST_F(Depersist, APackageOfTheNameIsReplaced) {
    attach(L"Gas");
    restore({row(L"Gas", L"YWJj")});
    EXPECT_EQ(state(), bytesOf("abc"));
    EXPECT_EQ(script.count("Terminate"), 1U);
    EXPECT_EQ(scripted::liveObjects(), 1);
    EXPECT_THAT(messages, IsEmpty());
}
TEST_F(Depersist, TheSecondRowOfANameReplacesTheFirst) {
    restore({row(L"Gas", L"YWJj"), row(L"Gas", L"Zm9v")});
    EXPECT_EQ(state(), bytesOf("foo"));
    EXPECT_EQ(scripted::liveObjects(), 1);
}
TEST_F(Depersist, AnyLowerBoundsWillDo) {
    for (const LONG bound : {0L, 7L, -100L, static_cast<LONG>(INT32_MIN)}) {
        restore(arrayOf({row(L"Gas", L"YWJj"), row(L"Oil")}, bound));
        EXPECT_THAT(namesIn(), ElementsAre(L"Gas", L"Oil"));
        store.closeWorkbook(book);
    }
}
TEST_F(Depersist, ANarrowTableIsReadAsFarAsItGoes) {
    restore({{L"Gas", L"Scripted", L"StandAlonePackage11", scriptedGuid}});
    EXPECT_THAT(namesIn(), ElementsAre(L"Gas"));
    messages.clear();
    restore({{L"Gas"}});
    EXPECT_THAT(messages,
                ElementsAre("Cannot restore property package from <Unknown manager>: GUID unknown"));
}
TEST_F(Depersist, FollowsReferencesOfScripts) {
    com::variant array = arrayOf({row(L"Gas")});
    VARIANT reference{};
    reference.vt = VT_BYREF | VT_VARIANT;
    reference.pvarVal = &array;
    restore(reference);
    EXPECT_THAT(namesIn(), ElementsAre(L"Gas"));
}

// What is no table.

TEST_F(Depersist, OnlyTextsMakeATable) {
    constexpr const char* message = "Expected an matrix of type string";
    EXPECT_EQ(refusal(com::variant{1.0}), message);
    EXPECT_EQ(refusal(com::variant{L"text"}), message);
    EXPECT_EQ(refusal(com::variant::missing()), message);
    EXPECT_EQ(refusal(com::variant::array(com::makeMatrix(VT_VARIANT, 1, 6), VT_VARIANT)), message);
    EXPECT_EQ(refusal(com::variant::array(com::makeMatrix(VT_R8, 1, 6), VT_R8)), message);
}
TEST_F(Depersist, AnArrayMustHoldWhatItsLabelSays) {
    constexpr const char* message = "Expected an matrix of type string";
    com::variant numbers = com::variant::array(com::makeMatrix(VT_R8, 1, 6), VT_BSTR);
    EXPECT_EQ(refusal(numbers), message);
    com::variant shorts = com::variant::array(com::makeMatrix(VT_I2, 1, 6), VT_BSTR);
    EXPECT_EQ(refusal(shorts), message);
    numbers.vt = VT_ARRAY | VT_R8; // as which they are destroyed
    shorts.vt = VT_ARRAY | VT_I2;
}
TEST_F(Depersist, ATableThatDoesNotTellTheTypeOfItsElementsIsReadAsTexts) {
    std::vector<com::unique_bstr> texts;
    std::vector<BSTR> elements;
    for (const std::wstring& text : row(L"Gas")) {
        elements.push_back(texts.emplace_back(com::makeBstr(text)).get());
    }
    com::unique_safearray array;
    ASSERT_EQ(SafeArrayAllocDescriptor(2, array.put()), S_OK);
    array.get()->fFeatures = FADF_STATIC;
    array.get()->cbElements = sizeof(BSTR);
    array.get()->rgsabound[0] = {static_cast<ULONG>(elements.size()), 1}; // the last dimension comes first
    array.get()->rgsabound[1] = {1, 1};
    array.get()->pvData = elements.data();
    VARIANT value{};
    value.vt = VT_ARRAY | VT_BSTR;
    value.parray = array.get();
    restore(value);
    EXPECT_THAT(namesIn(), ElementsAre(L"Gas"));
    EXPECT_THAT(messages, IsEmpty());
}
TEST_F(Depersist, ATableWhoseElementsAreNotThereIsOneOfEmptyTexts) {
    com::unique_safearray array;
    ASSERT_EQ(SafeArrayAllocDescriptor(2, array.put()), S_OK);
    array.get()->cbElements = sizeof(BSTR);
    array.get()->rgsabound[0] = {6, 1};
    array.get()->rgsabound[1] = {1, 1};
    VARIANT value{};
    value.vt = VT_ARRAY | VT_BSTR;
    value.parray = array.get();
    restore(value);
    EXPECT_THAT(namesIn(), IsEmpty());
    EXPECT_THAT(messages, ElementsAre("Cannot restore property package from <Unknown manager>: "
                                      "Excel package name unknown"));
}
TEST_F(Depersist, ATableHasTwoDimensions) {
    constexpr const char* message = "unexpected dimension; 2-dimensional array expected";
    EXPECT_EQ(refusal(com::textArray(std::vector<std::wstring>{L"Gas"})), message);
    SAFEARRAYBOUND bounds[3] = {{1, 1}, {6, 1}, {1, 1}};
    EXPECT_EQ(
        refusal(com::variant::array(com::unique_safearray{SafeArrayCreate(VT_BSTR, 3, bounds)}, VT_BSTR)),
        message);
    com::variant null;
    null.vt = VT_ARRAY | VT_BSTR;
    EXPECT_EQ(refusal(null), message);
}
TEST_F(Depersist, BoundsThatCannotBeAskedForAreNamed) {
    const com::unique_safearray array = com::makeMatrix(VT_BSTR, 1, 6);
    const BoundQuery fails = [](SAFEARRAY*, UINT, LONG*) -> HRESULT { return E_FAIL; };
    EXPECT_EQ(failureOf([&] { extentOf(array.get(), 1, fails); }), "failed to get lower bound");
    EXPECT_EQ(failureOf([&] { extentOf(array.get(), 1, SafeArrayGetLBound, fails); }),
              "failed to get upper bound");
    EXPECT_EQ(failureOf([&] { extentOf(array.get(), 3); }), "failed to get lower bound");
    EXPECT_EQ(extentOf(array.get(), 2), 6U);
}
TEST_F(Depersist, ATableWithoutCellsChangesNothing) {
    for (const auto& [rows, columns] : {std::pair{0UL, 6UL}, std::pair{3UL, 0UL}, std::pair{0UL, 0UL}}) {
        SAFEARRAYBOUND bounds[2] = {{rows, 1}, {columns, 1}};
        restore(com::variant::array(com::unique_safearray{SafeArrayCreate(VT_BSTR, 2, bounds)}, VT_BSTR));
    }
    EXPECT_THAT(namesIn(), IsEmpty());
    EXPECT_THAT(messages, IsEmpty());
}

// Rows that cannot be restored.

TEST_F(Depersist, ARowWithoutNameIsTold) {
    EXPECT_EQ(messageFor({L"", L"Scripted", L"StandAlonePackage11", scriptedGuid}),
              "Cannot restore property package from Scripted: Excel package name unknown");
}
TEST_F(Depersist, ARowWithoutGuidIsTold) {
    EXPECT_EQ(messageFor({L"Gas", L"Scripted", L"StandAlonePackage11", L""}),
              "Cannot restore property package from Scripted: GUID unknown");
}
TEST_F(Depersist, ARowWithAnInvalidGuidIsTold) {
    for (const wchar_t* guid : {L"{7C0C0A57-5D0E-4F53-9B0B-0C8B8B3C55A}", L"No.Such.Class", L"{", L" "}) {
        EXPECT_EQ(messageFor({L"Gas", L"Scripted", L"StandAlonePackage11", guid}),
                  "Cannot restore property package from Scripted: invalid GUID string");
    }
}
TEST_F(Depersist, ARowOfAnUnknownKindIsTold) {
    for (const wchar_t* kind :
         {L"StandAlonePackage11 ", L"standalonepackage11", L"StandAlonePackage20", L"", L"0"}) {
        EXPECT_EQ(
            messageFor({L"Gas", L"Scripted", kind, scriptedGuid}),
            "Cannot restore property package from Scripted: unknown/unsupported CAPE-OPEN package manager "
            "type. Perhaps this document was stored with a newer version of Quorvane.");
    }
}
TEST_F(Depersist, ARowOfNullsIsTold) {
    EXPECT_EQ(messageFor({}),
              "Cannot restore property package from <Unknown manager>: Excel package name unknown");
}
TEST_F(Depersist, TheReasonIsToldBehindANameThatEndsAtAZero) {
    EXPECT_EQ(messageFor({L"", std::wstring(L"M\0x", 3), L"StandAlonePackage11", scriptedGuid}),
              "Cannot restore property package from M: Excel package name unknown");
}
TEST_F(Depersist, TheFirstMistakeIsTold) {
    EXPECT_EQ(messageFor({L"", L"M", L"?", L"?"}),
              "Cannot restore property package from M: Excel package name unknown");
    EXPECT_EQ(messageFor({L"G", L"M", L"?", L"?"}),
              "Cannot restore property package from M: invalid GUID string");
}
TEST_F(Depersist, APackageThatCannotBeCreatedIsTold) {
    EXPECT_EQ(
        messageFor({L"Gas", L"Elsewhere", L"StandAlonePackage11", L"{7C0C0A57-5D0E-4F53-9B0B-0C8B8B3C55AF}"}),
        "Cannot restore property package from Elsewhere: Failed to create property package: " +
            systemText(REGDB_E_CLASSNOTREG));
}
TEST_F(Depersist, AManagersPackageThatIsGoneIsTold) {
    EXPECT_EQ(
        messageFor({L"Gas", L"My manager", L"PropertyPackageManager11",
                    L"{7C0C0A57-5D0E-4F53-9B0B-0C8B8B3C55A2}", L"Third"}),
        "Cannot restore property package from My manager: Failed to create property package: There is no "
        "package Third");
}
TEST_F(Depersist, APackageThatRefusesItsStateIsTold) {
    script.hook("Load", [this](scripted::Call&) {
        script.recovers("Load");
        return STG_E_DOCFILECORRUPT;
    });
    EXPECT_EQ(messageFor(row(L"Gas", L"YWJj")),
              "Cannot restore property package from Scripted: Failed to restore package content: " +
                  systemText(STG_E_DOCFILECORRUPT));
}
TEST_F(Depersist, APackageThatFailsLeavesTheOneOfItsName) {
    attach(L"Gas");
    script.fails("Load", E_FAIL);
    restore({row(L"Gas", L"YWJj")});
    EXPECT_THAT(namesIn(), ElementsAre(L"Gas"));
    EXPECT_EQ(scripted::liveObjects(), 1);
}
TEST_F(Depersist, DamagedStatesAreLoadedAsFarAsTheyGo) {
    restore({row(L"Gas", L"Zm9vY")});
    EXPECT_EQ(state(), bytesOf("foo"));
    const std::wstring text = goldenTable("bytes_501")[0][5];
    restore({row(L"Gas", text.substr(0, text.size() - 8))});
    EXPECT_FALSE(state().empty());
    script.forgetCalls();
    restore({row(L"Gas", L"#this is no zlib stream")});
    EXPECT_THAT(script.calls("Load"), IsEmpty());
    EXPECT_THAT(messages, IsEmpty());
}
TEST_F(Depersist, OfManyBadRowsOnlyTheFirstHundredAreTold) {
    Table table(5000, Row(6));
    table.back() = row(L"Good");
    restore(table);
    ASSERT_EQ(messages.size(), 101U);
    EXPECT_EQ(messages[99],
              "Cannot restore property package from <Unknown manager>: Excel package name unknown");
    EXPECT_EQ(messages[100], "Cannot restore 4899 more property packages");
    EXPECT_THAT(namesIn(), ElementsAre(L"Good"));
}
TEST_F(Depersist, OfStatesThatAreTooLargeTogetherTheLastAreTold) {
    const std::wstring compressed = stateTextOf(repeated(5000));
    const std::wstring plain = stateTextOf(noise(5000));
    depersist(store, book,
              arrayOf({row(L"A", compressed), row(L"B", compressed), row(L"C", compressed), row(L"D", plain),
                       row(L"E", compressed)}),
              report, InflationAllowance{6000, 12000});
    constexpr const char* message =
        "Cannot restore property package from Scripted: the saved states of this workbook are too large; at "
        "most 1 GB can be restored together";
    EXPECT_THAT(messages, ElementsAre(message, message));
    EXPECT_THAT(namesIn(), ElementsAre(L"A", L"B", L"D"));
}
TEST_F(Depersist, MillionsOfCellsAreReadOnce) {
    restore(Table(300'000, Row(10)));
    EXPECT_EQ(messages.size(), 101U);
    messages.clear();
    Row wide = row(L"Gas", L"6");
    wide.resize(2'000'000, L"AAAA");
    restore({wide});
    EXPECT_EQ(state().size(), 3U * (2'000'000U - 6U));
    EXPECT_THAT(messages, IsEmpty());
}

// A package, or a message, calls back in the middle.

TEST_F(Depersist, AWorkbookThatIsClosedMeanwhileStaysEmpty) {
    script.hook("Initialize", [this](scripted::Call& call) {
        store.closeWorkbook(book);
        return call.healthy();
    });
    restore({row(L"A"), row(L"B")});
    EXPECT_THAT(namesIn(), IsEmpty());
    EXPECT_EQ(script.count("Initialize"), 1U);
    EXPECT_EQ(scripted::liveObjects(), 0);
}
TEST_F(Depersist, AWorkbookMayBeClosedWhileAMessageIsShown) {
    const Report closing = [this](const std::wstring&) { store.clear(); };
    depersist(store, book, arrayOf({row(L"A"), Row(6), row(L"B")}), closing);
    EXPECT_THAT(namesIn(), IsEmpty());
    EXPECT_EQ(scripted::liveObjects(), 0);
}
TEST_F(Depersist, APackageMayDeleteAnotherMeanwhile) {
    attach(L"A");
    script.hook("Initialize", [this](scripted::Call& call) {
        store.deletePackage(book, L"A");
        return call.healthy();
    });
    restore({row(L"A"), row(L"B")});
    EXPECT_THAT(namesIn(), ElementsAre(L"B"));
}
TEST_F(Depersist, AReplacedPackageMayLookAtItsWorkbookWhileItIsTerminated) {
    attach(L"A");
    std::vector<std::wstring> seen;
    script.hook("Terminate", [&](scripted::Call& call) {
        seen = namesIn();
        store.closeWorkbook(book);
        return call.healthy();
    });
    restore({row(L"A"), row(L"B")});
    EXPECT_THAT(seen, IsEmpty()); // of the new one, which was released by the closing
    EXPECT_EQ(scripted::liveObjects(), 0);
}
TEST_F(Depersist, RestoringMayNest) {
    script.hook("Load", [this](scripted::Call& call) {
        script.recovers("Load");
        restore({row(L"A", L"Zm9v"), row(L"C")});
        return call.healthy();
    });
    restore({row(L"A", L"YWJj"), row(L"B")});
    EXPECT_THAT(namesIn(), ElementsAre(L"A", L"B", L"C"));
    EXPECT_EQ(scripted::liveObjects(), 3);
}
TEST_F(Depersist, TheTableCannotBeDestroyedMeanwhile) {
    com::variant array = arrayOf({row(L"A"), row(L"B")});
    HRESULT destroyed = S_OK;
    script.hook("Initialize", [&](scripted::Call& call) {
        destroyed = SafeArrayDestroy(array.parray);
        return call.healthy();
    });
    restore(array);
    EXPECT_EQ(destroyed, DISP_E_ARRAYISLOCKED);
    EXPECT_EQ(array.parray->cLocks, 0U);
    EXPECT_THAT(namesIn(), ElementsAre(L"A", L"B"));
}
TEST_F(Depersist, APackageMayKeepTheStream) {
    com::com_ptr<IStream> kept;
    script.hook("Load", [&](scripted::Call& call) {
        kept = com::queryFor<IStream>(call.in[0].punkVal);
        return call.healthy();
    });
    restore({row(L"A", L"YWJj")});
    char byte = 0;
    EXPECT_EQ(kept->Seek({}, STREAM_SEEK_SET, nullptr), S_OK);
    EXPECT_EQ(kept->Read(&byte, 1, nullptr), S_OK);
    EXPECT_EQ(byte, 'a');
    EXPECT_EQ(kept->Write("x", 1, nullptr), STG_E_ACCESSDENIED);
}

} // namespace
} // namespace quorvane
