#include "sheet/excel/application.h"
#include "tests/sheet/excel/late_client.h"

namespace sheet::excel {
namespace {

using ApplicationTest = NothingLeft;

TEST_F(ApplicationTest, ItIsExcelsApplicationAndLateBound) {
    const auto application = com::make<Application>();
    EXPECT_TRUE(com::queryFor<ExcelApplication>(application->dispatch()));
    EXPECT_TRUE(com::queryFor<IDispatch>(application->dispatch()));
    EXPECT_FALSE(com::queryFor<ExcelRange>(application->dispatch()));
}

TEST_F(ApplicationTest, MembersHaveExcelsIdentifiers) {
    const auto application = com::make<Application>();
    EXPECT_EQ(idOf(application->dispatch(), L"ActiveWorkbook"), 308);
    EXPECT_EQ(idOf(application->dispatch(), L"Caller"), 317);
    EXPECT_EQ(idOf(application->dispatch(), L"COMAddIns"), 1796);
}

TEST_F(ApplicationTest, WithoutAWorkbookTheActiveOneIsNothing) {
    EXPECT_FALSE(getObject(com::make<Application>()->dispatch(), L"ActiveWorkbook"));
}

TEST_F(ApplicationTest, TheActiveWorkbookIsTheOneThatWasSet) {
    const auto application = com::make<Application>();
    const auto workbook = com::make<Workbook>(L"Book1");
    application->setActiveWorkbook(workbook);
    const auto active = getObject(application->dispatch(), L"ActiveWorkbook");
    EXPECT_EQ(active.tryAs<IUnknown>().get(), com::queryFor<IUnknown>(workbook->dispatch()).get());
    EXPECT_EQ(com::viewOf(get(active.get(), L"Name").value.bstrVal), L"Book1");
}

TEST_F(ApplicationTest, TheCallerIsTheRangeThatWasSet) {
    const auto application = com::make<Application>();
    const auto range = Range::empty(3, 1);
    application->setCaller(range);
    const Answer answer = get(application->dispatch(), L"Caller");
    ASSERT_EQ(answer.value.vt, VT_DISPATCH);
    EXPECT_TRUE(com::queryFor<ExcelRange>(answer.value.pdispVal));
}

TEST_F(ApplicationTest, TheCallerCanBeAnythingElse) {
    const auto application = com::make<Application>();
    application->setCaller(com::variant{L"Button 1"});
    EXPECT_EQ(com::viewOf(get(application->dispatch(), L"Caller").value.bstrVal), L"Button 1");
    application->setCaller();
    const Answer nobody = get(application->dispatch(), L"Caller");
    EXPECT_EQ(nobody.value.vt, VT_ERROR);
    EXPECT_EQ(nobody.value.scode, static_cast<SCODE>(0x800A07E7));
}

TEST_F(ApplicationTest, APropertyFailsWithTheCodeItIsTold) {
    const auto application = com::make<Application>();
    application->fail(L"ActiveWorkbook", static_cast<HRESULT>(0x800AC472));
    EXPECT_EQ(get(application->dispatch(), L"ActiveWorkbook").code, static_cast<HRESULT>(0x800AC472));
}

TEST_F(ApplicationTest, AddInsAreFoundByNameInAnyCaseAndByNumber) {
    const auto application = com::make<Application>();
    const auto workbook = com::make<Workbook>(L"any object");
    application->addIns().add(L"Other");
    application->addIns().add(L"Quorvane", workbook);
    const auto addIns = getObject(application->dispatch(), L"COMAddIns");
    EXPECT_EQ(getNumber(addIns.get(), L"Count"), 2);
    for (const Answer& item : {get(addIns.get(), L"Item", L"QUORVANE"), get(addIns.get(), L"Item", 2L)}) {
        ASSERT_EQ(item.code, S_OK);
        EXPECT_EQ(getObject(item.value.pdispVal, L"Object").get(), workbook->dispatch());
    }
    EXPECT_FALSE(getObject(get(addIns.get(), L"Item", 1L).value.pdispVal, L"Object"));
}

TEST_F(ApplicationTest, AnUnknownAddInIsABadIndex) {
    const auto addIns = com::make<COMAddIns>();
    EXPECT_EQ(get(addIns->dispatch(), L"Item", L"Quorvane").code, DISP_E_BADINDEX);
    EXPECT_EQ(get(addIns->dispatch(), L"Item", 0L).code, DISP_E_BADINDEX);
    EXPECT_EQ(get(addIns->dispatch(), L"Item").code, DISP_E_BADPARAMCOUNT);
}

} // namespace
} // namespace sheet::excel
