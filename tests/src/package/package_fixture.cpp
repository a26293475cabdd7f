#include "tests/src/package/package_fixture.h"

namespace quorvane {

std::string systemText(HRESULT code) {
    wchar_t text[1024];
    DWORD length = FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                                  static_cast<DWORD>(code), LOCALE_USER_DEFAULT, text, 1024, nullptr);
    if (length == 0) {
        char unknown[40];
        std::snprintf(unknown, sizeof unknown, "error code 0x%08lX", static_cast<unsigned long>(code));
        return unknown;
    }
    while (length > 0 && (text[length - 1] == L'\n' || text[length - 1] == L'\r')) {
        --length;
    }
    return scripted::narrow({text, length});
}

PackageTest::~PackageTest() {
    manager.reset();
    package.reset();
    EXPECT_EQ(com::liveObjects, liveBefore) << "objects were not released";
}

std::unique_ptr<PropertyPackage> PackageTest::bind(IStream* savedState) {
    return std::make_unique<PropertyPackage>(L"Scripted", scripted::packageInProcess, StandAlonePackage11,
                                             L"", savedState);
}

std::unique_ptr<PropertyPackage> PackageTest::bindThroughManager(const wchar_t* name, IStream* savedState) {
    return std::make_unique<PropertyPackage>(L"Scripted manager", scripted::managerInProcess,
                                             PropertyPackageManager11, name, savedState);
}

com::com_ptr<IStream> PackageTest::streamOf(std::string_view content) {
    com::com_ptr<IStream> stream;
    EXPECT_EQ(CreateStreamOnHGlobal(nullptr, TRUE, stream.put()), S_OK);
    EXPECT_EQ(stream->Write(content.data(), static_cast<ULONG>(content.size()), nullptr), S_OK);
    EXPECT_EQ(stream->Seek({}, STREAM_SEEK_SET, nullptr), S_OK);
    return stream;
}

} // namespace quorvane
