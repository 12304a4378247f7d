#include <cstdint>

#include "Trial.h"
#include "fw_Item.h"
#include "fw_KnownStrings.h"
#include "fw_Memory.h"
#include "ut_BufferStream.h"
#include "ut_FCPortAddress.h"
#include "ut_ISCSIPortAddress.h"
#include "ut_Int64Array.h"
#include "ut_IntArray.h"
#include "ut_ItemArray.h"
#include "ut_PortAddressArray.h"
#include "ut_SerialNumber.h"
#include "ut_SerialNumberArray.h"
#include "ut_ShortArray.h"
#include "ut_StringArray.h"
#include "ut_TokenArray.h"
#include "ut_TokenSet.h"
#include "ut_UInt64Array.h"
#include "ut_UIntArray.h"
#include "ut_UShortArray.h"
#include "ut_WWN.h"
#include "ut_WWNArray.h"

// The typed arrays. An array that cannot grow throws and is unchanged.

namespace faults {

namespace {

constexpr const char* wwnText = "500a09818d5f1234";
constexpr const char* serialText = "00c0ff112233aabb4455667788000000";

// The rows that all arrays of numbers share.
template<typename Array, typename Element>
std::vector<Row> numberRows(const std::string& name) {
    return {
        {name + ": constructor", "1230 bad_alloc",
         [](Trial& trial) {
             construct<Array>(trial, 4u);
         }},
        {name + ": copy constructor", "1230 bad_alloc",
         [](Trial& trial) {
             Array original(3);
             original.Append(Element{7});
             std::optional<Array> copy;
             trial.run([&] { copy.emplace(original); });
             FAULTS_EXPECT(original.length() == 1 && original[0] == Element{7});
             FAULTS_EXPECT(!copy.has_value() || (*copy)[0] == Element{7});
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
        {name + ": index out of range", "same bad_alloc",
         [](Trial& trial) {
             Array array(1);
             array.Append(Element{1});
             trial.run([&] { array.SetAt(1, Element{2}); });
             FAULTS_EXPECT(array.length() == 1 && array[0] == Element{1});
         }},
        {name + ": what allocates nothing", allocatesNothing,
         [](Trial& trial) {
             std::optional<Array> array(std::in_place, 4u);
             trial.run([&] {
                 array->Append(Element{1});
                 array->InsertAt(0, Element{2});
                 array->SetAt(0, Element{3});
                 array->DeleteAt(1);
                 array->sort();
                 array->truncate(1);
                 const Array& constant = *array;
                 const bool whole = array->length() == 1 && array->size() == 4 && (*array)[0] == constant[0];
                 array.reset();
                 return whole;
             });
         }},
    };
}

// The rows that all arrays of pointers share; `make` gives an element, `drop` deletes it.
template<typename Array, typename Element, Element* (*make)(), void (*drop)(Element*)>
std::vector<Row> pointerRows(const std::string& name) {
    return {
        {name + ": constructor", "1230 bad_alloc",
         [](Trial& trial) {
             construct<Array>(trial, 4u);
         }},
        {name + ": Append to a full block", "1230 bad_alloc",
         [](Trial& trial) {
             Array array(1);
             array.Append(nullptr);
             Element* element = make();
             trial.run([&] { array.Append(element); });
             FAULTS_EXPECT(array.length() == (trial.failed() ? 1 : 2) && array[0] == nullptr);
             // An element that was refused is still the caller's.
             if (trial.failed())
                 drop(element);
             else
                 FAULTS_EXPECT(array.Find(element) == 1);
             array.Append(nullptr);
         }},
        {name + ": InsertAt into a full block", "1230 bad_alloc",
         [](Trial& trial) {
             Array array(1);
             array.Append(nullptr);
             Element* element = make();
             trial.run([&] { array.InsertAt(0, element); });
             FAULTS_EXPECT(array.length() == (trial.failed() ? 1 : 2) && array[array.length() - 1] == nullptr);
             if (trial.failed())
                 drop(element);
         }},
        {name + ": Append of an array", "1230 bad_alloc",
         [](Trial& trial) {
             Array array(1);
             Array other(2);
             other.Append(nullptr);
             other.Append(nullptr);
             trial.run([&] { array.Append(other); });
             FAULTS_EXPECT(other.length() == 2 && array.length() <= 2);
             FAULTS_EXPECT(trial.failed() || array.length() == 2);
             array.Append(nullptr);
         }},
        {name + ": index out of range", "same bad_alloc",
         [](Trial& trial) {
             Array array(1);
             trial.run([&] { array.SetAt(0, nullptr); });
             FAULTS_EXPECT(array.length() == 0);
         }},
        {name + ": what allocates nothing", allocatesNothing,
         [](Trial& trial) {
             std::optional<Array> array(std::in_place, 4u);
             Element* first = make();
             Element* second = make();
             trial.run([&] {
                 array->Append(first);
                 array->InsertAt(0, nullptr);
                 array->SetAt(0, second);
                 const Array& constant = *array;
                 const bool whole = constant.Find(first) == 1 && (*array)[0] == constant[0];
                 array->DeleteAt(0);
                 array.reset();
                 return whole;
             });
             drop(second);
         }},
    };
}

utility::WWN* makeWWN() {
    return new utility::WWN(wwnText);
}

void deleteWWN(utility::WWN* name) {
    delete name;
}

utility::SerialNumber* makeSerialNumber() {
    return new utility::SerialNumber(serialText);
}

void deleteSerialNumber(utility::SerialNumber* number) {
    delete number;
}

utility::PortAddress* makePort() {
    return new utility::FCPortAddress(utility::FCPortAddress::WWN_TYPE_0, wwnText);
}

// Addresses are trivially destructible.
void deletePort(utility::PortAddress* port) {
    utility::PortAddress::operator delete(port);
}

framework::Item* borrowItem() {
    static framework::Item items[2];
    static unsigned int number = 0;
    return &items[++number % 2];
}

void giveBackItem(framework::Item*) {}

template<typename Array>
std::vector<Row> pointerCopyRows(const std::string& name) {
    return {{name + ": copy constructor", "1230 bad_alloc", [](Trial& trial) {
                 Array original(3);
                 original.Append(nullptr);
                 std::optional<Array> copy;
                 trial.run([&] { copy.emplace(original); });
                 FAULTS_EXPECT(original.length() == 1);
             }}};
}

std::vector<Row> portRows() {
    return {
        {"PortAddressArray: copy constructor", "1230 bad_alloc",
         [](Trial& trial) {
             utility::PortAddressArray original(3);
             original.Append(makePort());
             original.Append(makePort());
             std::optional<utility::PortAddressArray> copy;
             trial.run([&] { copy.emplace(original); });
             FAULTS_EXPECT(original.length() == 2 && original[1] != nullptr);
             FAULTS_EXPECT(!copy.has_value() || (copy->length() == 2 && *(*copy)[1] == *original[1]));
         }},
        {"PortAddressArray: assignment", "1230 bad_alloc",
         [](Trial& trial) {
             utility::PortAddressArray original(3);
             original.Append(makePort());
             original.Append(makePort());
             utility::PortAddressArray array(1);
             array.Append(makePort());
             utility::PortAddress* before = array[0];
             trial.run([&] { array = original; });
             FAULTS_EXPECT(array.length() == (trial.failed() ? 1 : 2));
             FAULTS_EXPECT(!trial.failed() || array[0] == before);
         },
         nullptr,
         "the block is released with the global delete operator, so the static services count one piece too many"},
        {"PortAddressArray: DeleteAll, ElementAt, toPutStream", allocatesNothing,
         [](Trial& trial) {
             utility::PortAddressArray array(2);
             array.Append(makePort());
             array.Append(nullptr);
             char text[64];
             utility::PutStream out(text, sizeof text);
             trial.run([&] {
                 array.toPutStream(out);
                 const bool whole = array.ElementAt(0) != nullptr && array.ElementAt(2) == nullptr;
                 array.DeleteAll();
                 return whole && array.length() == 0;
             });
         }},
    };
}

std::vector<Row> stringRows() {
    using utility::StringArray;
    return {
        {"StringArray: constructor", "1230 bad_alloc",
         [](Trial& trial) {
             construct<StringArray>(trial, 4u);
         }},
        {"StringArray: copy constructor", "1230 bad_alloc same",
         [](Trial& trial) {
             StringArray original(3);
             original.Append("a text that is longer than the others");
             original.Append("b");
             std::optional<StringArray> copy;
             trial.run([&] { copy.emplace(original); });
             FAULTS_EXPECT(original.length() == 2);
             FAULTS_EXPECT(!copy.has_value() || copy->length() == 2);
         }},
        {"StringArray: Append to a full block", "1230 bad_alloc same",
         [](Trial& trial) {
             StringArray array(1);
             array.Append("first");
             trial.run([&] { array.Append("second"); });
             FAULTS_EXPECT(array.length() == (trial.failed() ? 1 : 2) && array[0] != nullptr);
             array.Append("third");
             FAULTS_EXPECT(array[array.length() - 1] != nullptr);
         }},
        {"StringArray: Append of a part", "same",
         [](Trial& trial) {
             StringArray array(1);
             trial.run([&] { array.Append("portal:3260", 6); });
             FAULTS_EXPECT(array.length() == 1);
         }},
        {"StringArray: InsertAt into a full block", "1230 bad_alloc same",
         [](Trial& trial) {
             StringArray array(1);
             array.Append("first");
             trial.run([&] { array.InsertAt(0, "second"); });
             FAULTS_EXPECT(array.length() == (trial.failed() ? 1 : 2) && array[array.length() - 1] != nullptr);
         }},
        {"StringArray: SetAt", "same",
         [](Trial& trial) {
             StringArray array(2);
             array.Append("first");
             trial.run([&] { array.SetAt(0, "changed"); });
             FAULTS_EXPECT(array.length() == 1);
             array.SetAt(0, "again");
             FAULTS_EXPECT(array[0] != nullptr);
         }},
        {"StringArray: index out of range", "same bad_alloc",
         [](Trial& trial) {
             StringArray array(2);
             trial.run([&] { return array[0] != nullptr; });
         }},
        {"StringArray: what allocates nothing", allocatesNothing,
         [](Trial& trial) {
             std::optional<StringArray> array(std::in_place, 4u);
             array->Append("one");
             array->Append("two");
             trial.run([&] {
                 array->Append(nullptr);
                 array->DeleteAt(0);
                 const StringArray& constant = *array;
                 const bool whole = constant.ElementAt(0) == constant[0] && (*array)[1] == nullptr;
                 array->sort();
                 array->DeleteAll();
                 array.reset();
                 return whole;
             });
         }},
    };
}

// Tokens of names that the framework knows, so that none is stored anew.
template<typename Array>
std::vector<Row> tokenListRows(const std::string& name) {
    return {
        {name + ": constructor from names", "1230 bad_alloc",
         [](Trial& trial) {
             construct<Array>(trial, "Entity,URL,FC", 2u);
         }},
        {name + ": SetFromStringList beyond the block", "1230 bad_alloc",
         [](Trial& trial) {
             Array array(1);
             trial.run([&] { array.SetFromStringList("Entity,URL,FC"); });
             FAULTS_EXPECT(array.length() == (trial.failed() ? 1 : 3));
             array.SetFromStringList("Entity");
             FAULTS_EXPECT(array.length() == 1);
         }},
        {name + ": SetFromStringList with a new name", "same",
         [](Trial& trial) {
             static unsigned int number = 0;
             const std::string list = "faults" + std::to_string(sizeof(Array)) + "-" + std::to_string(++number);
             Array array(1);
             trial.run([&] { array.SetFromStringList(list.c_str()); });
             FAULTS_EXPECT(array.length() == 1);
         },
         "new names are kept for good"},
    };
}

std::vector<Row> tokenSetRows() {
    using utility::TokenSet;
    return {
        {"TokenSet: constructor", "1230 bad_alloc",
         [](Trial& trial) {
             construct<TokenSet>(trial, 4u);
         }},
        {"TokenSet: copy constructor", "1230 bad_alloc",
         [](Trial& trial) {
             const TokenSet original("Entity,URL", 3);
             construct<TokenSet>(trial, original);
         }},
        {"TokenSet: set in a full block", "1230 bad_alloc",
         [](Trial& trial) {
             TokenSet tokens(1);
             tokens.set(9);
             trial.run([&] { tokens.set(5); });
             FAULTS_EXPECT(tokens.length() == (trial.failed() ? 1 : 2) && tokens.inSet(9));
             tokens.set(7);
             FAULTS_EXPECT(tokens.inSet(7));
         }},
        {"TokenSet: append to a full block", "1230 bad_alloc",
         [](Trial& trial) {
             TokenSet tokens(1);
             tokens.append(1);
             trial.run([&] { tokens.append(2); });
             FAULTS_EXPECT(tokens.length() == (trial.failed() ? 1 : 2));
         }},
        {"TokenSet: insertAt into a full block", "1230 bad_alloc",
         [](Trial& trial) {
             TokenSet tokens(1);
             tokens.append(2);
             trial.run([&] { tokens.insertAt(0, 1); });
             FAULTS_EXPECT(tokens.length() == (trial.failed() ? 1 : 2));
         }},
        {"TokenSet: mergeSet into a full block", "1230 bad_alloc",
         [](Trial& trial) {
             TokenSet tokens(2);
             tokens.set(3);
             tokens.set(4);
             TokenSet other(1);
             other.set(1);
             trial.run([&] { tokens.mergeSet(other); });
             FAULTS_EXPECT(tokens.length() == 2 && other.inSet(1));
             FAULTS_EXPECT(other.length() == (trial.failed() ? 1 : 3));
         }},
        {"TokenSet: toStringList without space", "same bad_alloc",
         [](Trial& trial) {
             const TokenSet tokens("Entity", 1);
             char text[3];
             trial.run([&] { tokens.toStringList(text, sizeof text); });
         }},
        {"TokenSet: what allocates nothing", allocatesNothing,
         [](Trial& trial) {
             std::optional<TokenSet> tokens(std::in_place, 40u);
             TokenSet other(2);
             other.set(367);
             trial.run([&] {
                 for (unsigned int token = 30; token > 0; --token)
                     tokens->set(token);
                 tokens->unset(1);
                 tokens->append(40);
                 tokens->insertAt(0, 1);
                 tokens->setAt(0, 2);
                 tokens->deleteAt(0);
                 const TokenSet& constant = *tokens;
                 char text[32];
                 other.toStringList(text, sizeof text);
                 const bool whole = constant.inSet(30) && other.inSet(367) && constant[0] == (*tokens)[0] &&
                                    !(constant == other) && text[0] == 'E';
                 tokens->clearSet();
                 tokens.reset();
                 return whole;
             });
         }},
    };
}

std::vector<Row> baseRows() {
    return {
        {"Array: realloc", "1230 bad_alloc",
         [](Trial& trial) {
             unsigned int size = 0;
             void* block = utility::Array::realloc(nullptr, &size, 4, 8);
             trial.run([&] { block = utility::Array::realloc(block, &size, 0, 8); });
             FAULTS_EXPECT(size == (trial.failed() ? 4 : 24));
             framework::Memory::StaticFree(block);
         }},
        {"Array: the base alone", allocatesNothing,
         [](Trial& trial) {
             trial.run([] {
                 utility::Array array(7);
                 array.sort();
                 array.truncate(1);
                 return array.length() + array.size();
             });
         }},
        {"UIntArray::compare, ElementAt of the short arrays, Sort", allocatesNothing,
         [](Trial& trial) {
             utility::ShortArray numbers(2);
             utility::UShortArray others(3);
             numbers.Append(1);
             others.Append(3);
             others.Append(1);
             others.Append(2);
             const unsigned int low = 1;
             const unsigned int high = 2;
             trial.run([&] {
                 others.Sort();
                 return utility::UIntArray::compare(&low, &high) < 0 && numbers.ElementAt(0) == 1 &&
                        others.ElementAt(2) == 3;
             });
         }},
    };
}

} // namespace

std::vector<Row> arrayRows() {
    std::vector<Row> rows = baseRows();
    add(rows, numberRows<utility::IntArray, int>("IntArray"));
    add(rows, numberRows<utility::UIntArray, unsigned int>("UIntArray"));
    add(rows, numberRows<utility::ShortArray, short>("ShortArray"));
    add(rows, numberRows<utility::UShortArray, unsigned short>("UShortArray"));
    add(rows, numberRows<utility::Int64Array, std::int64_t>("Int64Array"));
    add(rows, numberRows<utility::UInt64Array, unsigned long long>("UInt64Array"));
    add(rows, numberRows<utility::TokenArray, unsigned int>("TokenArray"));
    add(rows, pointerRows<utility::WWNArray, utility::WWN, makeWWN, deleteWWN>("WWNArray"));
    add(rows, pointerRows<utility::SerialNumberArray, utility::SerialNumber, makeSerialNumber, deleteSerialNumber>(
                  "SerialNumberArray"));
    add(rows, pointerRows<utility::PortAddressArray, utility::PortAddress, makePort, deletePort>("PortAddressArray"));
    add(rows, pointerRows<utility::ItemArray, framework::Item, borrowItem, giveBackItem>("ItemArray"));
    add(rows, pointerCopyRows<utility::WWNArray>("WWNArray"));
    add(rows, pointerCopyRows<utility::SerialNumberArray>("SerialNumberArray"));
    add(rows, pointerCopyRows<utility::ItemArray>("ItemArray"));
    add(rows, portRows());
    add(rows, stringRows());
    add(rows, tokenListRows<utility::TokenArray>("TokenArray"));
    add(rows, tokenListRows<utility::TokenSet>("TokenSet"));
    add(rows, tokenSetRows());
    return rows;
}

} // namespace faults
