// Number arrays beside std::vector with checked access.

#include <cstddef>
#include <random>
#include <string>
#include <vector>

#include "bench.h"
#include "ut_IntArray.h"

namespace bench {
namespace {

constexpr unsigned int elementCount = 1000;

bool equal(const utility::IntArray& array, const std::vector<int>& vector) {
    if (array.length() != vector.size())
        return false;
    for (unsigned int index = 0; index < array.length(); ++index)
        if (array[index] != vector[index])
            return false;
    return true;
}

void elements(Bench& bench) {
    utility::IntArray array(elementCount + 24);
    std::vector<int> vector;
    vector.reserve(elementCount + 24);
    std::vector<unsigned int> order(elementCount);
    std::mt19937 random(1);
    for (unsigned int& index : order)
        index = static_cast<unsigned int>(random() % elementCount);

    const auto append = [&](long) {
        array.truncate(0);
        for (unsigned int index = 0; index < elementCount; ++index)
            array.Append(static_cast<int>(index));
    };
    const auto pushBack = [&](long) {
        vector.clear();
        for (unsigned int index = 0; index < elementCount; ++index) {
            vector.push_back(static_cast<int>(index));
            keep(vector);
        }
    };
    append(0);
    pushBack(0);
    bench.row({"IntArray::Append, capacity given", "std::vector::push_back", 1.0, elementCount}, equal(array, vector),
              append, pushBack);

    int ourValue = 0;
    int theirValue = 0;
    const auto index = [&](long) {
        for (const unsigned int place : order) {
            ourValue = array[place];
            keep(ourValue);
        }
    };
    const auto at = [&](long) {
        for (const unsigned int place : order) {
            theirValue = vector.at(place);
            keep(theirValue);
        }
    };
    index(0);
    at(0);
    bench.row({"IntArray[], any order", "std::vector::at", 1.05, elementCount}, ourValue == theirValue, index, at);

    const auto setAt = [&](long i) {
        for (unsigned int place = 0; place < elementCount; ++place) {
            array.SetAt(place, static_cast<int>(place + static_cast<unsigned int>(i)));
            keep(array);
        }
    };
    const auto assignAt = [&](long i) {
        for (unsigned int place = 0; place < elementCount; ++place) {
            vector.at(place) = static_cast<int>(place + static_cast<unsigned int>(i));
            keep(vector);
        }
    };
    setAt(7);
    assignAt(7);
    bench.row({"IntArray::SetAt", "std::vector::at", 1.1, elementCount}, equal(array, vector), setAt, assignAt);

    long ourSum = 0;
    long theirSum = 0;
    const auto sum = [&](long) {
        ourSum = 0;
        for (unsigned int place = 0; place < array.length(); ++place)
            ourSum += array[place];
        keep(ourSum);
    };
    const auto sumAt = [&](long) {
        theirSum = 0;
        for (std::size_t place = 0; place < vector.size(); ++place)
            theirSum += vector.at(place);
        keep(theirSum);
    };
    setAt(7);
    assignAt(7);
    sum(0);
    sumAt(0);
    bench.row({"IntArray, sum", "std::vector::at", 1.3, elementCount}, ourSum == theirSum, sum, sumAt);
}

// Inserts at the front of an array whose length stays `count`, and deletes there.
struct Front {
    explicit Front(unsigned int count) : size(count), array(count + 24) {
        vector.reserve(count + 24);
        for (unsigned int index = 0; index < count; ++index) {
            array.Append(static_cast<int>(index));
            vector.push_back(static_cast<int>(index));
        }
    }
    void insert(long i) {
        array.truncate(size - 1);
        array.InsertAt(0, static_cast<int>(i));
        keep(array);
    }
    void insertPeer(long i) {
        vector.resize(size - 1);
        vector.insert(vector.begin(), static_cast<int>(i));
        keep(vector);
    }
    void remove(long i) {
        array.DeleteAt(0);
        array.Append(static_cast<int>(i));
        keep(array);
    }
    void removePeer(long i) {
        vector.erase(vector.begin());
        vector.push_back(static_cast<int>(i));
        keep(vector);
    }

    unsigned int size;
    utility::IntArray array;
    std::vector<int> vector;
};

void front(Bench& bench) {
    Front front(elementCount);
    front.insert(1);
    front.insertPeer(1);
    bench.row(
        {"IntArray::InsertAt, front of 1,000", "std::vector::insert", 1.5}, equal(front.array, front.vector),
        [&](long i) { front.insert(i); }, [&](long i) { front.insertPeer(i); });

    Front other(elementCount);
    other.remove(1);
    other.removePeer(1);
    bench.row(
        {"IntArray::DeleteAt, front of 1,000", "std::vector::erase", 1.5}, equal(other.array, other.vector),
        [&](long i) { other.remove(i); }, [&](long i) { other.removePeer(i); });
}

void growth(Bench& bench) {
    for (const unsigned int size : {100U, 1000U, 10000U, 100000U}) {
        bench.point(
            "IntArray::Append from empty, each", "std::vector::push_back", size,
            [&](long) {
                utility::IntArray array(0);
                for (unsigned int index = 0; index < size; ++index)
                    array.Append(static_cast<int>(index));
                keep(array);
            },
            [&](long) {
                std::vector<int> vector;
                for (unsigned int index = 0; index < size; ++index) {
                    vector.push_back(static_cast<int>(index));
                    keep(vector);
                }
            },
            size);
        Front front(size);
        bench.point(
            "IntArray::InsertAt at the front", "std::vector::insert", size, [&](long i) { front.insert(i); },
            [&](long i) { front.insertPeer(i); });
    }
}

} // namespace

void benchArrays(Bench& bench) {
    elements(bench);
    front(bench);
    growth(bench);
}

} // namespace bench
