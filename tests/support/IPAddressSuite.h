#pragma once

#include <array>
#include <cstring>
#include <random>
#include <string>
#include <type_traits>

#include <arpa/inet.h>

#include <gtest/gtest.h>

#include "TextOf.h"
#include "ut_BufferStream.h"

namespace test {

/// The tests of an IP address. `Traits` describes the class to test:
/// - `Address`, the class, `family`, its address family, and `size`, the size of its addresses in bytes,
/// - `example` and `other`, the texts of two addresses, and `zero`, the text of the address of zero bytes,
/// - `invalid`, texts that are not addresses,
/// - `characters`, characters for random texts, including those of addresses,
/// - `failureClears`, whether an invalid text sets all bytes to zero; otherwise it changes nothing.
///
///     namespace test {
///     INSTANTIATE_TYPED_TEST_SUITE_P(IPV4Address, IPAddressTest, IPV4Traits);
///     }
template<typename Traits>
class IPAddressTest : public testing::Test {
protected:
    typedef typename Traits::Address Address;
    typedef std::array<unsigned char, Traits::size> Bytes;

    static_assert(sizeof(Address) == Traits::size, "copied to and from socket addresses");
    static_assert(std::is_trivially_copyable<Address>::value, "a plain value");
    static_assert(std::is_trivially_destructible<Address>::value, "a plain value");
    static_assert(!std::is_polymorphic<Address>::value, "a plain value");

    static Bytes bytesOf(const Address& address) {
        Bytes bytes;
        std::memcpy(bytes.data(), &address, bytes.size());
        return bytes;
    }
    static std::string formattedByThePlatform(const Bytes& bytes) {
        char text[INET6_ADDRSTRLEN];
        return inet_ntop(Traits::family, bytes.data(), text, sizeof text) != nullptr ? text : "";
    }

    // Runs of zero groups of every position and length produce the "::" and the dotted tails of IPv6 addresses.
    static Bytes randomBytes(std::mt19937& random) {
        Bytes bytes;
        for (unsigned char& byte : bytes)
            byte = static_cast<unsigned char>(random());
        const std::size_t groups = Traits::size / 2;
        const std::size_t first = random() % (groups + 1);
        const std::size_t last = random() % (groups + 1);
        for (std::size_t group = first; group < last; ++group)
            bytes[2 * group] = bytes[2 * group + 1] = 0;
        if (random() % 4 == 0)
            bytes[2 * (random() % groups)] = 0;
        return bytes;
    }

