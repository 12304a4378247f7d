// Compares the directories with simple models. The first byte chooses the class.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "Bytes.h"
#include "fw_Item.h"
#include "fw_Memory.h"
#include "fw_StableStringRepository.h"
#include "ut_BufferStream.h"
#include "ut_FastSortedStringDirectory.h"
#include "ut_FastStringDirectory.h"
#include "ut_ItemDirectory.h"
#include "ut_StringDirectory.h"

namespace {

using fuzz::Bytes;
using fuzz::require;

typedef std::vector<std::string> Texts;

// The text of each slot; empty for a free slot.
typedef std::vector<std::unique_ptr<std::string>> Slots;

void requireEqual(utility::StringDirectory& directory, const Texts& model) {
    require(directory.NumElements() == static_cast<int>(model.size()));
    std::string all;
    for (std::size_t i = 0; i < model.size(); ++i) {
        require(directory.ElementAt(static_cast<int>(i)) == model[i]);
        all += model[i] + '\n';
    }
    require(directory.ElementAt(-1) == nullptr && directory.ElementAt(directory.NumElements()) == nullptr);
    utility::BufferStream out(static_cast<int>(all.size()) + 1);
    directory.ToBuffer(out);
    require(std::string(out.pTail(), static_cast<std::size_t>(out.ReadAvailable())) == all);
}

// Checks the result of a look-up of `text`: `element` counts only if `isFound`.
void requireFound(const char* element, bool isFound, const std::string& text) {
    require(isFound ? element != nullptr && element == text : element == nullptr);
}

// `StringDirectory::Find` returns the first text that differs from the one sought.
void runPlain(Bytes& in) {
    utility::StringDirectory directory(static_cast<int>(in.below(30)));
    Texts model;
    while (!in.isAtEnd()) {
        const bool adds = in.below(3) != 0;
        const std::string text = in.text(5);
        if (adds) {
            require(directory.Add(text.c_str()) == static_cast<int>(model.size()));
            model.push_back(text);
        }
        const auto found = std::find_if(model.begin(), model.end(), [&](const std::string& t) { return t != text; });
        const bool isFound = found != model.end();
        require(directory.Find(text.c_str()) == (isFound ? static_cast<int>(found - model.begin()) : -1));
        requireFound(directory.Lookup(text.c_str()), isFound, isFound ? *found : "");
        if (!adds) {
            directory.Delete(text.c_str());
            if (isFound)
                model.erase(found);
        }
        requireEqual(directory, model);
    }
}

void runSorted(Bytes& in) {
    utility::FastSortedStringDirectory directory(static_cast<int>(in.below(30)));
    Texts model;
    while (!in.isAtEnd()) {
        const bool adds = in.below(3) != 0;
        const std::string text = in.text(5);
        if (adds) {
            const auto place = std::upper_bound(model.begin(), model.end(), text);
            require(directory.Add(text.c_str()) == static_cast<int>(place - model.begin()));
            model.insert(place, text);
        } else {
            const auto first = std::lower_bound(model.begin(), model.end(), text);
            directory.Delete(text.c_str());
            if (first != model.end() && *first == text)
                model.erase(first);
        }
        const int found = directory.Find(text.c_str());
        const bool isPresent = std::binary_search(model.begin(), model.end(), text);
        require((found >= 0) == isPresent && (found < 0 || model[static_cast<std::size_t>(found)] == text));
        requireFound(directory.Lookup(text.c_str()), isPresent, text);
        requireEqual(directory, model);
    }
}

void requireEqual(utility::FastStringDirectory& directory, const Slots& model) {
    require(directory.NumElements() == static_cast<int>(model.size()));
    for (std::size_t i = 0; i < model.size(); ++i) {
        const char* const element = directory.ElementAt(static_cast<int>(i));
        requireFound(element, model[i] != nullptr, model[i] != nullptr ? *model[i] : "");
    }
}

bool isIn(const Slots& slots, const std::string& text) {
    return std::any_of(slots.begin(), slots.end(),
                       [&](const std::unique_ptr<std::string>& slot) { return slot != nullptr && *slot == text; });
}

void runSlots(Bytes& in) {
    utility::FastStringDirectory directory(static_cast<int>(in.below(30)));
    Slots model;
    std::vector<std::size_t> freeSlots;
    while (!in.isAtEnd()) {
        const bool adds = in.below(3) != 0;
        const std::string text = in.text(5);
        if (adds) {
            // The slot freed last is reused first.
            std::size_t slot = model.size();
            if (freeSlots.empty()) {
                model.emplace_back();
            } else {
                slot = freeSlots.back();
                freeSlots.pop_back();
            }
            model[slot].reset(new std::string(text));
            require(directory.Add(text.c_str()) == static_cast<int>(slot));
        } else {
            // Any of several equal texts may be removed.
            const bool isPresent = isIn(model, text);
            directory.Delete(text.c_str());
            const std::size_t before = freeSlots.size();
            for (std::size_t i = 0; i < model.size(); ++i) {
                if (model[i] == nullptr || directory.ElementAt(static_cast<int>(i)) != nullptr)
                    continue;
                require(*model[i] == text);
                model[i].reset();
                freeSlots.push_back(i);
            }
            require(freeSlots.size() == before + (isPresent ? 1 : 0));
        }
        const int found = directory.Find(text.c_str());
        require((found >= 0) == isIn(model, text));
        require(found < 0 || directory.ElementAt(found) == text);
        requireEqual(directory, model);
    }
}

// Returns an item with one of a few names.
class NamedItem : public framework::Item {
public:
    void setNumber(unsigned int number) {
        // Names with equal and different first bytes, an empty name, and a non-ASCII name.
        static const char* const names[] = {"", "a", "aa", "ab", "b", "ba", "\xC3\xA9", "\xFF", "z", "zz"};
        m_name = names[number];
    }
    stringtoken getName() const override {
        return strings::GS.toToken(m_name);
    }
    const char* getNameString() const override {
        return m_name;
    }

private:
    const char* m_name = "";
};

typedef std::vector<NamedItem*> Items;

std::string nameOf(const framework::Item* item) {
    return item->getNameString();
}

void requireEqual(const utility::ItemDirectory& directory, const Items& model) {
    require(directory.length() == model.size());
    std::vector<std::string> names;
    for (const NamedItem* item : model)
        names.push_back(nameOf(item));
    std::sort(names.begin(), names.end());
    for (unsigned int i = 0; i < model.size(); ++i)
        require(nameOf(directory.getSorted(i)) == names[i]);
    require(directory.getSorted(directory.length()) == nullptr);
}

void runItems(Bytes& in) {
    NamedItem items[24];
    utility::ItemDirectory directory(in.below(30));
    Items model;
    for (unsigned int i = 0; i < 24; ++i)
        items[i].setNumber(i % 10);
    while (!in.isAtEnd()) {
        const unsigned int kind = in.below(8);
        NamedItem& item = items[in.below(24)];
        const stringtoken name = item.getName();
        const int place = directory.find(name);
        const bool isNew = std::find(model.begin(), model.end(), &item) == model.end();
        if (kind < 5) {
            if (isNew) {
                require(directory.add(&item) == static_cast<int>(model.size()));
                model.push_back(&item);
            }
        } else if (kind == 5) {
            if (isNew) {
                directory.replace(name, &item);
                if (place >= 0)
                    model[static_cast<std::size_t>(place)] = &item;
            }
        } else if (kind == 6) {
            const Items before = model;
            directory.remove(name);
            // Any of several items with equal names may be removed.
            model.erase(std::remove_if(model.begin(), model.end(),
                                       [&](NamedItem* other) {
                                           for (unsigned int i = 0; i < directory.length(); ++i) {
                                               if (directory.getSorted(i) == other)
                                                   return false;
                                           }
                                           require(nameOf(other) == nameOf(&item));
                                           return true;
                                       }),
                        model.end());
            require(model.size() + (place >= 0 ? 1 : 0) == before.size());
        } else if (in.below(8) == 0) {
            directory.removeAll();
            model.clear();
        }
        const int found = directory.find(name);
        const bool isPresent = std::any_of(model.begin(), model.end(),
                                           [&](const NamedItem* other) { return nameOf(other) == nameOf(&item); });
        require((found >= 0) == isPresent);
        require(directory.get(name) == (found >= 0 ? model[static_cast<std::size_t>(found)] : nullptr));
        require(found < 0 || nameOf(directory.get(name)) == nameOf(&item));
        requireEqual(directory, model);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const fuzz::SilentLog silence;
    const long outstanding = framework::Memory::staticOutstanding();
    Bytes in(data, size);
    switch (in.below(4)) {
    case 0:
        runPlain(in);
        break;
    case 1:
        runSorted(in);
        break;
    case 2:
        runSlots(in);
        break;
    default:
        runItems(in);
    }
    require(framework::Memory::staticOutstanding() == outstanding);
    return 0;
}
