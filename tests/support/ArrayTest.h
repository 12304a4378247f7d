#pragma once

#include <limits>
#include <string>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>

#include "PointerText.h"
#include "RandomRun.h"

namespace test {

/// Which operations of an array trace their arguments when they are called.
enum class TracedArguments { none, ofAppendAndInsertAt, ofEveryChange };

/// The traits of a class for the suites of the typed arrays. Derive from it, change what differs, and add
///
/// - `ArrayType`: the class, or `Unowned` of it if the class deletes its elements
/// - `Value`: the type of an element
/// - `className` and `valueName`: the class without its namespace, and the type of an element, as in signature texts
/// - `traceSwitch`: the number of the debug switch
/// - for numbers, `greatestText` and `leastText`: the extreme values as traces show them
/// - for pointers, `element(index)`: the address of an object, a different one for each index below 50
struct ArrayTraits {
    static constexpr TracedArguments tracedArguments = TracedArguments::none;
    /// Whether InsertAt traces "setting 42 = 1" for the value 42 at index 1, rather than "setting 1 = 42".
    static constexpr bool isValueTracedFirst = false;
    /// Whether sort() sorts; it does nothing in the other classes.
    static constexpr bool isSorted = false;
};

/// An array that does not delete its elements.
template<typename ArrayType>
class Unowned : public ArrayType {
public:
    using ArrayType::ArrayType;
    Unowned(const Unowned&) = default;
    ~Unowned() override {
        this->truncate(0);
    }
};

/// The fixture of the suites: different elements by number, and the expected texts.
template<typename Traits>
class ArrayTest : public testing::Test {
protected:
    using Value = typename Traits::Value;
    using Lines = std::vector<std::string>;

    // Creates the objects that pointers point to before a test counts allocations or makes them fail.
    ArrayTest() {
        item(1);
    }

    /// A different element for each number up to 50. The first of pointers is null; the first two of numbers are the
    /// greatest and the least one.
    static Value item(unsigned int number) {
        if constexpr (std::is_pointer_v<Value>) {
            return number == 0 ? nullptr : Traits::element(number - 1);
        } else {
            if (number > 1)
                return static_cast<Value>(number);
            return number == 0 ? std::numeric_limits<Value>::max() : std::numeric_limits<Value>::min();
        }
    }

    /// The element as traces show it.
    static std::string text(unsigned int number) {
        if constexpr (std::is_pointer_v<Value>) {
            return number == 0 ? "(nil)" : pointerText(item(number));
        } else {
            if (number > 1)
                return std::to_string(number);
            return number == 0 ? Traits::greatestText : Traits::leastText;
        }
    }

    static Value randomItem(RandomRun& random) {
        if constexpr (std::is_pointer_v<Value>)
            return item(random.below(6));
        else
            return static_cast<Value>(random.bits());
    }

    /// Appends the first `count` elements.
    static void fill(typename Traits::ArrayType& array, unsigned int count) {
        for (unsigned int number = 0; number < count; ++number)
            array.Append(item(number));
    }

    /// The trace of Append for the element `number`.
    Lines appending(unsigned int number, unsigned int index) const {
        Lines lines;
        if (Traits::tracedArguments != TracedArguments::none)
            lines.push_back("4 " + m_append + ": " + text(number));
        lines.push_back("3 " + m_append + ": Appending [" + text(number) + "] at " + std::to_string(index));
        return lines;
    }

    /// The first trace of InsertAt.
    std::string insertAtEntry(unsigned int index, unsigned int number) const {
        const bool isTraced = Traits::tracedArguments != TracedArguments::none;
        return "4 " + m_insertAt + ": " + (isTraced ? std::to_string(index) + ", " + text(number) : "Enter");
    }

    const std::string m_file = std::string("ut_") + Traits::className;
    const std::string m_scope = std::string("utility::") + Traits::className + "::";
    const std::string m_valueName = Traits::valueName;
    const std::string m_append = "void " + m_scope + "Append(" + m_valueName + ")";
    const std::string m_insertAt = "void " + m_scope + "InsertAt(unsigned int, " + m_valueName + ")";
    const std::string m_setAt = "void " + m_scope + "SetAt(unsigned int, " + m_valueName + ")";
    const std::string m_deleteAt = "void " + m_scope + "DeleteAt(unsigned int)";
    const std::string m_at = m_valueName + "& " + m_scope + "operator[](unsigned int)";
    const std::string m_atConst =
        (std::is_pointer_v<Value> ? m_valueName + " const& " : "const " + m_valueName + "& ") + m_scope +
        "operator[](unsigned int) const";
    const std::string m_realloc = "static void* utility::Array::realloc(void*, unsigned int*, unsigned int, size_t)";
};

} // namespace test
