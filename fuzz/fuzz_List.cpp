// Compares `List`, `Stack` and the queue of streams with simple models. The first byte chooses the class.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <string>
#include <vector>

#include "../tests/support/ListNumber.h"
#include "Bytes.h"
#include "ut_BufferStreamElement.h"
#include "ut_BufferStreamQueue.h"
#include "ut_List.h"
#include "ut_ListIterator.h"
#include "ut_Stack.h"

namespace {

using fuzz::Bytes;
using fuzz::require;
using test::ListNumber;

// A list of numbers, its model, and the list's own count, which does not include insertions in the middle.
class ListRun {
public:
    explicit ListRun(Bytes& in) : m_in(in), m_allowsDuplicates(in.flag()), m_list(m_allowsDuplicates) {}
    ListRun(const ListRun&) = delete;
    ListRun& operator=(const ListRun&) = delete;
    ~ListRun() {
        for (std::size_t i = m_model.size(); i > 0; --i)
            m_list.removeAndDelete(0);
    }

    void run() {
        while (!m_in.isAtEnd() && m_model.size() < 60) {
            takeStep();
            check();
        }
    }

private:
    void takeStep() {
        const int value = static_cast<int>(m_in.below(24));
        const int index = static_cast<int>(m_in.below(20)) - 2;
        const ListNumber sought(value);
        switch (m_in.below(10)) {
        case 0:
            add(value, 0, [&](ListNumber* number) { m_list.addFirst(number); });
            break;
        case 1:
        case 2:
            add(value, -1, [&](ListNumber* number) { m_list.addLast(number); });
            break;
        case 3:
        case 4:
            add(value, index, [&](ListNumber* number) { m_list.add(index, number); });
            break;
        case 5:
            take(0, m_list.removeFirst(false));
            break;
        case 6:
            take(static_cast<int>(m_model.size()) - 1, m_list.removeLast());
            break;
        case 7:
            take(index, m_list.remove(index));
            break;
        case 8:
            removeEqual(sought);
            break;
        default:
            if (isInside(index)) {
                m_list.removeAndDelete(index);
                forget(index);
            }
        }
    }

    bool isInside(int index) const {
        return index >= 0 && index < static_cast<int>(m_model.size());
    }
    int indexOf(int value) const {
        const auto found = std::find(m_model.begin(), m_model.end(), value);
        return found == m_model.end() ? -1 : static_cast<int>(found - m_model.begin());
    }

    template<typename Add>
    void add(int value, int index, Add addTo) {
        std::unique_ptr<ListNumber> number(new ListNumber(value));
        addTo(number.get());
        if (!m_allowsDuplicates && indexOf(value) >= 0)
            return;
        number.release();
        const bool isInMiddle = index > 0 && index < m_count;
        if (index < 0 || index >= m_count)
            index = index == 0 ? 0 : static_cast<int>(m_model.size());
        m_model.insert(m_model.begin() + index, value);
        m_count += isInMiddle ? 0 : 1;
    }
    void forget(int index) {
        m_model.erase(m_model.begin() + index);
        --m_count;
    }
    void take(int index, utility::ListContainable* taken) {
        const std::unique_ptr<utility::ListContainable> owner(taken);
        require((taken != nullptr) == isInside(index));
        if (taken == nullptr)
            return;
        require(static_cast<ListNumber*>(taken)->value == m_model[static_cast<std::size_t>(index)]);
        forget(index);
    }
    void removeEqual(const ListNumber& sought) {
        const int index = indexOf(sought.value);
        const std::unique_ptr<utility::ListContainable> owner(m_list.get(index));
        m_list.remove(&sought);
        if (index >= 0)
            forget(index);
    }

    void check() {
        require(m_list.count() == m_count);
        for (int index = 0; index <= static_cast<int>(m_model.size()); ++index)
            checkElement(m_list.get(index), index);
        checkElement(m_list.getFirst(), 0);
        checkElement(m_list.getLast(), static_cast<int>(m_model.size()) - 1);
        checkWalk(utility::FIRST_TO_LAST, m_model);
        checkWalk(utility::LAST_TO_FIRST, std::deque<int>(m_model.rbegin(), m_model.rend()));
        for (int value = 0; value < 24; value += 5) {
            const ListNumber sought(value);
            require(m_list.indexOf(&sought) == indexOf(value));
        }
    }
    void checkElement(const utility::ListContainable* element, int index) const {
        require((element != nullptr) == isInside(index));
        require(element == nullptr ||
                static_cast<const ListNumber*>(element)->value == m_model[static_cast<std::size_t>(index)]);
    }
    void checkWalk(utility::SortOrder order, const std::deque<int>& expected) const {
        const std::unique_ptr<utility::ListIterator> iterator(m_list.iterator(order));
        for (const int value : expected) {
            const utility::ListContainable* const element = iterator->next();
            require(element != nullptr && static_cast<const ListNumber*>(element)->value == value);
        }
        require(iterator->next() == nullptr);
    }

