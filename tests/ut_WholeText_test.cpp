// Text that is formatted outside the streams is written to a stream at once where no derived class overrides the write
// operations. Nobody may be able to tell: a stream that overrides them, to do only what the buffer's own would, must
// get the same bytes, positions, failures and messages.

#include "internal/ut_WholeText.h"

#include <functional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "CountedPositions.h"
#include "support/ExpectFailure.h"
#include "support/LogCapture.h"
#include "support/RandomRun.h"
#include "ut_DateTime.h"
#include "ut_IPV4Address.h"
#include "ut_IPV6Address.h"
#include "ut_PutStream.h"
#include "ut_SerialNumber.h"
#include "ut_WWN.h"

namespace {

using test::CountedPositions;
using utility::Buffer;
using utility::PutStream;

using Writer = std::function<void(PutStream& out)>;

// Writes of random values.
Writer randomWriter(test::RandomRun& random) {
    const std::uint64_t bits = random.bits();
    const unsigned int word = random.below(4) == 0 ? random.below(256) << 24 | random.below(256) : random.below(~0U);
    std::vector<unsigned char> bytes(16);
    for (unsigned char& byte : bytes)
        byte = static_cast<unsigned char>(random.below(3) == 0 ? 0 : random.below(256));
    const utility::DateTime when(static_cast<long>(static_cast<std::int64_t>(bits) >> random.below(64)));
    switch (random.below(8)) {
    case 0:
        return [when](PutStream& out) {
            when.ToISOBuffer(out);
        };
    case 1:
        return [when](PutStream& out) {
            when.ToISODateBuffer(out);
        };
    case 2:
        return [when](PutStream& out) {
            when.ToShortTimeBuffer(out);
        };
    case 3:
        return [word](PutStream& out) {
            utility::IPV4Address(word).toPutStream(out);
        };
    case 4:
        return [bytes](PutStream& out) mutable {
            utility::IPV6Address(bytes.data()).toPutStream(out);
        };
    case 5:
        return [bytes](PutStream& out) mutable {
            utility::WWN(bytes.data()).toPutStream(out);
        };
    case 6:
        return [bytes](PutStream& out) mutable {
            utility::SerialNumber(bytes.data()).toPutStream(out);
        };
    default:
        return [bytes](PutStream& out) mutable {
            utility::SerialNumber(bytes.data()).toShortPutStream(out);
        };
    }
}

std::string failureOf(const Writer& write, PutStream& out) {
    const auto failure = test::failureOf([&] { write(out); });
    if (failure == nullptr)
        return "";
    return failure->file() + std::string(" ") + failure->function() + " " + failure->message();
}

TEST(WholeText, IsWrittenAsAnOverridingClassWritesIt) {
    test::LogCapture log;
    test::RandomRun random;
    int calls = 0;
    while (random.steps(3000)) {
        const int size = static_cast<int>(random.below(100));
        const bool quiet = random.below(2) != 0;
        std::string direct(120, '#');
        std::string plain = direct;
        PutStream directStream(direct.data(), size);
        CountedPositions<PutStream> plainStream(plain.data(), size);
        directStream.setNoThrow(quiet);
        plainStream.setNoThrow(quiet);
        for (int i = 0; i < 4 && !HasFailure(); ++i) {
            const Writer write = randomWriter(random);
            log.clear();
            const std::string expected = failureOf(write, plainStream);
            const std::vector<std::string> expectedLog = log.texts();
            log.clear();
            EXPECT_EQ(failureOf(write, directStream), expected);
            EXPECT_EQ(log.texts(), expectedLog);
            EXPECT_EQ(direct, plain);
            EXPECT_EQ(directStream.WritePosition(), plainStream.WritePosition());
        }
        calls += plainStream.calls();
    }
    EXPECT_GT(calls, 0);
}

TEST(WholeText, StreamWithoutStorageRefusesItAsAnOverridingClassDoes) {
    test::RandomRun random;
    while (random.steps(300)) {
        PutStream directStream(nullptr, 40);
        CountedPositions<PutStream> plainStream(nullptr, 40);
        const Writer write = randomWriter(random);
        EXPECT_EQ(failureOf(write, directStream), failureOf(write, plainStream));
        EXPECT_EQ(directStream.WritePosition(), plainStream.WritePosition());
    }
}

} // namespace
