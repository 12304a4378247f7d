#pragma once

#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "fw_Exception.h"

namespace test {

/// The `framework::Exception` that `operation` threw; null if it threw nothing.
template<class Operation>
std::unique_ptr<framework::Exception> failureOf(Operation&& operation) {
    try {
        operation();
    } catch (framework::Exception* failure) {
        return std::unique_ptr<framework::Exception>(failure);
    }
    return nullptr;
}

/// Whether `failure` has exactly these values, and a line above 0.
inline testing::AssertionResult isFailure(const framework::Exception* failure, unsigned int code,
                                          const std::string& file, const std::string& function,
                                          const std::string& message, bool flag) {
    if (failure == nullptr)
        return testing::AssertionFailure() << "nothing was thrown";
    if (failure->code() == code && failure->file() == file && failure->function() == function &&
        failure->message() == message && failure->flag() == flag && failure->line() > 0)
        return testing::AssertionSuccess();
    return testing::AssertionFailure() << "expected: " << code << " '" << file << "' '" << function << "' '" << message
                                       << "' flag " << flag << "\n  thrown: " << failure->code() << " '"
                                       << failure->file() << "' '" << failure->function() << "' '" << failure->message()
                                       << "' flag " << failure->flag() << ", line " << failure->line();
}

} // namespace test

/// The failure that `statement` threw, as a `std::unique_ptr<framework::Exception>`; null if it threw nothing.
#define CATCH_FAILURE(statement) ::test::failureOf([&] { statement; })

/// Expects that `statement` throws a failure with exactly these values.
#define EXPECT_FAILURE_WITH_FLAG(statement, code, file, function, message, flag)                                       \
    EXPECT_TRUE(::test::isFailure(CATCH_FAILURE(statement).get(), code, file, function, message, flag)) << #statement

/// Expects that `statement` throws a failure with exactly these values and the flag set.
#define EXPECT_FAILURE(statement, code, file, function, message)                                                       \
    EXPECT_FAILURE_WITH_FLAG(statement, code, file, function, message, true)
