#include "tests/src/server/add_in.h"

#include <gtest/gtest.h>

int main(int argc, char** argv) {
    ::testing::InitGoogleTest(&argc, argv);
    // Excel's main thread is a single-threaded apartment.
    const HRESULT initialized = CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    tests::AddIn::instance();
    const int result = RUN_ALL_TESTS();
    if (SUCCEEDED(initialized)) {
        CoUninitialize();
    }
    return result;
}
