// How the add-in is connected and disconnected, told by one that stands in for Quorvane's class in this
// process.
#include "com/class_factory.h"
#include "com/dual.h"
#include "sheet/cli/add_in.h"
#include "tests/sheet/cli/program.h"

#include <gtest/gtest.h>
#include <objbase.h>

namespace sheet::cli {
namespace {

using Calls = std::vector<std::string>;

Calls calls;
HRESULT connectionAnswer = S_OK;

HRESULT heard(const char* call, HRESULT answer = S_OK) {
    calls.emplace_back(call);
    return answer;
}

// Hands over no services.
class SilentAddIn final : public com::implements<com::COMObject, com::RefusedDual<_IDTExtensibility2>> {
  public:
    void* findInterface(REFIID iid) noexcept override {
        return iid == IID_IDispatch ? static_cast<IDispatch*>(this) : implements::findInterface(iid);
    }
    HRESULT STDMETHODCALLTYPE OnConnection(IDispatch*, ext_ConnectMode, IDispatch*,
                                           SAFEARRAY**) noexcept override {
        return heard("OnConnection", connectionAnswer);
    }
    HRESULT STDMETHODCALLTYPE OnDisconnection(ext_DisconnectMode, SAFEARRAY**) noexcept override {
        return heard("OnDisconnection");
    }
    HRESULT STDMETHODCALLTYPE OnAddInsUpdate(SAFEARRAY**) noexcept override {
        return heard("OnAddInsUpdate");
    }
    HRESULT STDMETHODCALLTYPE OnStartupComplete(SAFEARRAY**) noexcept override {
        return heard("OnStartupComplete");
    }
    HRESULT STDMETHODCALLTYPE OnBeginShutdown(SAFEARRAY**) noexcept override {
        return heard("OnBeginShutdown");
    }
};

class ConnectionTest : public testing::Test {
  protected:
    static void SetUpTestSuite() { ASSERT_EQ(callExport(L"Quorvane.dll", "DllRegisterServer"), S_OK); }
    void SetUp() override {
        ASSERT_TRUE(SUCCEEDED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED)));
        calls.clear();
        connectionAnswer = S_OK;
        CLSID clsid{};
        ASSERT_EQ(CLSIDFromProgID(L"Quorvane.Excel", &clsid), S_OK);
        const auto factory = com::make<com::CClassFactory<SilentAddIn>>();
        ASSERT_EQ(CoRegisterClassObject(clsid, static_cast<IClassFactory*>(factory.get()),
                                        CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE, &registration_),
                  S_OK);
    }
    void TearDown() override {
        CoRevokeClassObject(registration_);
        CoUninitialize();
    }

    static std::string problem() {
        try {
            const AddIn addIn{"sheet.csv"};
        } catch (const AddInError& error) {
            return error.what();
        }
        return "(connected)";
    }

  private:
    DWORD registration_ = 0;
};

TEST_F(ConnectionTest, AnAddInWithoutServicesIsDisconnectedAgain) {
    EXPECT_EQ(problem(), "the add-in Quorvane.Excel does not hand over its services; register it again");
    EXPECT_EQ(calls, (Calls{"OnConnection", "OnStartupComplete", "OnBeginShutdown", "OnDisconnection"}));
}

TEST_F(ConnectionTest, AnAddInThatRefusesToConnectIsNotDisconnected) {
    connectionAnswer = E_ACCESSDENIED;
    EXPECT_EQ(problem(), "the add-in Quorvane.Excel does not connect: " + systemText(E_ACCESSDENIED));
    EXPECT_EQ(calls, Calls{"OnConnection"});
}

} // namespace
} // namespace sheet::cli
