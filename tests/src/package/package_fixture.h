// Property packages bound to the scripted component, which the real CoCreateInstance finds in this process.
// Every test ends with all objects released.
#pragma once

#include "src/package/property_package.h"
#include "tests/scripted_package/registered.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace quorvane {

constexpr auto ecapeUnknown = static_cast<HRESULT>(ECapeUnknownHR);
constexpr auto ecapeNoImpl = static_cast<HRESULT>(ECapeNoImplHR);
constexpr auto ecapeComputation = static_cast<HRESULT>(ECapeComputationHR);
constexpr double missingMarker = std::numeric_limits<double>::lowest();

/// What a user sees of a call that fails; "no failure" when it does not.
template <typename Body>
std::string failureOf(Body&& body) {
    try {
        std::forward<Body>(body)();
    } catch (const WException& failure) {
        return scripted::narrow(failure.message());
    } catch (const std::exception& failure) {
        return std::string{"standard exception "} + failure.what();
    } catch (...) {
        return "Unknown exception";
    }
    return "no failure";
}

/// The system's own text of a code, which differs from system to system.
std::string systemText(HRESULT code);

class PackageTest : public testing::Test {
    struct Apartment {
        Apartment() { CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED); }
        ~Apartment() { CoUninitialize(); }
    };
    Apartment apartment_;

  protected:
    ~PackageTest() override;

    std::unique_ptr<PropertyPackage> bind(IStream* savedState = nullptr);
    std::unique_ptr<PropertyPackage> bindThroughManager(const wchar_t* name = L"First",
                                                        IStream* savedState = nullptr);

    /// A stream at its start that holds `content`.
    static com::com_ptr<IStream> streamOf(std::string_view content);

    const long liveBefore = com::liveObjects;
    std::optional<scripted::Package> package{std::in_place};
    std::optional<scripted::Manager> manager{std::in_place, *package};
    scripted::Script& script = **package;
    scripted::Script& managerScript = **manager;
};

} // namespace quorvane
