#include <clocale>
#include <cstring>
#include <string>
#include <thread>

#include "Trial.h"
#include "fw_ApplicationArguments.h"
#include "fw_Config.h"
#include "fw_Console.h"
#include "fw_Container.h"
#include "fw_Entity.h"
#include "fw_FSUMemory.h"
#include "fw_Item.h"
#include "fw_Logger.h"
#include "fw_Memory.h"
#include "fw_PosixRWLock.h"
#include "fw_StableStringRepository.h"
#include "fw_ThreadInfo.h"
#include "fw_gettext.h"
#include "ut_BufferStream.h"
#include "ut_ReadLockGuard.h"
#include "ut_URL.h"
#include "ut_WriteLockGuard.h"

// The framework: entities, memory, names, the log, threads and commands.

namespace faults {

namespace {

using framework::Entity;
using framework::FSUMemory;
using framework::Item;
using framework::Memory;

std::vector<Row> entityRows() {
    return {
        {"Entity: setError", "same",
         [](Trial& trial) {
             Entity entity;
             entity.setError("first %d", 1);
             trial.run([&] { entity.setError("second %d", 2); });
             FAULTS_EXPECT(entity.inError() && entity.ErrorMessage() != nullptr);
             entity.ClearError();
             FAULTS_EXPECT(!entity.inError() && entity.ErrorMessage()[0] == '\0');
             entity.setError("third");
             FAULTS_EXPECT(std::strcmp(entity.ErrorMessage(), "third") == 0);
         }},
        {"Entity: setResources", "same",
         [](Trial& trial) {
             Entity entity;
             trial.run([&] { entity.setResources(); });
             FAULTS_EXPECT(entity.Alloc(8) != nullptr || !trial.failed());
             entity.setResources();
         },
         "without a pool, the piece taken to look at is the process's"},
        {"Entity: Alloc", "null",
         [](Trial& trial) {
             const Entity entity;
             void* piece = nullptr;
             trial.run([&] { return piece = entity.Alloc(8); });
             entity.Free(piece);
         }},
        {"Entity: Alloc from its own pool", "null",
         [](Trial& trial) {
             Entity entity;
             entity.setResources();
             trial.run([&] { return entity.Alloc(4000); });
             FAULTS_EXPECT(entity.Alloc(4000) != nullptr);
         }},
        {"Entity: AllocString", "null",
         [](Trial& trial) {
             const Entity entity;
             char* text = nullptr;
             trial.run([&] { return text = entity.AllocString("text"); });
             entity.FreeString(text);
         }},
        {"Entity: AllocString of a part", "null",
         [](Trial& trial) {
             const Entity entity;
             char* text = nullptr;
             trial.run([&] { return text = entity.AllocString("text", 2); });
             entity.FreeString(text);
         }},
        {"Entity: LogMethodError with a long text", "same",
         [](Trial& trial) {
             const Entity entity;
             const std::string text(5000, 'x');
             trial.run([&] { entity.LogMethodError("operation", 1, "%s", text.c_str()); });
         }},
        {"Entity: what allocates nothing", allocatesNothing,
         [](Trial& trial) {
             Entity original;
             FSUMemory pool(64, 1);
             utility::BufferStream out(64);
             trial.run([&] {
                 Entity copy(original);
                 copy = original;
                 copy.setMemory(&pool);
                 copy.LogMethodDebug("operation", 1, "text");
                 copy.LogMethodError("operation", 1, "text");
                 copy.information(out, 0, false);
                 copy.ClearError();
                 copy.Free(nullptr);
                 return copy.clone() == nullptr && copy.getName() == 367 && copy.getNameString() != nullptr &&
                        !copy.inError() && copy.ErrorMessage()[0] == '\0';
             });
         }},
        {"Item: setError", "same",
         [](Trial& trial) {
             Item item;
             trial.run([&] { item.setError("error %d", 1); });
             FAULTS_EXPECT(item.inError() && item.ErrorMessage() != nullptr);
             item.ClearError();
         }},
        {"Item: setResources", "same",
         [](Trial& trial) {
             Item item;
             trial.run([&] { item.setResources(); });
             item.setResources();
         }},
        {"Item: what allocates nothing", allocatesNothing,
         [](Trial& trial) {
             utility::BufferStream stream(64);
             trial.run([&] {
                 Item item;
                 Entity& entity = item;
                 item.setChanged();
                 item.clearChanged();
                 item.discardChanged();
                 item.information(stream, 0, false);
                 entity.information(stream, 0, false);
                 item.ClearError();
                 // A plain item does not look at the document.
                 char document = 0;
                 return !item.isChanged() && item.getAccess() == 0 && !item.toStream(stream) &&
                        !item.toFile("/nonexistent/file") && !item.fromStream(stream) &&
                        !item.fromFile("/nonexistent/file") &&
                        !item.fromXML(reinterpret_cast<utility::XMLDocument&>(document)) && !item.inError() &&
                        item.ErrorMessage() != nullptr && item.clone() == nullptr && item.getName() != 0 &&
                        item.getNameString() != nullptr;
             });
         }},
    };
}

std::vector<Row> memoryRows() {
    return {
        {"Memory: StaticAlloc", "null",
         [](Trial& trial) {
             void* piece = nullptr;
             trial.run([&] { return piece = Memory::StaticAlloc(8); });
             Memory::StaticFree(piece);
         }},
        {"Memory: StaticAllocString", "null",
         [](Trial& trial) {
             char* text = nullptr;
             trial.run([&] { return text = Memory::StaticAllocString("text"); });
             Memory::StaticFreeString(text);
         }},
        {"Memory: StaticAllocString of a part", "null",
         [](Trial& trial) {
             char* text = nullptr;
             trial.run([&] { return text = Memory::StaticAllocString("text", 2); });
             Memory::StaticFreeString(text);
         }},
        {"Memory: what allocates nothing", allocatesNothing,
         [](Trial& trial) {
             void* piece = Memory::StaticAlloc(8);
             trial.run([&] {
                 const long before = Memory::staticOutstanding();
                 Memory::StaticFree(piece);
                 Memory::StaticFreeString(nullptr);
                 return Memory::staticOutstanding() == before - 1 &&
                        framework::Container::getMemory() == framework::Container::m_pMemory;
             });
         }},
        {"FSUMemory: Alloc", "null",
         [](Trial& trial) {
             FSUMemory pool(16, 1);
             pool.Alloc(16);
             trial.run([&] { return pool.Alloc(16); });
             FAULTS_EXPECT(pool.Alloc(16) != nullptr && pool.Alloc(100) != nullptr);
         }},
        {"FSUMemory: allocate", "null",
         [](Trial& trial) {
             FSUMemory pool(16, 1);
             trial.run([&] { return pool.allocate(100); });
             FAULTS_EXPECT(pool.allocate(16) != nullptr);
         }},
        {"FSUMemory: AllocString", "null",
         [](Trial& trial) {
             FSUMemory pool(16, 1);
             trial.run([&] { return pool.AllocString("text"); });
             FAULTS_EXPECT(pool.AllocString("text") != nullptr);
         }},
        {"FSUMemory: AllocString of a part", "null",
         [](Trial& trial) {
             FSUMemory pool(16, 1);
             trial.run([&] { return pool.AllocString("text", 2); });
             FAULTS_EXPECT(pool.AllocString("text", 2) != nullptr);
         }},
        {"FSUMemory: what allocates nothing", allocatesNothing,
         [](Trial& trial) {
             std::optional<FSUMemory> pool(std::in_place, 64u, 1u);
             pool->Alloc(8);
             trial.run([&] {
                 void* piece = pool->Alloc(8);
                 pool->release(piece);
                 pool->reset();
                 pool.reset();
                 return piece;
             });
         }},
    };
}

std::vector<Row> nameRows() {
    return {
        {"StableStringRepository: toToken", "0",
         [](Trial& trial) {
             static unsigned int number = 0;
             const std::string name = "faults-t" + std::to_string(++number);
             trial.run([&] { return strings::GS.toToken(name.c_str()) != 0 ? 1 : 0; });
             FAULTS_EXPECT(strings::GS.toToken(name.c_str()) != 0);
         },
         "new names are kept for good"},
        {"StringRepository: what allocates nothing", allocatesNothing,
         [](Trial& trial) {
             trial.run([] {
                 return strings::GS.toToken("Entity") == 367 && strings::StringRepository::toString(367) != nullptr;
             });
         }},
        {"Config: generateNameString", "null",
         [](Trial& trial) {
             char* name = nullptr;
             trial.run([&] { return name = framework::Config::generateNameString("port%d", 1); });
             Memory::StaticFreeString(name);
         }},
        {"Exception: constructor with a new file name", "same",
         [](Trial& trial) {
             static unsigned int number = 0;
             const std::string file = "faults_" + std::to_string(++number);
             trial.run([&] {
                 const framework::Exception failure(1, file.c_str(), 1, "function", "message", true);
                 return failure.code();
             });
         },
         "new names are kept for good"},
        {"Exception: what allocates nothing", allocatesNothing,
         [](Trial& trial) {
             trial.run([] {
                 const framework::Exception failure(1, "Entity", 2, "function", "message", true);
                 const framework::Exception copy(failure);
                 return copy.code() == 1 && copy.line() == 2 && copy.flag() && copy.file()[0] == 'E' &&
                        copy.function()[0] == 'f' && copy.message()[0] == 'm' && copy.what()[0] == 'm';
             });
         }},
        {"ApplicationArguments", "same 1230 bad_alloc",
         [](Trial& trial) {
             char name[] = "name";
             char* words[] = {name, nullptr};
             std::optional<framework::ApplicationArguments> arguments;
             trial.run([&] { arguments.emplace(1, words); });
             FAULTS_EXPECT((framework::ApplicationArguments::getArgs() != nullptr) == arguments.has_value());
         }},
        {"ApplicationArguments: getArgs", allocatesNothing,
         [](Trial& trial) {
             trial.run([] { return framework::ApplicationArguments::getArgs() == nullptr; });
         }},
        {"vx_gettext", allocatesNothing,
         [](Trial& trial) {
             trial.run([] { return vx_gettext("message"); });
         }},
    };
}

std::vector<Row> logRows() {
    using framework::Logger;
    return {
        {"Logger: StaticLog with a long text", "same",
         [](Trial& trial) {
             const std::string text(5000, 'x');
             trial.run([&] { Logger::StaticLog(Logger::LOG_ERROR, "%s", text.c_str()); });
         }},
        {"Logger: StaticLogMethod with a long text", "same",
         [](Trial& trial) {
             const std::string text(5000, 'x');
             trial.run([&] { Logger::StaticLogMethod(Logger::LOG_ERROR, "operation", 1, "%s", text.c_str()); });
         }},
        {"Logger: what allocates nothing", allocatesNothing,
         [](Trial& trial) {
             trial.run([] {
                 Logger::setSink([](void*, Logger::LogType, const char*, int, const char*) {}, nullptr);
                 Logger::StaticLog(Logger::LOG_ERROR, "%d", 1);
                 Logger::StaticLogMethod(Logger::LOG_ERROR, "operation", 1, "%d", 1);
                 Logger::StaticLogS(Logger::LOG_ERROR, "text");
             });
         }},
    };
}

class StubConsole : public framework::Console {
public:
    framework::OutputStream& outputStream() override {
        return m_out;
    }
    char readKey() override {
        return 0;
    }
    void removePrompt(int) override {}

private:
    utility::BufferStream m_out{8};
};

std::vector<Row> threadRows() {
    using framework::thread::PosixRWLock;
    return {
        {"ThreadInfo: what allocates nothing", allocatesNothing,
         [](Trial& trial) {
             framework::ThreadInfo* info = framework::ThreadInfo::MyThreadInfo();
             trial.run([&] {
                 info->setThreadName("name");
                 return info == framework::ThreadInfo::getMyself() && info->getNum() > 0 &&
                        info->getThreadName()[0] == 'n';
             });
         }},
        {"ThreadInfo: MyThreadInfo in a new thread", allocatesNothing,
         [](Trial& trial) {
             std::thread([&] { trial.run([] { return framework::ThreadInfo::MyThreadInfo() != nullptr; }); }).join();
         }},
        {"Locks: all", allocatesNothing,
         [](Trial& trial) {
             trial.run([] {
                 PosixRWLock lock;
                 lock.readLock();
                 lock.unlock();
                 lock.writeLock();
                 lock.writeLock();
                 lock.unlock();
                 lock.unlock();
                 { const framework::thread::ReadLockGuard guard(lock); }
                 { const framework::thread::WriteLockGuard guard(lock); }
             });
         }},
        {"Container, Console: constructor and destructor", allocatesNothing,
         [](Trial& trial) {
             std::optional<StubConsole> console(std::in_place);
             framework::Container* former = framework::Container::m_pMe;
             trial.run([&] {
                 framework::Container container;
                 const bool whole = framework::Container::getContainer() == &container;
                 console.reset();
                 return whole;
             });
             framework::Container::m_pMe = former;
         }},
        {"Container: spawn", "false",
         [](Trial& trial) {
             utility::BufferStream in(16);
             utility::BufferStream out(16);
             in.PutS("text");
             trial.run([&] { return framework::Container::spawn("cat \"-\"", &in, &out); });
             FAULTS_EXPECT(trial.failed() || out.ReadAvailable() == 4);
             FAULTS_EXPECT(framework::Container::spawn("true", nullptr, nullptr));
         }},
    };
}

} // namespace

std::vector<Row> frameworkRows() {
    std::vector<Row> rows = entityRows();
    add(rows, memoryRows());
    add(rows, nameRows());
    add(rows, logRows());
    add(rows, threadRows());
    return rows;
}

} // namespace faults