    static Address afterFailure(const Address& before) {
        return Traits::failureClears ? Address() : before;
    }
};

TYPED_TEST_SUITE_P(IPAddressTest);

TYPED_TEST_P(IPAddressTest, IsInitiallyZero) {
    const typename TypeParam::Address address;
    EXPECT_TRUE(address.isZero());
    EXPECT_FALSE(address.isValid());
    EXPECT_EQ(textOf(address), TypeParam::zero);
}

TYPED_TEST_P(IPAddressTest, CopiesBytesInWrittenOrder) {
    typename TestFixture::Bytes bytes;
    ASSERT_EQ(inet_pton(TypeParam::family, TypeParam::example, bytes.data()), 1);
    const typename TypeParam::Address address(bytes.data());
    EXPECT_EQ(this->bytesOf(address), bytes);
    EXPECT_EQ(textOf(address), TypeParam::example);
    EXPECT_EQ(this->bytesOf(typename TypeParam::Address(TypeParam::example)), bytes);
}

TYPED_TEST_P(IPAddressTest, CanBeCopied) {
    typename TypeParam::Address address(TypeParam::example);
    const typename TypeParam::Address copy(address);
    EXPECT_TRUE(address.fromString(TypeParam::other));
    EXPECT_EQ(textOf(copy), TypeParam::example);
    EXPECT_EQ(textOf(address), TypeParam::other);
    address = copy;
    EXPECT_TRUE(address == copy);
}

TYPED_TEST_P(IPAddressTest, IsZeroOnlyIfAllBytesAreZero) {
    EXPECT_TRUE(typename TypeParam::Address(TypeParam::zero).isZero());
    for (std::size_t i = 0; i < TypeParam::size; ++i) {
        typename TestFixture::Bytes bytes = {};
        bytes[i] = 1;
        EXPECT_FALSE(typename TypeParam::Address(bytes.data()).isZero()) << i;
    }
}

TYPED_TEST_P(IPAddressTest, EqualsIfAllBytesAreEqual) {
    const typename TypeParam::Address address(TypeParam::example);
    EXPECT_TRUE(address == typename TypeParam::Address(TypeParam::example));
    EXPECT_FALSE(address != typename TypeParam::Address(TypeParam::example));
    for (std::size_t i = 0; i < TypeParam::size; ++i) {
        typename TestFixture::Bytes bytes = this->bytesOf(address);
        ++bytes[i];
        EXPECT_FALSE(address == typename TypeParam::Address(bytes.data())) << i;
        EXPECT_TRUE(address != typename TypeParam::Address(bytes.data())) << i;
    }
}

TYPED_TEST_P(IPAddressTest, InvalidTextReturnsFalse) {
    for (const char* invalid : TypeParam::invalid) {
        typename TypeParam::Address address(TypeParam::example);
        const typename TypeParam::Address expected = this->afterFailure(address);
        EXPECT_FALSE(address.fromString(invalid)) << invalid;
        EXPECT_EQ(textOf(address), textOf(expected)) << invalid;
    }
}

TYPED_TEST_P(IPAddressTest, LongTextReturnsFalse) {
    for (const std::size_t length : {65533u, 65534u, 65535u, 65536u, 65543u, 100000u, 131075u}) {
        const std::string example = TypeParam::example;
        // If the length were counted in 16 bits, the text of 65,543 characters would be its first seven, a valid
        // address.
        for (const std::string& invalid :
             {example + std::string(length - example.size(), ' '), std::string(length, ':'), std::string(length, '.'),
              std::string(length, '0'), std::string(length, '1'), std::string(length, '\xFF')}) {
            typename TypeParam::Address address(TypeParam::other);
            const typename TypeParam::Address expected = this->afterFailure(address);
            EXPECT_FALSE(address.fromString(invalid.c_str())) << length;
            EXPECT_EQ(textOf(address), textOf(expected)) << length;
        }
    }
}

TYPED_TEST_P(IPAddressTest, ParsesAndFormatsAsThePlatformDoes) {
    std::mt19937 random(6);
    for (int i = 0; i < 10000; ++i) {
        typename TestFixture::Bytes bytes = this->randomBytes(random);
        const typename TypeParam::Address value(bytes.data());
        const std::string expected = this->formattedByThePlatform(bytes);
        ASSERT_EQ(textOf(value), expected);
        typename TypeParam::Address address;
        ASSERT_TRUE(address.fromString(expected.c_str()));
        ASSERT_EQ(this->bytesOf(address), bytes) << expected;
        ASSERT_TRUE(address == value) << expected;
    }
}

TYPED_TEST_P(IPAddressTest, AcceptsTheSameTextsAsThePlatform) {
    const std::string characters = TypeParam::characters;
    std::mt19937 random(60);
    int accepted = 0;
    for (int i = 0; i < 10000; ++i) {
        std::string mutated = this->formattedByThePlatform(this->randomBytes(random));
        mutated[random() % mutated.size()] = characters[random() % characters.size()];
        typename TypeParam::Address address(TypeParam::example);
        typename TestFixture::Bytes expected = this->bytesOf(this->afterFailure(address));
        const bool valid = inet_pton(TypeParam::family, mutated.c_str(), expected.data()) == 1;
        ASSERT_EQ(address.fromString(mutated.c_str()), valid) << mutated;
        ASSERT_EQ(this->bytesOf(address), expected) << mutated;
        accepted += valid ? 1 : 0;
    }
    EXPECT_GT(accepted, 100);
    EXPECT_LT(accepted, 9900);
}

TYPED_TEST_P(IPAddressTest, ToPutStreamAppends) {
    utility::BufferStream stream(64);
    stream.PutS("ip=");
    typename TypeParam::Address(TypeParam::example).toPutStream(stream);
    typename TypeParam::Address(TypeParam::zero).toPutStream(stream);
    const std::string expected = std::string("ip=") + TypeParam::example + TypeParam::zero;
    EXPECT_EQ(stream.pBuffer(), expected);
    EXPECT_EQ(stream.ReadAvailable(), static_cast<int>(expected.size()));
}

REGISTER_TYPED_TEST_SUITE_P(IPAddressTest, IsInitiallyZero, CopiesBytesInWrittenOrder, CanBeCopied,
                            IsZeroOnlyIfAllBytesAreZero, EqualsIfAllBytesAreEqual, InvalidTextReturnsFalse,
                            LongTextReturnsFalse, ParsesAndFormatsAsThePlatformDoes, AcceptsTheSameTextsAsThePlatform,
                            ToPutStreamAppends);

} // namespace test
