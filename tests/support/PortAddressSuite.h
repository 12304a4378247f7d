#pragma once

#include <memory>
#include <new>
#include <type_traits>
#include <typeinfo>

#include <gtest/gtest.h>

#include "FailingAllocation.h"
#include "TextOf.h"
#include "ut_PortAddress.h"

namespace test {

/// A port address with the type of another class.
class FalseAddress : public utility::PortAddress {
public:
    explicit FalseAddress(PortType type) : m_type(type) {}
    PortAddress* clone() const override {
        return nullptr;
    }
    PortType getType() const override {
        return m_type;
    }
    char* toBuffer(char* buf, unsigned int) const override {
        return buf;
    }
    bool fromString(const char*) override {
        return false;
    }
    bool operator==(const PortAddress&) const override {
        return false;
    }

private:
    PortType m_type;
};

/// The tests of a class of port addresses. `Traits` describes the class to test:
/// - `Address`, the class, and `type`, what its `getType` returns,
/// - `example()`, an address, and `others()`, addresses that each differ from it in one member only.
///
///     namespace test {
///     INSTANTIATE_TYPED_TEST_SUITE_P(FCPortAddress, PortAddressTest, FCTraits);
///     }
template<typename Traits>
class PortAddressTest : public testing::Test {
protected:
    static_assert(std::is_trivially_destructible<typename Traits::Address>::value,
                  "deleted through a base without virtual destructor");
};

TYPED_TEST_SUITE_P(PortAddressTest);

TYPED_TEST_P(PortAddressTest, HasItsType) {
    EXPECT_EQ(TypeParam::example().getType(), TypeParam::type);
}

TYPED_TEST_P(PortAddressTest, EqualsIfEveryMemberIsEqual) {
    const typename TypeParam::Address address = TypeParam::example();
    EXPECT_TRUE(address == TypeParam::example());
    EXPECT_FALSE(address != TypeParam::example());
    for (const typename TypeParam::Address& other : TypeParam::others()) {
        EXPECT_FALSE(address == other) << textOf(other);
        EXPECT_FALSE(other == address) << textOf(other);
        EXPECT_TRUE(address != other) << textOf(other);
    }
}

TYPED_TEST_P(PortAddressTest, DiffersFromAddressesOfOtherTypes) {
    const typename TypeParam::Address address = TypeParam::example();
    EXPECT_FALSE(address == FalseAddress(utility::PortAddress::PORT_UNDEFINED));
    EXPECT_TRUE(address != FalseAddress(utility::PortAddress::PORT_UNDEFINED));
}

TYPED_TEST_P(PortAddressTest, ComparingWithAnObjectOfAnotherClassThrowsBadCast) {
    const typename TypeParam::Address address = TypeParam::example();
    const FalseAddress other(TypeParam::type);
    EXPECT_THROW(static_cast<void>(address == other), std::bad_cast);
    EXPECT_THROW(static_cast<void>(address != other), std::bad_cast);
}

TYPED_TEST_P(PortAddressTest, CopiesAreEqual) {
    for (const typename TypeParam::Address& address : TypeParam::others()) {
        const typename TypeParam::Address copy(address);
        EXPECT_TRUE(copy == address);
        EXPECT_EQ(textOf(copy), textOf(address));
        typename TypeParam::Address assigned = TypeParam::example();
        EXPECT_EQ(&(assigned = address), &assigned);
        EXPECT_TRUE(assigned == address);
        EXPECT_EQ(textOf(assigned), textOf(address));
        const typename TypeParam::Address& itself = assigned;
        assigned = itself;
        EXPECT_TRUE(assigned == address);
    }
}

TYPED_TEST_P(PortAddressTest, CloneIsAnIndependentEqualAddress) {
    typename TypeParam::Address address = TypeParam::example();
    const std::unique_ptr<utility::PortAddress> copy(address.clone());
    ASSERT_NE(copy, nullptr);
    const utility::PortAddress& cloned = *copy;
    EXPECT_EQ(typeid(cloned), typeid(typename TypeParam::Address));
    EXPECT_TRUE(cloned == address);
    for (const typename TypeParam::Address& other : TypeParam::others()) {
        address = other;
        EXPECT_TRUE(cloned == TypeParam::example());
        EXPECT_EQ(textOf(cloned), textOf(TypeParam::example()));
    }
}

TYPED_TEST_P(PortAddressTest, CloneThrowsIfMemoryIsExhausted) {
    const typename TypeParam::Address address = TypeParam::example();
    FailingAllocation failing(1);
    bool thrown = false;
    try {
        address.clone();
    } catch (const std::bad_alloc&) {
        thrown = true;
    }
    failing.stop();
    EXPECT_TRUE(thrown);
}

REGISTER_TYPED_TEST_SUITE_P(PortAddressTest, HasItsType, EqualsIfEveryMemberIsEqual, DiffersFromAddressesOfOtherTypes,
                            ComparingWithAnObjectOfAnotherClassThrowsBadCast, CopiesAreEqual,
                            CloneIsAnIndependentEqualAddress, CloneThrowsIfMemoryIsExhausted);

} // namespace test
