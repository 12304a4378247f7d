#include "fw_RWLockIF.h"

#include <memory>
#include <string>

#include <gtest/gtest.h>

namespace {

class NotingLock : public framework::thread::RWLockIF {
public:
    explicit NotingLock(std::string& notes) : m_notes(notes) {}
    ~NotingLock() override {
        m_notes += "~";
    }
    void readLock() override {
        m_notes += "r";
    }
    void writeLock() override {
        m_notes += "w";
    }
    void unlock() override {
        m_notes += "u";
    }

private:
    std::string& m_notes;
};

TEST(RWLockIF, IsUsedAndDestroyedThroughItsBase) {
    std::string notes;
    std::unique_ptr<framework::thread::RWLockIF> lock = std::make_unique<NotingLock>(notes);
    lock->readLock();
    lock->unlock();
    lock->writeLock();
    lock->unlock();
    lock.reset();
    EXPECT_EQ(notes, "ruwu~");
}

} // namespace
