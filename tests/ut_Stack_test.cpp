#include "ut_Stack.h"

#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "FailingAllocation.h"
#include "RandomRun.h"

namespace {

static_assert(!std::is_copy_constructible<Stack>::value, "a copy would share the nodes");
static_assert(!std::is_copy_assignable<Stack>::value, "an assignment would share the nodes");

TEST(Stack, UsageExample) {
    int volume = 0;
    std::string name = "volume";
    Stack stack;
    stack.push(&name, &volume);
    EXPECT_EQ(stack.topObj(), &volume);
    EXPECT_EQ(stack.pop(), &name);
    EXPECT_EQ(stack.pop(), nullptr);
}

TEST(Stack, ANewListIsEmpty) {
    Stack stack;
    EXPECT_EQ(stack.topNode(), nullptr);
    EXPECT_EQ(stack.pop(), nullptr);
}

TEST(Stack, PopReturnsNamesInReverseOrder) {
    const std::string names[] = {"a", "b", "c"};
    Stack stack;
    for (const std::string& name : names)
        EXPECT_TRUE(stack.push(&name, &name + 1));
    EXPECT_EQ(stack.top(), &names[2]);
    EXPECT_EQ(stack.topObj(), &names[2] + 1);
    EXPECT_EQ(stack.pop(), &names[2]);
    EXPECT_EQ(stack.top(), &names[1]);
    EXPECT_EQ(stack.pop(), &names[1]);
    EXPECT_EQ(stack.pop(), &names[0]);
    EXPECT_EQ(stack.pop(), nullptr);
    EXPECT_TRUE(stack.push(&names[1], nullptr));
    EXPECT_EQ(stack.topObj(), nullptr);
    EXPECT_EQ(stack.pop(), &names[1]);
}

TEST(Stack, NextLeadsFromTheTopToTheBottom) {
    const std::string names[] = {"a", "b"};
    const int objects[] = {1, 2};
    Stack stack;
    stack.push(&names[0], &objects[0]);
    stack.push(&names[1], &objects[1]);
    const Stack::StackNode* node = stack.topNode();
    EXPECT_EQ(node->Name(), &names[1]);
    EXPECT_EQ(node->Obj(), &objects[1]);
    node = node->Next();
    EXPECT_EQ(node->Name(), &names[0]);
    EXPECT_EQ(node->Obj(), &objects[0]);
    EXPECT_EQ(node->Next(), nullptr);
}

TEST(Stack, NextOfTheTopNodeCanBeSet) {
    const std::string names[] = {"a", "b", "c"};
    Stack stack;
    for (const std::string& name : names)
        stack.push(&name, nullptr);
    Stack::StackNode* const top = stack.topNode();
    const Stack::StackNode* const middle = top->Next();
    top->Next(middle->Next());
    delete middle;
    EXPECT_EQ(stack.pop(), &names[2]);
    EXPECT_EQ(stack.pop(), &names[0]);
    EXPECT_EQ(stack.pop(), nullptr);
}

TEST(Stack, NextOfANodeCanBeSet) {
    const std::string name = "a";
    const Stack::StackNode bottom(nullptr, nullptr, nullptr);
    Stack::StackNode node(&name, &bottom, nullptr);
    EXPECT_EQ(node.Next(), nullptr);
    node.Next(&bottom);
    EXPECT_EQ(node.Next(), &bottom);
    EXPECT_EQ(node.Name(), &name);
    EXPECT_EQ(node.Obj(), &bottom);
}

TEST(Stack, KeepsNullNamesAndObjects) {
    const std::string name = "a";
    Stack stack;
    EXPECT_TRUE(stack.push(&name, nullptr));
    EXPECT_TRUE(stack.push(nullptr, &name));
    EXPECT_EQ(stack.topObj(), &name);
    EXPECT_EQ(stack.pop(), nullptr);
    EXPECT_EQ(stack.pop(), &name);
}

TEST(Stack, TopAndTopObjOfAnEmptyStackAreNull) {
    const Stack stack;
    EXPECT_EQ(stack.top(), nullptr);
    EXPECT_EQ(stack.topObj(), nullptr);
}

TEST(Stack, PushWithoutMemoryReturnsFalseAndChangesNothing) {
    const std::string names[] = {"a", "b"};
    Stack stack;
    EXPECT_TRUE(stack.push(&names[0], nullptr));
    {
        test::FailingAllocation failing(1);
        EXPECT_FALSE(stack.push(&names[1], nullptr));
    }
    EXPECT_EQ(stack.top(), &names[0]);
    EXPECT_EQ(stack.topNode()->Next(), nullptr);
}

TEST(Stack, AStackOfAMillionIsDestroyedWithoutRecursion) {
    const std::string name = "a";
    Stack stack;
    for (int i = 0; i < 1000000; ++i)
        ASSERT_TRUE(stack.push(&name, nullptr));
}

TEST(Stack, BehavesAsAVectorUnderRandomOperations) {
    test::RandomRun random;
    const std::vector<std::string> names(50, "name");
    std::vector<std::pair<const std::string*, const void*>> model;
    Stack stack;
    while (random.steps(100000)) {
        if (random.below(2) == 0) {
            model.emplace_back(&names[random.below(50)], &names[random.below(50)]);
            ASSERT_TRUE(stack.push(model.back().first, model.back().second));
        } else {
            ASSERT_EQ(stack.pop(), model.empty() ? nullptr : model.back().first);
            if (!model.empty())
                model.pop_back();
        }
        ASSERT_EQ(stack.top(), model.empty() ? nullptr : model.back().first);
        ASSERT_EQ(stack.topObj(), model.empty() ? nullptr : model.back().second);
    }
}

TEST(Stack, LeaksNoNodes) {
    const long before = test::outstandingAllocations();
    {
        Stack stack;
        const std::string name = "name";
        for (int i = 0; i < 3; ++i)
            EXPECT_TRUE(stack.push(&name, nullptr));
        EXPECT_EQ(stack.pop(), &name);
    }
    EXPECT_EQ(test::outstandingAllocations(), before);
}

} // namespace
