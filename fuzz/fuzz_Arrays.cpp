// Compares arrays and sets with simple models. The first byte chooses the class.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <set>
#include <string>
#include <vector>

#include "Bytes.h"
#include "fw_Item.h"
#include "fw_Memory.h"
#include "fw_StringRepository.h"
#include "ut_Int64Array.h"
#include "ut_IntArray.h"
#include "ut_ItemArray.h"
#include "ut_ShortArray.h"
#include "ut_StringArray.h"
#include "ut_TokenArray.h"
#include "ut_TokenSet.h"
#include "ut_UInt64Array.h"
#include "ut_UIntArray.h"
#include "ut_UShortArray.h"

namespace {

using fuzz::Bytes;
using fuzz::codeOf;
using fuzz::require;

template<typename Value>
using Values = std::vector<Value>;

template<typename ArrayType, typename Value>
void requireEqual(const ArrayType& array, const Values<Value>& model) {
    require(array.length() == model.size());
    for (unsigned int i = 0; i < array.length(); ++i)
        require(array[i] == model[i]);
}

// Runs one operation that every array has on the array and its model; `index` may be out of range.
template<typename ArrayType, typename Value>
void takeStep(unsigned int kind, unsigned int index, Value value, ArrayType* array, Values<Value>* model) {
    const bool isInside = index < model->size();
    const auto place = model->begin() + static_cast<std::ptrdiff_t>(std::min<std::size_t>(index, model->size()));
    unsigned int code = 0;
    bool isAllowed = true;
    switch (kind) {
    case 0:
        isAllowed = index <= model->size();
        code = codeOf([&] { array->InsertAt(index, value); });
        if (isAllowed)
            model->insert(place, value);
        break;
    case 1:
        isAllowed = isInside;
        code = codeOf([&] { array->SetAt(index, value); });
        if (isAllowed)
            *place = value;
        break;
    case 2:
        isAllowed = isInside;
        code = codeOf([&] { array->DeleteAt(index); });
        if (isAllowed)
            model->erase(place);
        break;
    case 3:
        isAllowed = isInside;
        code = codeOf([&] { (*array)[index] = value; });
        if (isAllowed)
            *place = value;
        break;
    case 4:
        array->truncate(index);
        model->resize(std::min<std::size_t>(index, model->size()));
        break;
    default:
        array->Append(value);
        model->push_back(value);
    }
    require(code == (isAllowed ? 0 : 1229));
}

template<typename ArrayType>
void sort(ArrayType*, void*) {}

void sort(utility::UShortArray* array, Values<unsigned short>* model) {
    array->Sort();
    std::sort(model->begin(), model->end());
}

void sort(utility::UIntArray* array, Values<unsigned int>* model) {
    array->sort();
    std::sort(model->begin(), model->end());
}

template<typename ArrayType, typename Value>
void runNumbers(Bytes& in) {
    const unsigned int capacity = in.below(30);
    unsigned int expectedSize = capacity == 0 ? 20 : capacity;
    ArrayType array(capacity);
    Values<Value> model;
    while (!in.isAtEnd()) {
        const unsigned int kind = in.below(9);
        if (kind == 8) {
            sort(&array, &model);
        } else {
            takeStep(kind, in.below(40), in.number<Value>(), &array, &model);
        }
        expectedSize += model.size() > expectedSize ? 20 : 0;
        require(array.size() == expectedSize);
        requireEqual(array, model);
    }
    const ArrayType copy(array);
    requireEqual(copy, model);
    require(copy.size() == array.size());
}

void requireEqual(const utility::StringArray& array, const Values<std::string>& model) {
    require(array.length() == model.size());
    for (unsigned int i = 0; i < array.length(); ++i)
        require(array.ElementAt(i) == model[i]);
    require(array.ElementAt(array.length()) == nullptr);
}

void runTexts(Bytes& in) {
    unsigned int expectedSize = 20;
    utility::StringArray array(0);
    Values<std::string> model;
    while (!in.isAtEnd()) {
        const unsigned int kind = in.below(8);
        const unsigned int index = in.below(40);
        std::string text = in.text(20);
        if (kind == 3) {
            array.Append(text.c_str(), index);
            model.push_back(text.substr(0, index));
        } else if (kind == 4) {
            if (index < 5) {
                array.DeleteAll();
                model.clear();
            }
        } else if (kind == 7 && index < model.size()) {
            // The new text is one of the array's own.
            array.Append(array[index]);
            model.push_back(std::string(model[index]));
        } else {
            // The array copies the text, and so does the model.
            const bool isAllowed = kind >= 5 || (kind == 0 ? index <= model.size() : index < model.size());
            const unsigned int code = codeOf([&] {
                if (kind == 0)
                    array.InsertAt(index, text.c_str());
                else if (kind == 1)
                    array.SetAt(index, text.c_str());
                else if (kind == 2)
                    array.DeleteAt(index);
                else
                    array.Append(text.c_str());
            });
            require(code == (isAllowed ? 0 : 1229));
            const auto place = model.begin() + static_cast<std::ptrdiff_t>(std::min<std::size_t>(index, model.size()));
            if (kind >= 5)
                model.push_back(text);
            else if (isAllowed && kind == 0)
                model.insert(place, text);
            else if (isAllowed && kind == 1)
                *place = text;
            else if (isAllowed)
                model.erase(place);
        }
        expectedSize *= model.size() > expectedSize ? 2 : 1;
        require(array.size() == expectedSize);
        requireEqual(array, model);
    }
    requireEqual(utility::StringArray(array), model);
}

void runItems(Bytes& in) {
    framework::Item items[8];
    utility::ItemArray array(in.below(30));
    Values<framework::Item*> model;
    // Limit the length: an array appended to itself doubles, and long arrays leave time for too few inputs.
    while (!in.isAtEnd() && model.size() < 5000) {
        const unsigned int kind = in.below(9);
        framework::Item* const item = &items[in.below(8)];
        if (kind == 8) {
            array.Append(array);
            model.reserve(2 * model.size());
            model.insert(model.end(), model.begin(), model.end());
        } else {
            takeStep(kind, in.below(40), item, &array, &model);
        }
        const auto found = std::find(model.begin(), model.end(), item);
        require(array.Find(item) ==
                (found == model.end() ? 0xFFFFFFFF : static_cast<unsigned int>(found - model.begin())));
        requireEqual(array, model);
    }
}

void requireEqual(const utility::TokenSet& set, const std::set<unsigned int>& model) {
    requireEqual(set, Values<unsigned int>(model.begin(), model.end()));
}

void runSets(Bytes& in) {
    utility::TokenSet sets[] = {utility::TokenSet(0), utility::TokenSet(1)};
    std::set<unsigned int> models[2];
    while (!in.isAtEnd()) {
        const unsigned int chosen = in.below(2);
        utility::TokenSet& set = sets[chosen];
        std::set<unsigned int>& model = models[chosen];
        const unsigned int token = in.below(60) + 1;
        switch (in.below(8)) {
        case 0:
        case 1:
            set.unset(token);
            // Only the smallest element can be removed.
            if (!model.empty() && *model.begin() == token)
                model.erase(model.begin());
            break;
        case 2:
            set.mergeSet(sets[1 - chosen]);
            models[1 - chosen].insert(model.begin(), model.end());
            break;
        case 3:
            if (token < 5) {
                set.clearSet();
                model.clear();
            }
            break;
        default:
            set.set(token);
            model.insert(token);
        }
        require(set.inSet(token) == (model.count(token) > 0));
        require((sets[0] == sets[1]) == (models[0] == models[1]));
        requireEqual(sets[0], models[0]);
        requireEqual(sets[1], models[1]);
    }
}

// Returns the non-empty pieces between commas, at most 50.
Values<std::string> namesIn(const std::string& list) {
    Values<std::string> names;
    for (std::size_t at = 0; at < list.size() && names.size() < 50;) {
        const std::size_t end = std::min(list.find(',', at), list.size());
        if (end > at)
            names.push_back(list.substr(at, end - at));
        at = end + 1;
    }
    return names;
}

void runNames(Bytes& in) {
    // Names are never freed, so use only a few.
    std::string list = in.restText();
    for (char& c : list)
        c = ",,aabcde"[c & 7];
    Values<std::string> names = namesIn(list);
    for (std::string& name : names) {
        if (name.size() > 3)
            return;
    }
    utility::TokenArray array(list.c_str(), 0);
    utility::TokenSet set(list.c_str(), 0);
    require(array.length() == names.size());
    std::set<unsigned int> tokens;
    for (unsigned int i = 0; i < array.length(); ++i) {
        require(strings::StringRepository::toString(array[i]) == names[i]);
        tokens.insert(array[i]);
    }
    requireEqual(set, tokens);
    if (tokens.empty())
        return;
    std::string expected;
    for (const unsigned int token : tokens)
        expected += strings::StringRepository::toString(token);
    std::vector<char> text(expected.size() + 2);
    set.toStringList(text.data(), static_cast<unsigned int>(text.size()));
    require(text.data() == expected + ",");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const fuzz::SilentLog silence;
    const long outstanding = framework::Memory::staticOutstanding();
    Bytes in(data, size);
    switch (in.below(11)) {
    case 0:
        runNumbers<utility::ShortArray, short>(in);
        break;
    case 1:
        runNumbers<utility::UShortArray, unsigned short>(in);
        break;
    case 2:
        runNumbers<utility::IntArray, int>(in);
        break;
    case 3:
        runNumbers<utility::UIntArray, unsigned int>(in);
        break;
    case 4:
        runNumbers<utility::Int64Array, std::int64_t>(in);
        break;
    case 5:
        runNumbers<utility::UInt64Array, unsigned long long>(in);
        break;
    case 6:
        runNumbers<utility::TokenArray, stringtoken>(in);
        break;
    case 7:
        runTexts(in);
        break;
    case 8:
        runItems(in);
        break;
    case 9:
        runSets(in);
        break;
    default:
        runNames(in);
    }
    require(framework::Memory::staticOutstanding() == outstanding);
    return 0;
}
