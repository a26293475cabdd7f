#include "bench/add_in.h"

#include <stdexcept>

namespace bench {

void require(HRESULT code, const char* what) {
    if (FAILED(code)) {
        throw std::runtime_error(what);
    }
}

std::wstring Server::pathOf(const wchar_t* file) {
    wchar_t program[1024];
    GetModuleFileNameW(nullptr, program, static_cast<DWORD>(std::size(program)));
    std::wstring path{program};
    return path.substr(0, path.rfind(L'\\') + 1) + file;
}

Server::Server(const wchar_t* file) : module_{LoadLibraryW(pathOf(file).c_str())} {
    require(module_ == nullptr ? E_FAIL : S_OK, "A server beside the program does not load");
}

void Server::unload() noexcept {
    FreeLibrary(module_);
    module_ = nullptr;
}

com::com_ptr<IClassFactory> Server::factory(REFCLSID clsid) const {
    using GetClassObject = HRESULT(STDAPICALLTYPE*)(REFCLSID, REFIID, void**);
    const auto getClassObject = reinterpret_cast<GetClassObject>(
        reinterpret_cast<void*>(GetProcAddress(module_, "DllGetClassObject")));
    com::com_ptr<IClassFactory> factory;
    require(getClassObject == nullptr ? E_FAIL : getClassObject(clsid, IID_IClassFactory, factory.putVoid()),
            "A server gives no class object");
    return factory;
}

com::com_ptr<IQuorvaneVSTOServices> Server::createServices() const {
    com::com_ptr<IQuorvaneVSTOServices> services;
    require(factory(__uuidof(Excel))
                ->CreateInstance(nullptr, __uuidof(IQuorvaneVSTOServices), services.putVoid()),
            "The add-in makes no object");
    return services;
}

com::com_ptr<IQuorvaneUDF> Server::createFunctions() const {
    com::com_ptr<IQuorvaneUDF> functions;
    require(factory(__uuidof(Excel))->CreateInstance(nullptr, __uuidof(IQuorvaneUDF), functions.putVoid()),
            "A server makes no object");
    return functions;
}

AddIn::AddIn(const Server& server, IDispatch* application)
    : services_{server.createServices()}, events_{services_.tryAs<_IDTExtensibility2>()} {
    require(events_->OnConnection(application, ext_cm_Startup, nullptr, nullptr),
            "The add-in does not connect");
}

AddIn::~AddIn() { static_cast<void>(events_->OnDisconnection(ext_dm_HostShutdown, nullptr)); }

void AddIn::attach(IUnknown* workbook, const std::wstring& name, REFCLSID packageClass) const {
    const com::unique_bstr manager = com::makeBstr(L"Bench");
    const com::unique_bstr package = com::makeBstr(name);
    require(services_->CreateWorkbookPP(workbook, manager.get(), packageClass, StandAlonePackage11, nullptr,
                                        package.get()),
            "A package cannot be attached");
}

} // namespace bench
