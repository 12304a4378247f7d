#include <cstdint>
#include <memory>

#include "Trial.h"
#include "ut_Int64Array.h"
#include "ut_IntArray.h"
#include "ut_ShortArray.h"
#include "ut_TokenArray.h"
#include "ut_UInt64Array.h"
#include "ut_UIntArray.h"
#include "ut_UShortArray.h"

// The typed arrays. One that cannot grow throws and stays as it was.

namespace faults {

namespace {

/// The rows that all arrays of numbers share.
template<typename Array, typename Element>
std::vector<Row> numberRows(const std::string& name) {
    return {
        {name + ": constructor", "1230 bad_alloc",
         [](Trial& trial) {
             std::unique_ptr<Array> array;
             alignas(Array) char place[sizeof(Array)];
             trial.run([&] { array.reset(new (place) Array(4)); });
             FAULTS_EXPECT(trial.failed() == (array == nullptr));
             if (array != nullptr)
                 array.release()->~Array();
         }},
        {name + ": copy constructor", "1230 bad_alloc",
         [](Trial& trial) {
             Array original(3);
             original.Append(Element{7});
             alignas(Array) char place[sizeof(Array)];
             Array* copy = nullptr;
             trial.run([&] { copy = new (place) Array(original); });
             FAULTS_EXPECT(original.length() == 1 && original[0] == Element{7});
             if (copy != nullptr) {
                 FAULTS_EXPECT((*copy)[0] == Element{7});
                 copy->~Array();
             }
         }},
        {name + ": Append to a full block", "1230 bad_alloc",
         [](Trial& trial) {
             Array array(1);
             array.Append(Element{1});
             trial.run([&] { array.Append(Element{2}); });
             FAULTS_EXPECT(array.length() == (trial.failed() ? 1 : 2) && array[0] == Element{1});
             array.Append(Element{3});
             FAULTS_EXPECT(array[array.length() - 1] == Element{3});
         }},
        {name + ": InsertAt into a full block", "1230 bad_alloc",
         [](Trial& trial) {
             Array array(1);
             array.Append(Element{1});
             trial.run([&] { array.InsertAt(0, Element{2}); });
             FAULTS_EXPECT(array.length() == (trial.failed() ? 1 : 2) && array[array.length() - 1] == Element{1});
             array.Append(Element{3});
             FAULTS_EXPECT(array[array.length() - 1] == Element{3});
         }},
        {name + ": index out of range", "bad_alloc same",
         [](Trial& trial) {
             Array array(1);
             array.Append(Element{1});
             trial.run([&] { array.SetAt(1, Element{2}); });
             FAULTS_EXPECT(array.length() == 1 && array[0] == Element{1});
         }},
        {name + ": what allocates nothing", ALLOCATES_NOTHING,
         [](Trial& trial) {
             Array array(4);
             trial.run([&] {
                 array.Append(Element{1});
                 array.InsertAt(0, Element{2});
                 array.SetAt(0, Element{3});
                 array.DeleteAt(1);
                 array.sort();
                 array.truncate(1);
                 const Array& constant = array;
                 return array.length() == 1 && array.size() == 4 && array[0] == constant[0];
             });
         }},
    };
}

} // namespace

std::vector<Row> arrayRows() {
    std::vector<Row> rows;
    for (const auto& table :
         {numberRows<utility::IntArray, int>("IntArray"), numberRows<utility::UIntArray, unsigned int>("UIntArray"),
          numberRows<utility::ShortArray, short>("ShortArray"),
          numberRows<utility::UShortArray, unsigned short>("UShortArray"),
          numberRows<utility::Int64Array, std::int64_t>("Int64Array"),
          numberRows<utility::UInt64Array, unsigned long long>("UInt64Array"),
          numberRows<utility::TokenArray, unsigned int>("TokenArray")})
        rows.insert(rows.end(), table.begin(), table.end());
    return rows;
}

} // namespace faults
