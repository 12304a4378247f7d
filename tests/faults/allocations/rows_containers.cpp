#include <atomic>
#include <string>
#include <thread>

#include "Trial.h"
#include "fw_FSUMemory.h"
#include "fw_Item.h"
#include "ut_AbsentEntry.h"
#include "ut_BufferStream.h"
#include "ut_BufferStreamElement.h"
#include "ut_BufferStreamList.h"
#include "ut_BufferStreamQueue.h"
#include "ut_FastSortedStringDirectory.h"
#include "ut_FastStringDirectory.h"
#include "ut_ItemDirectory.h"
#include "ut_List.h"
#include "ut_ListContainable.h"
#include "ut_ListIterator.h"
#include "ut_Map.h"
#include "ut_MapEntity.h"
#include "ut_MessageChannel.h"
#include "ut_Stack.h"
#include "ut_StringDirectory.h"
#include "ut_StringMap.h"

// Maps, directories, lists, queues and the stack. An element that cannot be added is refused, and the container is
// unchanged.

namespace faults {

namespace {

int keys[4]; // addresses as keys

void* key(int number) {
    return &keys[number];
}

std::vector<Row> mapRows() {
    using utility::Map;
    return {
        {"Map: constructor", "same",
         [](Trial& trial) {
             std::optional<Map> map;
             trial.run([&] { map.emplace(4u); });
             void* value = nullptr;
             map->Add(key(0), key(1));
             map->First(value);
             map->Next(key(0), value);
             map->DeleteAll();
         }},
        {"Map: Add", "false",
         [](Trial& trial) {
             Map map(2);
             map.Add(key(0), key(1));
             trial.run([&] { return map.Add(key(1), key(2)); });
             FAULTS_EXPECT(map.Lookup(key(0)) == key(1) && map.count() == (trial.failed() ? 1 : 2));
             FAULTS_EXPECT((map.Lookup(key(1)) == key(2)) == !trial.failed());
             FAULTS_EXPECT(map.Add(key(2), key(3)));
         }},
        {"Map: what allocates nothing", allocatesNothing,
         [](Trial& trial) {
             std::optional<Map> map(std::in_place, 2u);
             map->Add(key(0), key(1));
             map->Add(key(1), key(1));
             trial.run([&] {
                 void* value = nullptr;
                 const bool changed = !map->Add(key(0), key(2));
                 void* first = map->First(value);
                 const bool whole = changed && map->Next(first, value) != utility::absentEntry() &&
                                    map->Lookup(key(0)) == key(2) && map->Delete(key(0));
                 map->setPlacementTrace(false);
                 map->DeleteAll();
                 const unsigned int count = map->count();
                 map.reset();
                 return whole && count == 1;
             });
         }},
        {"MapEntity: constructor", "same",
         [](Trial& trial) {
             std::optional<utility::MapEntity> map;
             trial.run([&] { map.emplace(4u, nullptr); });
             if (map.has_value())
                 map->Add(key(0), key(1));
         }},
        {"MapEntity: Add", "false",
         [](Trial& trial) {
             utility::MapEntity map(2, nullptr);
             map.Add(key(0), key(1));
             trial.run([&] { return map.Add(key(1), key(2)); });
             FAULTS_EXPECT(map.Lookup(key(0)) == key(1) && map.count() == (trial.failed() ? 1 : 2));
             FAULTS_EXPECT(map.Add(key(2), key(3)));
         }},
        {"MapEntity: Add from a pool", "false",
         [](Trial& trial) {
             framework::FSUMemory pool(8, 1);
             utility::MapEntity map(2, &pool);
             map.Add(key(0), key(1));
             trial.run([&] { return map.Add(key(1), key(2)); });
             FAULTS_EXPECT(map.Lookup(key(0)) == key(1) && map.count() == (trial.failed() ? 1 : 2));
         }},
        {"MapEntity: what allocates nothing", allocatesNothing,
         [](Trial& trial) {
             std::optional<utility::MapEntity> map(std::in_place, 2u, nullptr);
             map->Add(key(0), key(1));
             map->Add(key(1), key(1));
             trial.run([&] {
                 void* value = nullptr;
                 void* first = map->First(value);
                 const bool whole = map->Next(first, value) != utility::absentEntry() &&
                                    map->Lookup(key(0)) == key(1) && map->Delete(key(0));
                 map->setPlacementTrace(false);
                 map->DeleteAll();
                 const unsigned int count = map->count();
                 map.reset();
                 return whole && count == 1;
             });
         }},
        {"StringMap: constructor", "same",
         [](Trial& trial) {
             std::optional<utility::StringMap> map;
             trial.run([&] { map.emplace(4u); });
             map->Add("a", key(1));
             map->DeleteAll();
         }},
        {"StringMap: Add", "false",
         [](Trial& trial) {
             utility::StringMap map(2);
             map.Add("first", key(1));
             trial.run([&] { return map.Add("second", key(2)); });
             FAULTS_EXPECT(map.Lookup("first") == key(1) && map.count() == (trial.failed() ? 1 : 2));
             FAULTS_EXPECT((map.Lookup("second") == key(2)) == !trial.failed());
             FAULTS_EXPECT(map.Add("third", key(3)));
         }},
        {"StringMap: what allocates nothing", allocatesNothing,
         [](Trial& trial) {
             std::optional<utility::StringMap> map(std::in_place, 2u);
             map->Add("a", key(1));
             map->Add("b", key(1));
             trial.run([&] {
                 void* value = nullptr;
                 const char* first = map->First(value);
                 const bool whole = map->Next(first, value) != nullptr && map->Lookup("a") == key(1) &&
                                    map->hash("a") == map->hash("a") && map->Delete("a");
                 map->setPlacementTrace(false);
                 map->DeleteAll();
                 const unsigned int count = map->count();
                 map.reset();
                 return whole && count == 1;
             });
         }},
        {"Map, MapEntity, StringMap: dump", allocatesNothing,
         [](Trial& trial) {
             utility::Map map(2);
             utility::MapEntity entity(2, nullptr);
             utility::StringMap texts(2);
             trial.run([&] {
                 map.dump();
                 entity.dump();
                 texts.dump();
             });
         }},
    };
}

// The rows that all directories of strings share.
template<typename Directory>
std::vector<Row> directoryRows(const std::string& name) {
    return {
        {name + ": constructor", "1230 bad_alloc",
         [](Trial& trial) {
             construct<Directory>(trial, 4);
         }},
        {name + ": Add to a full table", "1230 bad_alloc -1",
         [](Trial& trial) {
             Directory directory(1);
             directory.Add("m");
             trial.run([&] { return directory.Add("p"); });
             FAULTS_EXPECT(directory.NumElements() == (trial.failed() ? 1 : 2));
             FAULTS_EXPECT(directory.ElementAt(0) != nullptr && directory.ElementAt(0)[0] == 'm');
             FAULTS_EXPECT(directory.Add("z") == (trial.failed() ? 1 : 2));
             directory.Delete("z");
         }},
        {name + ": ToBuffer without space", "same bad_alloc",
         [](Trial& trial) {
             Directory directory(1);
             directory.Add("too long a text");
             utility::BufferStream out(4);
             trial.run([&] { directory.ToBuffer(out); });
         }},
        {name + ": what allocates nothing", allocatesNothing,
         [](Trial& trial) {
             std::optional<Directory> directory(std::in_place, 4);
             directory->Add("a");
             directory->Add("b");
             utility::BufferStream out(32);
             trial.run([&] {
                 directory->ToBuffer(out);
                 const bool whole = directory->Find("b") >= 0 && directory->Lookup("b") != nullptr &&
                                    directory->ElementAt(1) != nullptr && directory->NumElements() == 2;
                 directory->Delete("b");
                 directory.reset();
                 return whole;
             });
         }},
    };
}

std::vector<Row> itemRows() {
    using utility::ItemDirectory;
    return {
        {"FastStringDirectory: Add to a free slot", "-1",
         [](Trial& trial) {
             utility::FastStringDirectory directory(2);
             directory.Add("a");
             directory.Add("b");
             directory.Delete("a");
             trial.run([&] { return directory.Add("c"); });
             FAULTS_EXPECT(directory.Find("b") == 1);
             FAULTS_EXPECT(directory.Add("d") == (trial.failed() ? 0 : 2));
         }},
        {"ItemDirectory: constructor", "1230 bad_alloc",
         [](Trial& trial) {
             construct<ItemDirectory>(trial, 4u);
         }},
        {"ItemDirectory: add to a full table", "1230 bad_alloc",
         [](Trial& trial) {
             framework::Item first;
             framework::Item second;
             ItemDirectory directory(1);
             directory.add(&first);
             trial.run([&] { return directory.add(&second); });
             FAULTS_EXPECT(directory.length() == (trial.failed() ? 1 : 2) && directory.getSorted(0) == &first);
             FAULTS_EXPECT(directory.get(first.getName()) != nullptr);
             directory.add(&first);
         }},
        {"ItemDirectory: what allocates nothing", allocatesNothing,
         [](Trial& trial) {
             framework::Item first;
             framework::Item second;
             std::optional<ItemDirectory> directory(std::in_place, 4u);
             auto* owned = new framework::Item;
             trial.run([&] {
                 directory->add(&first);
                 directory->replace(first.getName(), &second);
                 const bool whole = directory->find(second.getName()) == 0 &&
                                    directory->get(first.getName()) == &second && directory->length() == 1 &&
                                    directory->getSorted(0) == &second;
                 directory->remove(first.getName());
                 directory->add(&first);
                 directory->removeAll();
                 directory->add(owned);
                 directory->add(owned);
                 directory->deleteAll();
                 directory.reset();
                 return whole;
             });
         }},
    };
}

class Number : public utility::ListContainable {
public:
    explicit Number(int value) : m_value(value) {}
    bool equals(const utility::ListContainable* other) const override {
        return static_cast<const Number*>(other)->m_value == m_value;
    }

private:
    int m_value;
};

// An operation that adds `second` to a list of two other elements.
Row listRow(const std::string& name, void (*operation)(utility::List& list, utility::ListContainable* second)) {
    return {"List: " + name, "false", [operation](Trial& trial) {
                Number first(1);
                Number second(2);
                Number third(3);
                Number fourth(4);
                utility::List list(true);
                list.addLast(&first);
                list.addLast(&third);
                trial.run([&] {
                    operation(list, &second);
                    return list.get(2) != nullptr;
                });
                FAULTS_EXPECT(list.indexOf(&first) >= 0 && list.indexOf(&third) >= 0);
                FAULTS_EXPECT((list.indexOf(&second) >= 0) == !trial.failed());
                list.addLast(&fourth);
                FAULTS_EXPECT(list.getLast() == &fourth);
                list.removeAll();
            }};
}

std::vector<Row> listRows() {
    using utility::List;
    using utility::ListContainable;
    return {
        listRow("addFirst", [](List& list, ListContainable* second) { list.addFirst(second); }),
        listRow("addLast", [](List& list, ListContainable* second) { list.addLast(second); }),
        listRow("add", [](List& list, ListContainable* second) { list.add(1, second); }),
        listRow("ListEntry::insertBefore",
                [](List& list, ListContainable* second) { list.getEntry(1)->insertBefore(second); }),
        listRow("ListEntry::insertAfter",
                [](List& list, ListContainable* second) { list.getEntry(0)->insertAfter(second); }),
        {"List::ListEntry: constructor and destructor", allocatesNothing,
         [](Trial& trial) {
             Number one(1);
             trial.run([&] {
                 const List::ListEntry entry(&one);
                 return entry.element() == &one;
             });
         }},
        {"List: iterator", "null",
         [](Trial& trial) {
             Number first(1);
             List list;
             list.addLast(&first);
             utility::ListIterator* iterator = nullptr;
             trial.run([&] { return iterator = list.iterator(utility::FIRST_TO_LAST); });
             FAULTS_EXPECT(iterator == nullptr || iterator->next() == &first);
             delete iterator;
             // Not locked any more.
             list.removeAll();
             FAULTS_EXPECT(list.count() == 0);
         }},
        {"List: what allocates nothing", allocatesNothing,
         [](Trial& trial) {
             Number numbers[] = {Number(0), Number(1), Number(2), Number(3), Number(4)};
             std::optional<List> list(std::in_place, true);
             for (Number& number : numbers)
                 list->addLast(&number);
             list->addLast(new Number(9));
             list->addLast(new Number(9));
             list->addLast(new Number(9));
             trial.run([&] {
                 bool whole = list->getFirst() == &numbers[0] && list->getLast() != nullptr && list->count() == 8 &&
                              list->get(1) == &numbers[1] && list->indexOf(&numbers[2]) == 2;
                 {
                     utility::ListIterator iterator(*list, utility::LAST_TO_FIRST);
                     const List::ListEntry* entry = list->getEntry(&numbers[1]);
                     whole = whole && iterator.next() == list->getLast() && entry->element() == &numbers[1] &&
                             entry->previous() == list->getEntry(0) && entry->next() == list->getEntry(2);
                 }
                 list->removeAndDelete(7);
                 list->removeAndDelete(list->getLast());
                 list->removeEntry(list->getEntry(&numbers[4]));
                 whole = whole && list->removeFirst(true) == &numbers[0] && list->remove(0) == &numbers[1];
                 list->remove(&numbers[2]);
                 list->remove(&numbers[3]);
                 list->wakeAll();
                 list->removeAndDeleteAll();
                 list->removeAll();
                 whole = whole && list->removeLast() == nullptr && list->removeFirst(false) == nullptr;
                 list.reset();
                 const List empty;
                 return whole && empty.count() == 0;
             });
         }},
        {"List: removeFirst of an empty list, waiting", allocatesNothing,
         [](Trial& trial) {
             List list;
             std::atomic<bool> ended(false);
             std::thread waker([&] {
                 while (!ended.load()) {
                     list.wakeAll();
                     std::this_thread::yield();
                 }
             });
             trial.run([&] { return list.removeFirst(true); });
             ended.store(true);
             waker.join();
         }},
    };
}

std::vector<Row> poolRows() {
    using utility::BufferStreamElement;
    using utility::BufferStreamList;
    using utility::BufferStreamQueue;
    return {
        {"BufferStreamElement: constructor", "1238 bad_alloc",
         [](Trial& trial) {
             construct<BufferStreamElement>(trial, 64, nullptr);
         }},
        {"BufferStreamElement: new", "1238 bad_alloc null",
         [](Trial& trial) {
             BufferStreamElement* element = nullptr;
             trial.run([&] { return element = new BufferStreamElement(64, nullptr); });
             delete element;
         }},
        {"BufferStreamElement: chains", allocatesNothing,
         [](Trial& trial) {
             BufferStreamElement first(8, nullptr);
             BufferStreamElement second(8, nullptr);
             BufferStreamElement third(8, nullptr);
             trial.run([&] {
                 first.Append(&second);
                 BufferStreamElement* chain = first.Insert(&third);
                 const bool whole = chain == &third && third.Next() == &first && first.Next() == &second;
                 chain = chain->Remove(&first);
                 return whole && chain->Remove(&second) == &third;
             });
         }},
        {"BufferStreamList: constructor with elements", "1238 bad_alloc 0 1",
         [](Trial& trial) {
             std::optional<BufferStreamList> list;
             trial.run([&] {
                 list.emplace(2, 64);
                 return list->Count();
             });
             if (list.has_value()) {
                 auto* element = new BufferStreamElement(8, nullptr);
                 list->Append(element);
                 FAULTS_EXPECT(list->Count() > 0);
             }
         }},
        {"BufferStreamList: what allocates nothing", allocatesNothing,
         [](Trial& trial) {
             auto* first = new BufferStreamElement(8, nullptr);
             auto* second = new BufferStreamElement(8, nullptr);
             trial.run([&] {
                 BufferStreamList list;
                 list.init();
                 list.Append(first);
                 list.Insert(second);
                 bool whole = list.Count() == 2 && list.Next(second) == first && list.Next(first) == nullptr;
                 list.Lock();
                 list.Remove(first);
                 list.UnLock();
                 delete first;
                 list.Signal();
                 list.Broadcast();
                 whole = whole && list.Allocate() == second && list.Allocate() == nullptr;
                 list.Append(second);
                 return whole;
             });
         }},
        {"BufferStreamList: Wait", allocatesNothing,
         [](Trial& trial) {
             BufferStreamList list;
             trial.run([&] {
                 list.Lock();
                 list.Wait(1);
                 list.UnLock();
             });
         }},
        {"BufferStreamQueue: what allocates nothing", allocatesNothing,
         [](Trial& trial) {
             auto* first = new BufferStreamElement(8, nullptr);
             auto* second = new BufferStreamElement(8, nullptr);
             trial.run([&] {
                 BufferStreamQueue queue;
                 queue.enQueue(first);
                 queue.reQueue(second);
                 queue.enQueue(second);
                 const bool whole = queue.Count() == 2 && queue.deQueue() == second;
                 delete second;
                 return whole;
             });
         }},
        {"MessageChannel: constructor", "1238 bad_alloc",
         [](Trial& trial) { construct<utility::MessageChannel>(trial, 2, 16); }, "the token of the source file's name"},
        {"MessageChannel: what allocates nothing", allocatesNothing,
         [](Trial& trial) {
             std::optional<utility::MessageChannel> channel(std::in_place, 2, 16);
             trial.run([&] {
                 auto message = channel->allocate();
                 message->PutC('x');
                 bool whole =
                     channel->send(std::move(message)) && channel->count() == 1 && channel->receive(1) != nullptr;
                 whole = whole && channel->receive(0) == nullptr && !channel->isClosed();
                 channel->close();
                 whole = whole && channel->isAtEnd() && channel->allocate() == nullptr;
                 channel.reset();
                 return whole;
             });
         }},
    };
}

std::vector<Row> stackRows() {
    return {
        {"Stack: push", "false",
         [](Trial& trial) {
             const std::string name = "name";
             Stack stack;
             stack.push(&name, key(0));
             trial.run([&] { return stack.push(&name, key(1)); });
             FAULTS_EXPECT(stack.topObj() == key(trial.failed() ? 0 : 1));
             FAULTS_EXPECT(stack.push(nullptr, key(2)));
         }},
        {"Stack: what allocates nothing", allocatesNothing,
         [](Trial& trial) {
             const std::string name = "name";
             std::optional<Stack> stack(std::in_place);
             stack->push(&name, key(0));
             stack->push(&name, key(1));
             trial.run([&] {
                 Stack::StackNode* node = stack->topNode();
                 bool whole = node->Name() == &name && node->Obj() == key(1) && node->Next() != nullptr;
                 node->Next(node->Next());
                 const Stack::StackNode alone(&name, key(2), nullptr);
                 whole = whole && stack->top() == &name && stack->pop() == &name && alone.Obj() == key(2);
                 stack.reset();
                 Stack empty;
                 return whole && empty.topObj() == nullptr;
             });
         }},
    };
}

} // namespace

std::vector<Row> containerRows() {
    std::vector<Row> rows = mapRows();
    add(rows, directoryRows<utility::StringDirectory>("StringDirectory"));
    add(rows, directoryRows<utility::FastStringDirectory>("FastStringDirectory"));
    add(rows, directoryRows<utility::FastSortedStringDirectory>("FastSortedStringDirectory"));
    add(rows, itemRows());
    add(rows, listRows());
    add(rows, poolRows());
    add(rows, stackRows());
    return rows;
}

} // namespace faults
