// The owner of one reference.
#include "com/com_ptr.h"
#include "tests/src/com/counted.h"

#include <gtest/gtest.h>

#include <utility>

namespace com {
namespace {

// Answers queries in the wrong ways that servers have been seen to use.
class Careless final : public IUnknown {
  public:
    HRESULT result = S_OK;
    void* answer = nullptr;
    int released = 0;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void** out) noexcept override {
        *out = answer;
        return result;
    }
    ULONG STDMETHODCALLTYPE AddRef() noexcept override { return 1; }
    ULONG STDMETHODCALLTYPE Release() noexcept override {
        ++released;
        return 1;
    }
};

TEST(ComPtr, MakesAnObjectWithOneReference) {
    int ended = 0;
    {
        const auto object = make<Counted>(&ended);
        EXPECT_EQ(object->references(), 1U);
        EXPECT_EQ(ended, 0);
    }
    EXPECT_EQ(ended, 1);
}

TEST(ComPtr, AttachTakesAReferenceOverAndShareAddsOne) {
    const auto object = make<Counted>();
    object->errorFace()->AddRef();
    {
        const auto attached = com_ptr<IPersist>::attach(object->persistFace());
        EXPECT_EQ(object->references(), 2U);
        const auto shared = com_ptr<IPersist>::share(object->persistFace());
        EXPECT_EQ(object->references(), 3U);
    }
    EXPECT_EQ(object->references(), 1U);
}

TEST(ComPtr, CopiesAddAndMovesDoNot) {
    auto object = make<Counted>();
    auto copy = object;
    EXPECT_EQ(object->references(), 2U);
    const auto moved = std::move(copy);
    EXPECT_FALSE(copy);
    EXPECT_EQ(object->references(), 2U);
    const com_ptr<IPersist> base = object;
    EXPECT_EQ(object->references(), 3U);
}

TEST(ComPtr, AssignmentLetsTheOldObjectGo) {
    int ended = 0;
    auto object = make<Counted>(&ended);
    object = make<Counted>();
    EXPECT_EQ(ended, 1);
    auto& same = object;
    object = same;
    EXPECT_EQ(object->references(), 1U);
    object = nullptr;
    EXPECT_FALSE(object);
}

TEST(ComPtr, PutLetsTheOldObjectGoFirst) {
    int ended = 0;
    auto object = make<Counted>(&ended);
    EXPECT_EQ(*object.put(), nullptr);
    EXPECT_EQ(ended, 1);
}

TEST(ComPtr, ReleaseGivesTheReferenceAway) {
    auto object = make<Counted>();
    Counted* const raw = object.release();
    EXPECT_FALSE(object);
    EXPECT_EQ(raw->references(), 1U);
    raw->errorFace()->Release();
}

TEST(ComPtr, AsksForInterfacesWithoutLeaking) {
    const auto object = make<Counted>();
    {
        const auto persist = queryFor<IPersist>(object->errorFace());
        EXPECT_EQ(object->references(), 2U);
        EXPECT_TRUE(persist.tryAs<ISupportErrorInfo>());
        EXPECT_FALSE(persist.tryAs<IDispatch>());
    }
    EXPECT_EQ(object->references(), 1U);
    EXPECT_FALSE(queryFor<IPersist>(nullptr));
    EXPECT_FALSE(com_ptr<IPersist>{}.tryAs<IUnknown>());
}

TEST(ComPtr, DoesNotTrustARefusalThatLeavesAPointer) {
    Careless server;
    int dirt = 0;
    server.result = E_NOINTERFACE;
    server.answer = &dirt;
    EXPECT_FALSE(queryFor<IPersist>(&server));
    EXPECT_EQ(server.released, 0);
}

TEST(ComPtr, TakesASuccessWithoutAPointerForARefusal) {
    Careless server;
    EXPECT_FALSE(queryFor<IPersist>(&server));
}

} // namespace
} // namespace com
