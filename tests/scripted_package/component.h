// Component: what the scripted package and the scripted manager have in common. Every method goes through
// respond(), which asks the script first. Late binding is refused: clients call through the vtable.
#pragma once

#include "com/com_ptr.h"
#include "com/dual.h"
#include "com/implements.h"
#include "tests/scripted_package/script.h"

#include <atomic>

namespace scripted {

/// Objects of the scripted component that are alive, clients' references and all.
inline std::atomic<long> liveComponents{0};

/// Thrown by a healthy method that cannot answer: the code, and the text that ECapeUser then gives.
struct Refusal {
    HRESULT code;
    std::wstring description;
};

class Component : public com::implements<com::COMObject, com::RefusedDual<ICapeIdentification>,
                                         com::RefusedDual<ICapeUtilities>, com::RefusedDual<ECapeRoot>,
                                         com::RefusedDual<ECapeUser>> {
  public:
    ~Component() override;

    void* findInterface(REFIID iid) noexcept override;
    HRESULT queryInterface(REFIID iid, void** out) noexcept override;

    // ICapeIdentification
    HRESULT STDMETHODCALLTYPE get_ComponentName(BSTR* name) noexcept override;
    HRESULT STDMETHODCALLTYPE put_ComponentName(BSTR name) noexcept override;
    HRESULT STDMETHODCALLTYPE get_ComponentDescription(BSTR* description) noexcept override;
    HRESULT STDMETHODCALLTYPE put_ComponentDescription(BSTR description) noexcept override;

    // ICapeUtilities
    HRESULT STDMETHODCALLTYPE get_parameters(IDispatch** parameters) noexcept override;
    HRESULT STDMETHODCALLTYPE put_simulationContext(IDispatch* context) noexcept override;
    HRESULT STDMETHODCALLTYPE Initialize() noexcept override;
    HRESULT STDMETHODCALLTYPE Terminate() noexcept override;
    HRESULT STDMETHODCALLTYPE Edit() noexcept override;

    // ECapeRoot and ECapeUser
    HRESULT STDMETHODCALLTYPE get_name(BSTR* name) noexcept override;
    HRESULT STDMETHODCALLTYPE get_code(LONG* code) noexcept override;
    HRESULT STDMETHODCALLTYPE get_description(BSTR* description) noexcept override;
    HRESULT STDMETHODCALLTYPE get_scope(BSTR* scope) noexcept override;
    HRESULT STDMETHODCALLTYPE get_interfaceName(BSTR* interfaceName) noexcept override;
    HRESULT STDMETHODCALLTYPE get_operation(BSTR* operation) noexcept override;
    HRESULT STDMETHODCALLTYPE get_moreInfo(BSTR* moreInfo) noexcept override;

  protected:
    Component(std::shared_ptr<Script> script, std::wstring name);

    Script& script() const noexcept { return *script_; }

    virtual void terminated() noexcept {}
    virtual ICapeThermoMaterial* activeMaterial() const noexcept { return nullptr; }

    /// Records the call and answers it: by the script's hook, failure or answer, else by `healthy`, which
    /// gives the outputs itself. A null output is E_POINTER.
    HRESULT respond(const char* method, std::initializer_list<VARIANT> in, std::initializer_list<Out> out,
                    const std::function<void()>& healthy) noexcept;

    static VARIANT argument(BSTR text) noexcept;
    static VARIANT argument(double number) noexcept;
    static VARIANT argument(LONG number) noexcept;
    static VARIANT argument(bool truth) noexcept;
    static VARIANT argument(IUnknown* object) noexcept;

  private:
    HRESULT perform(Call& call);
    HRESULT giveAnswer(const std::vector<com::variant>& answer, std::span<const Out> out);
    HRESULT giveErrorText(const char* method, BSTR* out, const std::wstring& text) noexcept;
    HRESULT refuse(HRESULT code, std::wstring description, std::wstring name);

    std::shared_ptr<Script> script_;
    std::wstring name_;
    std::wstring description_ = L"A CAPE-OPEN component whose every answer a test sets";
    Failure lastError_{S_OK, {}, {}};
    std::string lastMethod_;
};

} // namespace scripted
