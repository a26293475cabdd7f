#include "tests/packages/peng_robinson/com/memory_failure.h"

#include "com/safe_array.h"
#include "tests/leak_gate/hooks.h"

#include <array>
#include <cstdio>
#include <string_view>

namespace peng_robinson::test {

using leak_gate::Refusal;

struct MemoryFailure::Means {
    const char* name;
    bool isCom;
    Refusal::Extent extent;
};

namespace {

constexpr const char* managerInterface = "ICapeThermoPropertyPackageManager";

// The last failure in the words of the object that was called.
std::string failureOf(const Stage& stage, const Case& tested) {
    const bool isManager = std::string_view{tested.interfaceName} == managerInterface;
    return plain(lastFailure(isManager ? stage.manager.get() : stage.package.get()).description);
}

} // namespace

leak_gate::Owner packageDll() {
    static const leak_gate::Owner dll = [] {
        PackageDll::instance();
        leak_gate::watchLoadedModules();
        const leak_gate::Owner owner = leak_gate::ownerOf("PengRobinson.dll");
        // Made once and kept: what the C++ run time needs for the first exception for which there is no
        // memory, which nothing but want of memory makes it make.
        const Stage stage;
        com::unique_bstr scope;
        const Refusal refusal{owner, 1, Refusal::Extent::Two};
        EXPECT_EQ(stage.of<ECapeUser>()->get_scope(scope.put()), E_OUTOFMEMORY);
        return owner;
    }();
    return dll;
}

std::string plain(std::wstring_view text) {
    std::string result;
    for (const wchar_t c : text) {
        result += c < 128 ? static_cast<char>(c) : '?';
    }
    return result;
}

std::string shown(const VARIANT& value) {
    std::string text;
    switch (value.vt) {
    case VT_ARRAY | VT_BSTR:
        for (const std::wstring& element : textsOf(value)) {
            text += plain(element) + "|";
        }
        return text;
    case VT_ARRAY | VT_R8:
        for (const double element : realsOf(value)) {
            text += std::to_string(element) + "|";
        }
        return text;
    case VT_ARRAY | VT_VARIANT: {
        const com::array_lock<VARIANT> lock{value.parray};
        for (const VARIANT& element : lock.elements()) {
            text += shown(element) + "|";
        }
        return text;
    }
    case VT_BSTR:
        return plain(com::viewOf(value.bstrVal));
    case VT_R8:
        return std::to_string(value.dblVal);
    case VT_I4:
        return std::to_string(value.lVal);
    case VT_EMPTY:
        return "-";
    default:
        return "type " + std::to_string(value.vt);
    }
}

void PrintTo(const Answer& answer, std::ostream* out) {
    std::array<char, 16> code{};
    std::snprintf(code.data(), code.size(), "0x%08lX ", static_cast<unsigned long>(answer.code));
    *out << code.data() << answer.outputs;
}

Stage::Stage() {
    com::com_ptr<IDispatch> other;
    EXPECT_EQ(managing()->GetPropertyPackage(com::makeBstr(L"Natural gas").get(), other.put()), S_OK);
    EXPECT_EQ(other.tryAs<IPersistStreamInit>()->Save(stream.get(), FALSE), S_OK);
    material->setOverall(L"fraction", {0.4, 0.6}, L"Mole");
    material->setOverall(L"temperature", {250.0});
    material->setOverall(L"pressure", {1e6});
    material->setConditions(L"Vapor", 280.0, 2e6, {0.2, 0.8});
    material->setConditions(L"Liquid", 280.0, 2e6, {0.9, 0.1});
    EXPECT_EQ(of<ICapeThermoMaterialContext>()->SetMaterial(material->self()), S_OK);
}

std::string Stage::written(const wchar_t* label, const wchar_t* property) const {
    const auto found = material->phaseValue(label, property);
    return found ? shown(reals(found->values)) : "-";
}

std::string Stage::kept() const {
    const auto saved = com::make<ByteStream>();
    com::unique_bstr name;
    com::unique_bstr description;
    EXPECT_EQ(of<IPersistStreamInit>()->Save(saved.get(), FALSE), S_OK);
    EXPECT_EQ(of<ICapeIdentification>()->get_ComponentName(name.put()), S_OK);
    EXPECT_EQ(of<ICapeIdentification>()->get_ComponentDescription(description.put()), S_OK);
    return std::string{saved->bytes.begin(), saved->bytes.end()} + plain(com::viewOf(name)) +
           plain(com::viewOf(description)) + (of<IPersistStreamInit>()->IsDirty() == S_OK ? "*" : "");
}

void PrintTo(const Case& tested, std::ostream* out) {
    *out << tested.interfaceName << "_" << tested.method << tested.further;
}

void MemoryFailure::SetUp() {
    write(L"my gas.txt",
          "[compounds]\nname,formula,CAS number,molecular weight,critical temperature,critical "
          "pressure,acentric factor,normal boiling point,cp0\n"
          "methane,CH4,74-82-8,16.0428,190.564,4599200,0.01142,111.667,36\n"
          "ethane,C2H6,74-84-0,30.06904,305.322,4872200,0.0995,184.569,53\n");
    call(); // makes once what is kept
    healthy_ = call();
    ASSERT_EQ(call(), healthy_);
}

Answer MemoryFailure::call() {
    Stage stage;
    return GetParam().call(stage);
}

void MemoryFailure::failOne(const Means& means, long long position, bool& happened) const {
    Stage stage;
    const std::string before = stage.kept();
    Answer answer;
    {
        const Refusal refusal = means.isCom ? Refusal::ofCom(dll_, position, means.extent)
                                            : Refusal{dll_, position, means.extent};
        answer = GetParam().call(stage);
        happened = refusal.happened();
    }
    if (!happened || answer == healthy_) {
        EXPECT_EQ(answer, healthy_);
        return;
    }
    EXPECT_TRUE(answer.code == noMemory || answer.code == E_OUTOFMEMORY) << testing::PrintToString(answer);
    if (answer.code == noMemory) {
        EXPECT_EQ(failureOf(stage, GetParam()), "Not enough memory");
    }
    EXPECT_EQ(stage.kept(), before);
    EXPECT_EQ(GetParam().call(stage), healthy_) << "the same call afterwards";
}

void MemoryFailure::failEachAllocation(const Means& means) {
    bool happened = true;
    long long position = 0;
    while (happened && !HasFailure()) {
        SCOPED_TRACE(testing::Message() << means.name << ", from number " << ++position << " on");
        const leak_gate::AllocationUse heap{dll_};
        const leak_gate::AllocationUse automation{leak_gate::comAllocator};
        failOne(means, position, happened);
        EXPECT_EQ(heap.blocks(), 0);
        EXPECT_EQ(automation.blocks(), 0);
    }
    std::printf("refused %s: %lld times\n", means.name, position - 1);
}

TEST_P(MemoryFailure, IsReportedAndLosesNothing) {
    constexpr Means allMeans[] = {{"one block of the heap", false, Refusal::Extent::One},
                                  {"two blocks of the heap", false, Refusal::Extent::Two},
                                  {"all blocks of the heap", false, Refusal::Extent::AllFromThereOn},
                                  {"one block of COM", true, Refusal::Extent::One},
                                  {"all blocks of COM", true, Refusal::Extent::AllFromThereOn}};
    for (const Means& means : allMeans) {
        failEachAllocation(means);
    }
}

} // namespace peng_robinson::test