    Bytes& m_in;
    const bool m_allowsDuplicates;
    utility::List m_list;
    std::deque<int> m_model;
    int m_count = 0;
};

void runStack(Bytes& in) {
    const std::string names[] = {"a", "b", "c", "d"};
    std::vector<const std::string*> model;
    Stack stack;
    while (!in.isAtEnd()) {
        const std::string* const name = &names[in.below(4)];
        if (in.below(3) == 0) {
            require(stack.pop() == (model.empty() ? nullptr : model.back()));
            if (!model.empty())
                model.pop_back();
        } else {
            // The object of each name is the next one.
            require(stack.push(name, name + 1));
            model.push_back(name);
        }
        const Stack::StackNode* node = stack.topNode();
        for (auto expected = model.rbegin(); expected != model.rend(); ++expected, node = node->Next())
            require(node != nullptr && node->Name() == *expected && node->Obj() == *expected + 1);
        require(node == nullptr);
        require(model.empty() || (stack.top() == model.back() && stack.topObj() == model.back() + 1));
    }
}

typedef std::deque<utility::BufferStreamElement*> Elements;

bool contains(const Elements& elements, const utility::BufferStreamElement* element) {
    return std::find(elements.begin(), elements.end(), element) != elements.end();
}

void runQueue(Bytes& in) {
    utility::BufferStreamQueue queue;
    Elements queued;
    Elements taken;
    for (int i = 0; i < 6; ++i)
        taken.push_back(new utility::BufferStreamElement(8, nullptr));
    while (!in.isAtEnd()) {
        const unsigned int kind = in.below(3);
        const unsigned int chosen = in.below(6);
        if (kind == 0) {
            utility::BufferStreamElement* const element = queue.deQueue();
            require(element == (queued.empty() ? nullptr : queued.front()));
            if (element == nullptr)
                continue;
            require(element->Next() == nullptr);
            queued.pop_front();
            taken.push_back(element);
        } else {
            // Queuing an element again is ignored.
            const bool isNew = chosen < taken.size();
            utility::BufferStreamElement* const element = isNew ? taken[chosen] : queued[chosen - taken.size()];
            kind == 1 ? queue.enQueue(element) : queue.reQueue(element);
            if (isNew) {
                taken.erase(taken.begin() + chosen);
                queued.insert(kind == 1 ? queued.end() : queued.begin(), element);
            }
        }
        require(queue.Count() == static_cast<int>(queued.size()));
    }
    for (utility::BufferStreamElement* element : taken)
        delete element;
}

void runChain(Bytes& in) {
    std::vector<std::unique_ptr<utility::BufferStreamElement>> all;
    for (int i = 0; i < 6; ++i)
        all.emplace_back(new utility::BufferStreamElement(8, nullptr));
    Elements model = {all[0].get()};
    while (!in.isAtEnd()) {
        utility::BufferStreamElement* const element = all[in.below(6)].get();
        utility::BufferStreamElement* const first = model.front();
        const bool isNew = !contains(model, element);
        switch (in.below(3)) {
        case 0:
            first->Append(element);
            if (isNew)
                model.push_back(element);
            break;
        case 1:
            require(first->Insert(element) == (isNew ? element : first));
            if (isNew)
                model.push_front(element);
            break;
        default:
            // Leave one element in the chain for the queries.
            if (model.size() == 1)
                break;
            model.erase(std::remove(model.begin(), model.end(), element), model.end());
            require(first->Remove(element) == model.front());
            require(isNew || element->Next() == nullptr);
        }
        const utility::BufferStreamElement* next = model.front();
        for (const utility::BufferStreamElement* expected : model) {
            require(next == expected);
            next = next->Next();
        }
        require(next == nullptr);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const fuzz::SilentLog silence;
    Bytes in(data, size);
    switch (in.below(5)) {
    case 0:
        runStack(in);
        break;
    case 1:
        runQueue(in);
        break;
    case 2:
        runChain(in);
        break;
    default:
        ListRun(in).run();
    }
    require(ListNumber::alive == 0);
    return 0;
}
