// Packages of other makers call us, and we call them, through these tables of functions: what the header and
// the type library say must be what everybody else was compiled against.
#include "com/type_library.h"
#include "tests/src/com/published_members.h"
#include "tests/src/com/type_information.h"

#include <gtest/gtest.h>

#include <map>
#include <set>
#include <string>

namespace quorvane {
namespace {

std::wstring text(const GUID& guid) {
    wchar_t buffer[39];
    StringFromGUID2(guid, buffer, 39);
    return buffer;
}

std::string narrow(const std::wstring& wide) { return {wide.begin(), wide.end()}; }

class PublishedLibrary : public testing::Test {
  protected:
    void SetUp() override {
        ASSERT_EQ(LoadTypeLibEx(com::thisModulePath().c_str(), REGKIND_NONE, library.put()), S_OK);
    }

    com::com_ptr<ITypeLib> library;
};

TEST(PublishedHeader, HasEveryInterfaceUnderItsIdentifier) {
    for (const PublishedInterface& published : publishedInterfaces) {
        EXPECT_EQ(text(published.compiled), published.identifier) << narrow(published.name);
    }
}

TEST(PublishedHeader, HasEveryMemberInItsSlot) {
    for (const PublishedMember& member : publishedMembers) {
        EXPECT_EQ(member.compiled, member.slot) << narrow(member.interfaceName) << ' ' << narrow(member.name);
    }
}

TEST(PublishedHeader, HasTheErrorCodes) {
    EXPECT_EQ(static_cast<unsigned long>(ECapeUnknownHR), 0x80040501UL);
    EXPECT_EQ(static_cast<unsigned long>(ECapeDataHR), 0x80040502UL);
    EXPECT_EQ(static_cast<unsigned long>(ECapeLicenceErrorHR), 0x80040503UL);
    EXPECT_EQ(static_cast<unsigned long>(ECapeBadCOParameterHR), 0x80040504UL);
    EXPECT_EQ(static_cast<unsigned long>(ECapeBadArgumentHR), 0x80040505UL);
    EXPECT_EQ(static_cast<unsigned long>(ECapeInvalidArgumentHR), 0x80040506UL);
    EXPECT_EQ(static_cast<unsigned long>(ECapeOutOfBoundsHR), 0x80040507UL);
    EXPECT_EQ(static_cast<unsigned long>(ECapeNoImplHR), 0x80040509UL);
    EXPECT_EQ(static_cast<unsigned long>(ECapeLimitedImplHR), 0x8004050AUL);
    EXPECT_EQ(static_cast<unsigned long>(ECapeComputationHR), 0x8004050BUL);
    EXPECT_EQ(static_cast<unsigned long>(ECapeFailedInitialisationHR), 0x8004050FUL);
    EXPECT_EQ(static_cast<unsigned long>(ECapeSolvingErrorHR), 0x80040510UL);
    EXPECT_EQ(static_cast<unsigned long>(ECapeBadInvOrderHR), 0x80040511UL);
    EXPECT_EQ(static_cast<unsigned long>(ECapeInvalidOperationHR), 0x80040512UL);
    EXPECT_EQ(static_cast<unsigned long>(ECapePersistenceHR), 0x80040513UL);
    EXPECT_EQ(static_cast<unsigned long>(ECapeThrmPropertyNotAvailableHR), 0x8004051AUL);
}

TEST_F(PublishedLibrary, IsTheStandards) {
    TLIBATTR* attributes = nullptr;
    ASSERT_EQ(library->GetLibAttr(&attributes), S_OK);
    EXPECT_EQ(text(attributes->guid), L"{4A5E2E81-C093-11D4-9F1B-0010A4D198C2}");
    EXPECT_EQ(attributes->wMajorVerNum, 1);
    EXPECT_EQ(attributes->wMinorVerNum, 1);
    library->ReleaseTLibAttr(attributes);
}

TEST_F(PublishedLibrary, HasTheInterfacesAsDualOnes) {
    for (const PublishedInterface& published : publishedInterfaces) {
        const auto info = typeNamed(library.get(), published.name);
        ASSERT_TRUE(info) << narrow(published.name);
        const TYPEATTR attributes = attributesOf(info.get());
        EXPECT_EQ(text(attributes.guid), published.identifier) << narrow(published.name);
        EXPECT_NE(attributes.wTypeFlags & TYPEFLAG_FDUAL, 0) << narrow(published.name);
        EXPECT_NE(attributes.wTypeFlags & TYPEFLAG_FOLEAUTOMATION, 0) << narrow(published.name);
    }
}

TEST_F(PublishedLibrary, HasEveryMemberUnderItsNumberInItsSlotAndNoMore) {
    std::map<std::wstring, std::vector<LibraryMember>> interfaces;
    for (const PublishedMember& published : publishedMembers) {
        auto& members = interfaces[published.interfaceName];
        if (members.empty()) {
            members = membersOf(typeNamed(library.get(), published.interfaceName).get());
        }
        const std::string name = narrow(published.interfaceName) + " " + narrow(published.name);
        ASSERT_LT(published.slot - 7, members.size()) << name;
        const LibraryMember& member = members[published.slot - 7];
        EXPECT_EQ(member.name, published.name) << name;
        EXPECT_EQ(member.slot, published.slot) << name;
        EXPECT_EQ(member.id, published.member) << name;
    }
    std::size_t count = 0;
    for (const auto& [name, members] : interfaces) {
        count += members.size();
    }
    EXPECT_EQ(count, std::size(publishedMembers));
}

} // namespace
} // namespace quorvane
