#include "fw_Entity.h"

#include <cstdlib>
#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "fw_FSUMemory.h"
#include "fw_Logger.h"
#include "fw_Memory.h"
#include "support/FailingAllocation.h"
#include "support/LogCapture.h"

using framework::Entity;
using framework::FSUMemory;
using framework::Logger;
using framework::Memory;

namespace {

class CountingMemory : public Memory {
public:
    void* allocate(unsigned long size) override {
        ++pieces;
        return std::malloc(size);
    }
    void release(const void* piece) override {
        --pieces;
        std::free(const_cast<void*>(piece));
    }

    int pieces = 0;
};

class Volume : public virtual framework::Entity {};

utility::PutStream& noStream() {
    // A plain entity never touches it.
    static char place[8];
    return *reinterpret_cast<utility::PutStream*>(place);
}

TEST(Entity, UsageExample) {
    Volume volume;
    const char* name = "v1";
    volume.setError("volume %s is offline", name);
    EXPECT_TRUE(volume.inError());
    EXPECT_STREQ(volume.ErrorMessage(), "volume v1 is offline");
}

TEST(Entity, HasItsNameAndCannotBeCloned) {
    const Entity entity;
    EXPECT_EQ(entity.getName(), 367U);
    EXPECT_EQ(entity.getNameString(), pGSEntity);
    EXPECT_EQ(entity.clone(), nullptr);
    entity.information(noStream(), 2, true);
}

TEST(Entity, StartsWithoutError) {
    const Entity entity;
    EXPECT_FALSE(entity.inError());
    EXPECT_STREQ(entity.ErrorMessage(), "");
}

TEST(Entity, ErrorTextsOfAnyLengthAreWhole) {
    Entity entity;
    for (const std::size_t length : {0U, 255U, 256U, 5000U, 100000U}) {
        const std::string text(length, 'x');
        entity.setError("%s", text.c_str());
        EXPECT_TRUE(entity.inError());
        EXPECT_EQ(entity.ErrorMessage(), text);
    }
}

TEST(Entity, FormerErrorTextMayStandInTheNext) {
    Entity entity;
    entity.setError("offline");
    entity.setError("%s again", entity.ErrorMessage());
    EXPECT_STREQ(entity.ErrorMessage(), "offline again");
}

TEST(Entity, ClearErrorLeavesTheEmptyText) {
    Entity entity;
    entity.ClearError();
    entity.setError("offline");
    entity.ClearError();
    EXPECT_FALSE(entity.inError());
    EXPECT_STREQ(entity.ErrorMessage(), "");
}

TEST(Entity, WithoutMemoryTheErrorIsStillSet) {
    Entity entity;
    {
        test::FailingAllocation failing(test::failAll);
        entity.setError("volume %d is offline", 4);
    }
    EXPECT_TRUE(entity.inError());
    EXPECT_STREQ(entity.ErrorMessage(), "No memory was left for the error text");
    entity.setError("offline");
    EXPECT_STREQ(entity.ErrorMessage(), "offline");
    entity.ClearError();
    EXPECT_STREQ(entity.ErrorMessage(), "");
}

TEST(Entity, TakesMemoryFromTheProcess) {
    const Entity entity;
    const long before = Memory::staticOutstanding();
    void* piece = entity.Alloc(10);
    char* text = entity.AllocString("volume");
    char* start = entity.AllocString("volume", 3);
    EXPECT_EQ(Memory::staticOutstanding(), before + 3);
    EXPECT_STREQ(text, "volume");
    EXPECT_STREQ(start, "vol");
    EXPECT_EQ(entity.AllocString(nullptr), nullptr);
    EXPECT_EQ(entity.AllocString(nullptr, 3), nullptr);
    entity.Free(piece);
    entity.FreeString(text);
    entity.FreeString(start);
    entity.Free(nullptr);
    entity.FreeString(nullptr);
    EXPECT_EQ(Memory::staticOutstanding(), before);
}

TEST(Entity, TakesMemoryFromItsMemoryObject) {
    CountingMemory memory;
    Entity entity;
    entity.setMemory(&memory);
    void* piece = entity.Alloc(10);
    char* text = entity.AllocString("volume");
    EXPECT_EQ(memory.pieces, 2);
    entity.FreeString(text);
    entity.Free(piece);
    entity.Free(nullptr);
    EXPECT_EQ(memory.pieces, 0);
    entity.setMemory(nullptr);
    entity.Free(entity.Alloc(10));
    EXPECT_EQ(memory.pieces, 0);
}

TEST(Entity, ErrorTextOutlivesAChangeOfMemory) {
    auto memory = std::make_unique<CountingMemory>();
    Entity entity;
    entity.setMemory(memory.get());
    entity.setError("offline");
    entity.setMemory(nullptr);
    memory.reset();
    EXPECT_STREQ(entity.ErrorMessage(), "offline");
}

TEST(Entity, ResourcesAreAPoolThatGoesWithTheEntity) {
    const long before = Memory::staticOutstanding();
    {
        Entity entity;
        entity.setResources();
        entity.setResources();
        EXPECT_STREQ(entity.AllocString("never freed"), "never freed");
        entity.Free(entity.Alloc(5000));
        EXPECT_GT(Memory::staticOutstanding(), before);
    }
    EXPECT_EQ(Memory::staticOutstanding(), before);
}

TEST(Entity, ResourcesDoNotReplaceAMemoryObject) {
    CountingMemory memory;
    Entity entity;
    entity.setMemory(&memory);
    entity.setResources();
    entity.Free(entity.Alloc(1));
    void* piece = entity.Alloc(1);
    EXPECT_EQ(memory.pieces, 1);
    entity.Free(piece);
}

TEST(Entity, PoolIsTakenUpAgainAfterAMemoryObject) {
    CountingMemory memory;
    Entity entity;
    entity.setResources();
    char* text = entity.AllocString("in the pool");
    entity.setMemory(&memory);
    entity.setMemory(nullptr);
    entity.setResources();
    entity.AllocString("in the pool as well");
    EXPECT_STREQ(text, "in the pool");
}

TEST(Entity, ResourcesWithoutMemoryLeaveTheProcess) {
    Entity entity;
    {
        test::FailingAllocation failing(test::failAll);
        entity.setResources();
    }
    const long before = Memory::staticOutstanding();
    void* piece = entity.Alloc(1);
    EXPECT_EQ(Memory::staticOutstanding(), before + 1);
    entity.Free(piece);
}

TEST(Entity, CopyTakesOverTheMemoryObjectAlone) {
    CountingMemory memory;
    Entity entity;
    entity.setMemory(&memory);
    entity.setError("offline");
    const Entity copy(entity);
    EXPECT_FALSE(copy.inError());
    EXPECT_STREQ(copy.ErrorMessage(), "");
    void* piece = copy.Alloc(1);
    EXPECT_EQ(memory.pieces, 1);
    copy.Free(piece);
}

TEST(Entity, CopyDoesNotShareThePool) {
    auto entity = std::make_unique<Entity>();
    entity->setResources();
    const Entity copy(*entity);
    entity.reset();
    const long before = Memory::staticOutstanding();
    void* piece = copy.Alloc(1);
    EXPECT_EQ(Memory::staticOutstanding(), before + 1);
    copy.Free(piece);
}

TEST(Entity, AssignmentChangesNothing) {
    CountingMemory memory;
    Entity entity;
    entity.setError("offline");
    Entity other;
    other.setMemory(&memory);
    other.setError("other");
    entity = other;
    EXPECT_STREQ(entity.ErrorMessage(), "offline");
    entity.Free(entity.Alloc(1));
    void* piece = entity.Alloc(1);
    EXPECT_EQ(memory.pieces, 0);
    entity.Free(piece);
}

TEST(Entity, LogsWithSignatureTextAndLine) {
    test::LogCapture log;
    const Entity entity;
    entity.LogMethodDebug("void f()", 12, "%d ports", 4);
    entity.LogMethodError("void g()", 13, "%s", "offline");
    ASSERT_EQ(log.count(), 2U);
    EXPECT_TRUE(log.contains(Logger::LOG_DEBUG, "void f()", "4 ports"));
    EXPECT_TRUE(log.contains(Logger::LOG_ERROR, "void g()", "offline"));
    EXPECT_EQ(log.entries()[0].line, 12);
    EXPECT_EQ(log.entries()[1].line, 13);
}

TEST(Entity, FailedAllocationIsNull) {
    CountingMemory memory;
    Entity entity;
    test::FailingAllocation failing(test::failAll);
    void* const piece = entity.Alloc(1);
    char* const text = entity.AllocString("text");
    entity.setMemory(&memory);
    char* const start = entity.AllocString("text", 2);
    failing.stop();
    EXPECT_EQ(piece, nullptr);
    EXPECT_EQ(text, nullptr);
    EXPECT_EQ(start, nullptr);
}

} // namespace
