#include "fw_Console.h"

#include <memory>
#include <stdexcept>

#include <gtest/gtest.h>

namespace {

class KeyConsole : public framework::Console {
public:
    explicit KeyConsole(bool& destroyed) : m_destroyed(destroyed) {}
    ~KeyConsole() override {
        m_destroyed = true;
    }
    framework::OutputStream& outputStream() override {
        throw std::logic_error("no output");
    }
    char readKey() override {
        return 'q';
    }
    void removePrompt(int) override {}

private:
    bool& m_destroyed;
};

TEST(Console, UsageExample) {
    bool destroyed = false;
    KeyConsole keys(destroyed);
    framework::Console& console = keys;
    char key = console.readKey();
    EXPECT_EQ(key, 'q');
}

TEST(Console, IsDestroyedThroughItsBase) {
    bool destroyed = false;
    std::unique_ptr<framework::Console> console = std::make_unique<KeyConsole>(destroyed);
    console.reset();
    EXPECT_TRUE(destroyed);
}

} // namespace
