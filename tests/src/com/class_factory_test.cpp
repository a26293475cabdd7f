// The class object through which others create ours.
#include "com/class_factory.h"
#include "tests/leak_gate/allocations.h"
#include "tests/src/com/counted.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <thread>

namespace com {
namespace {

class Plain final : public Counted {};

class WithoutMemory final : public Counted {
  public:
    WithoutMemory() { throw std::bad_alloc{}; }
};

class Broken final : public Counted {
  public:
    Broken() { throw std::runtime_error{"broken"}; }
};

const CLSID plainClass = {0x2F0D5E7B, 0x9D0C, 0x4C57, {0x86, 0x1D, 0x3A, 0x4B, 0x5C, 0x6D, 0x7E, 0x8F}};

template <typename T>
com_ptr<IClassFactory> factoryOf() {
    return make<CClassFactory<T>>();
}

TEST(ClassFactory, CreatesObjects) {
    com_ptr<IPersist> object;
    EXPECT_EQ(factoryOf<Plain>()->CreateInstance(nullptr, IID_IPersist, object.putVoid()), S_OK);
    ASSERT_TRUE(object);
    com_ptr<IPersist> another;
    EXPECT_EQ(factoryOf<Plain>()->CreateInstance(nullptr, IID_IPersist, another.putVoid()), S_OK);
    EXPECT_NE(object.get(), another.get());
}

TEST(ClassFactory, RefusesAggregation) {
    const auto outer = make<Counted>();
    int dirt = 0;
    void* out = &dirt;
    EXPECT_EQ(factoryOf<Plain>()->CreateInstance(outer->errorFace(), IID_IUnknown, &out),
              CLASS_E_NOAGGREGATION);
    EXPECT_EQ(out, nullptr);
}

TEST(ClassFactory, RefusesInterfacesThatTheClassDoesNotHave) {
    const long before = liveObjects;
    int dirt = 0;
    void* out = &dirt;
    EXPECT_EQ(factoryOf<Plain>()->CreateInstance(nullptr, IID_IDispatch, &out), E_NOINTERFACE);
    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(liveObjects, before);
}

TEST(ClassFactory, RefusesToCreateIntoNothing) {
    EXPECT_EQ(factoryOf<Plain>()->CreateInstance(nullptr, IID_IUnknown, nullptr), E_POINTER);
}

TEST(ClassFactory, LetsNoExceptionOut) {
    const long before = liveObjects;
    void* out = nullptr;
    EXPECT_EQ(factoryOf<WithoutMemory>()->CreateInstance(nullptr, IID_IUnknown, &out), E_OUTOFMEMORY);
    EXPECT_EQ(factoryOf<Broken>()->CreateInstance(nullptr, IID_IUnknown, &out), E_FAIL);
    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(liveObjects, before);
}

TEST(ClassFactory, KeepsTheModuleLoadedWhileTheServerIsLocked) {
    const long before = liveObjects;
    EXPECT_EQ(factoryOf<Plain>()->LockServer(TRUE), S_OK);
    EXPECT_EQ(liveObjects, before + 1);
    EXPECT_EQ(factoryOf<Plain>()->LockServer(FALSE), S_OK);
    EXPECT_EQ(liveObjects, before);
}

TEST(GetClassObject, GivesTheFactoryOfTheOneClass) {
    com_ptr<IClassFactory> factory;
    EXPECT_EQ(getClassObject<Plain>(plainClass, plainClass, IID_IClassFactory, factory.putVoid()), S_OK);
    ASSERT_TRUE(factory);
    com_ptr<IPersist> object;
    EXPECT_EQ(factory->CreateInstance(nullptr, IID_IPersist, object.putVoid()), S_OK);
}

TEST(GetClassObject, RefusesOtherClassesOtherInterfacesAndNoOutPointer) {
    int dirt = 0;
    void* out = &dirt;
    EXPECT_EQ(getClassObject<Plain>(plainClass, CLSID_NULL, IID_IClassFactory, &out),
              CLASS_E_CLASSNOTAVAILABLE);
    EXPECT_EQ(out, nullptr);
    out = &dirt;
    EXPECT_EQ(getClassObject<Plain>(plainClass, plainClass, IID_IPersist, &out), E_NOINTERFACE);
    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(getClassObject<Plain>(plainClass, plainClass, IID_IClassFactory, nullptr), E_POINTER);
}

// GCC's run time needs memory for a thread's first exception.
TEST(GetClassObject, ComesBeforeTheFirstExceptionOfAThread) {
    using leak_gate::Refusal;
    // It also needs some for the first exception of all for which there is no memory.
    const auto fail = [] {
        const Refusal refusal{leak_gate::testProgram, 1, Refusal::Extent::One};
        throw std::bad_alloc{};
    };
    EXPECT_THROW(fail(), std::bad_alloc);
    bool isSurvived = false;
    std::thread{[&isSurvived] {
        const auto get = [](com_ptr<IClassFactory>& factory) {
            return getClassObject<WithoutMemory>(plainClass, plainClass, IID_IClassFactory,
                                                 factory.putVoid());
        };
        com_ptr<IClassFactory> factory;
        {
            const Refusal refusal{leak_gate::testProgram, 1, Refusal::Extent::AllFromThereOn};
            EXPECT_EQ(get(factory), E_OUTOFMEMORY);
        }
        EXPECT_EQ(get(factory), S_OK);
        void* out = nullptr;
        const Refusal refusal{leak_gate::testProgram, 1, Refusal::Extent::AllFromThereOn};
        EXPECT_EQ(factory->CreateInstance(nullptr, IID_IUnknown, &out), E_OUTOFMEMORY);
        isSurvived = true;
    }}.join();
    EXPECT_TRUE(isSurvived);
}

} // namespace
} // namespace com
