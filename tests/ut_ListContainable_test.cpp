#include "ut_ListContainable.h"

#include <gtest/gtest.h>

#include "ListNumber.h"
#include "ut_List.h"

namespace {

struct Port : public utility::ListContainable {
    explicit Port(int assigned) : number(assigned) {}
    bool equals(const utility::ListContainable* other) const override {
        return number == static_cast<const Port*>(other)->number;
    }
    int number;
};

TEST(ListContainable, UsageExample) {
    Port four(4);
    const Port another(4);
    utility::List ports;
    ports.addLast(&four);
    EXPECT_EQ(ports.indexOf(&another), 0);
}

TEST(ListContainable, CanBeDeletedThroughTheInterface) {
    const int before = test::ListNumber::alive;
    utility::ListContainable* element = new test::ListNumber(1);
    EXPECT_EQ(test::ListNumber::alive, before + 1);
    delete element;
    EXPECT_EQ(test::ListNumber::alive, before);
}

} // namespace
