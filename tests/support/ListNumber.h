#pragma once

#include "ut_ListContainable.h"

namespace test {

/// A list element that equals every other element with the same value. Counts the elements that exist.
struct ListNumber : public utility::ListContainable {
    explicit ListNumber(int number) : value(number) {
        ++alive;
    }
    ListNumber(const ListNumber&) = delete;
    ListNumber& operator=(const ListNumber&) = delete;
    ~ListNumber() override {
        --alive;
    }

    bool equals(const utility::ListContainable* other) const override {
        return value == static_cast<const ListNumber*>(other)->value;
    }

    const int value;

    static inline int alive = 0;
};

} // namespace test
