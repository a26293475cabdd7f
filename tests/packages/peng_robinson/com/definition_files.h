// A manager and a folder of definitions, empty at first, for one test alone.
#pragma once

#include "tests/packages/peng_robinson/com/support.h"

#include <filesystem>
#include <fstream>

namespace peng_robinson::test {

class DefinitionFiles : public testing::Test {
  protected:
    DefinitionFiles() {
        std::filesystem::remove_all(folder);
        std::filesystem::create_directories(folder);
        SetEnvironmentVariableW(variable, folder.c_str());
    }
    ~DefinitionFiles() override {
        SetEnvironmentVariableW(variable, nullptr);
        std::filesystem::remove_all(folder);
    }

    void write(const std::wstring& name, const std::string& text) const {
        std::filesystem::create_directories((folder / name).parent_path());
        std::ofstream{folder / name, std::ios::binary} << text;
    }
    HRESULT get(const wchar_t* name, com::com_ptr<IDispatch>& package) const {
        const com::unique_bstr text = com::makeBstr(name);
        return manager->GetPropertyPackage(text.get(), package.put());
    }
    com::com_ptr<IDispatch> open(const wchar_t* name) const {
        com::com_ptr<IDispatch> package;
        EXPECT_EQ(get(name, package), S_OK) << testing::PrintToString(lastFailure(object.get()).description);
        return package;
    }

    static constexpr const wchar_t* variable = L"PENGROBINSON_PACKAGES";
    const std::filesystem::path folder =
        std::filesystem::temp_directory_path() / L"Peng-Robinson packages test";
    com::com_ptr<IDispatch> object = PackageDll::instance().createManager();
    com::com_ptr<ICapeThermoPropertyPackageManager> manager =
        object.tryAs<ICapeThermoPropertyPackageManager>();
};

} // namespace peng_robinson::test
