// Reference counts, interfaces and identity of the objects written here.
#include "tests/src/com/counted.h"
#include "tests/src/com/slot_of.h"

#include <gtest/gtest.h>

namespace com {
namespace {

TEST(COMObject, AnswersForEveryInterfaceThatItLists) {
    const auto object = make<Counted>();
    EXPECT_EQ(queryFor<ISupportErrorInfo>(object->persistFace()).get(), object->errorFace());
    EXPECT_EQ(queryFor<IPersist>(object->errorFace()).get(), object->persistFace());
}

TEST(COMObject, IsTheSameUnknownFromEveryInterface) {
    const auto object = make<Counted>();
    const auto one = queryFor<IUnknown>(object->errorFace());
    const auto other = queryFor<IUnknown>(object->persistFace());
    EXPECT_TRUE(one);
    EXPECT_EQ(one.get(), other.get());
    EXPECT_EQ(queryFor<IUnknown>(one.get()).get(), one.get());
}

TEST(COMObject, RefusesOtherInterfacesAndEmptiesTheOutPointer) {
    const auto object = make<Counted>();
    int dirt = 0;
    void* out = &dirt;
    EXPECT_EQ(object->errorFace()->QueryInterface(IID_IDispatch, &out), E_NOINTERFACE);
    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(object->references(), 1U);
}

TEST(COMObject, RefusesAQueryWithoutAnOutPointer) {
    const auto object = make<Counted>();
    EXPECT_EQ(object->persistFace()->QueryInterface(IID_IUnknown, nullptr), E_POINTER);
    EXPECT_EQ(object->references(), 1U);
}

TEST(COMObject, CountsReferencesOfAllItsInterfacesTogether) {
    int ended = 0;
    auto* const object = new Counted{&ended};
    EXPECT_EQ(object->errorFace()->AddRef(), 1U);
    EXPECT_EQ(object->persistFace()->AddRef(), 2U);
    {
        const auto unknown = queryFor<IUnknown>(object->errorFace());
        EXPECT_EQ(object->references(), 3U);
    }
    EXPECT_EQ(object->errorFace()->Release(), 1U);
    EXPECT_EQ(ended, 0);
    EXPECT_EQ(object->persistFace()->Release(), 0U);
    EXPECT_EQ(ended, 1);
}

TEST(COMObject, FindsAnInterfaceWithoutAddingAReference) {
    const auto object = make<Counted>();
    EXPECT_EQ(object->findInterface(IID_IPersist), object->persistFace());
    EXPECT_EQ(object->findInterface(IID_IDispatch), nullptr);
    EXPECT_EQ(object->references(), 1U);
}

TEST(COMObject, IsCountedWhileItLives) {
    const long before = liveObjects;
    {
        const auto one = make<Counted>();
        EXPECT_EQ(liveObjects, before + 1);
        const auto other = make<Counted>();
        EXPECT_EQ(liveObjects, before + 2);
    }
    EXPECT_EQ(liveObjects, before);
}

// Its destructor lends `this` to somebody who counts.
class LendsItselfAtItsEnd final : public implements<COMObject, IPersist> {
  public:
    explicit LendsItselfAtItsEnd(int& ended) : ended_{ended} {}
    ~LendsItselfAtItsEnd() override {
        ++ended_;
        IPersist* const face = this;
        face->AddRef();
        face->Release();
    }
    HRESULT STDMETHODCALLTYPE GetClassID(CLSID*) noexcept override { return E_NOTIMPL; }

  private:
    int& ended_;
};

TEST(COMObject, EndsOnceThoughItsDestructorLendsItself) {
    int ended = 0;
    make<LendsItselfAtItsEnd>(ended).reset();
    EXPECT_EQ(ended, 1);
}

// Adds one interface to a finished class.
class Extended final : public implements<Counted, IOleWindow> {
  public:
    HRESULT STDMETHODCALLTYPE GetWindow(HWND*) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE ContextSensitiveHelp(BOOL) noexcept override { return E_NOTIMPL; }
};

TEST(COMObject, KeepsTheInterfacesOfTheClassThatItExtends) {
    const auto object = make<Extended>();
    const auto window = queryFor<IOleWindow>(object->errorFace());
    ASSERT_TRUE(window);
    EXPECT_TRUE(window.tryAs<IPersist>());
    EXPECT_EQ(window.tryAs<IUnknown>().get(), queryFor<IUnknown>(object->persistFace()).get());
}

#ifndef _MSC_VER
TEST(COMObject, HasItsOperationsInTheirOrder) {
    using quorvane::slotOf;
    EXPECT_EQ(slotOf(&COMObject::QueryInterface), 0U);
    EXPECT_EQ(slotOf(&COMObject::AddRef), 1U);
    EXPECT_EQ(slotOf(&COMObject::Release), 2U);
    EXPECT_EQ(slotOf(&COMObject::findInterface), 3U);
    EXPECT_EQ(slotOf(&COMObject::addReference), 4U);
    EXPECT_EQ(slotOf(&COMObject::releaseReference), 5U);
    EXPECT_EQ(slotOf(&COMObject::queryInterface), 6U);
    EXPECT_TRUE(std::has_virtual_destructor_v<COMObject>);
}
#endif

} // namespace
} // namespace com
