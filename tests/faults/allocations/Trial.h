#pragma once

#include <functional>
#include <new>
#include <optional>
#include <string>
#include <type_traits>
#include <vector>

#include "fw_Exception.h"

namespace faults {

/// One run of a row with a given allocation failing.
///
/// The row makes what its operation needs, passes the operation to `run`, and says with FAULTS_EXPECT what has to hold
/// afterwards, when allocations succeed again. It removes everything that it creates. A row must not depend on which
/// allocation fails, only on `failed()`.
class Trial {
public:
    /// Runs `operation` with the failing allocation of this trial. What it throws ends here. What it returns is the
    /// outcome, as is the code of a `framework::Exception` and `std::bad_alloc`.
    template<typename Operation>
    void run(Operation&& operation);

    /// Whether the outcome differs from the one without a failing allocation.
    bool failed() const;

    void expect(bool holds, const char* condition, int line);

private:
    friend class Runner;

    /// "1230", "bad_alloc", "true", "null", "-1"; "done" for an operation that returns nothing.
    struct Outcome {
        char text[32];
    };

    void begin();
    void end();
    void setOutcome(const char* text);
    void setOutcome(long long number);

    Outcome m_normal = {};
    Outcome m_outcome = {};
    bool m_isNormalKnown = false;
    bool m_ran = false;
    bool m_threw = false;
};

/// An operation, and what may become of it when an allocation fails.
struct Row {
    std::string name; ///< class and operation
    /// The outcomes with a failing allocation, separated by blanks; each has to occur. "same" is the outcome without
    /// one. allocatesNothing: the operation allocates nothing and throws nothing, and is not false.
    const char* onFailure;
    std::function<void(Trial& trial)> body;
    /// Why pieces stay allocated after the row, such as a text that the process keeps for good; null when none does.
    const char* keeps = nullptr;
    /// Why the count of the static services is wrong after the row, though nothing stays allocated; null when it is
    /// not.
    const char* miscounts = nullptr;
};

constexpr const char* allocatesNothing = nullptr;

#define FAULTS_EXPECT(condition) trial.expect((condition), #condition, __LINE__)

template<typename Operation>
void Trial::run(Operation&& operation) {
    m_threw = true;
    begin();
    try {
        using Result = decltype(operation());
        if constexpr (std::is_void_v<Result>) {
            operation();
            end();
            m_threw = false;
            setOutcome("done");
        } else {
            const Result result = operation();
            end();
            m_threw = false;
            if constexpr (std::is_same_v<Result, bool>)
                setOutcome(result ? "true" : "false");
            else if constexpr (std::is_pointer_v<Result>)
                setOutcome(result != nullptr ? "pointer" : "null");
            else
                setOutcome(static_cast<long long>(result));
        }
    } catch (framework::Exception* failure) {
        end();
        setOutcome(static_cast<long long>(failure->code()));
        delete failure;
    } catch (const std::bad_alloc&) {
        end();
        setOutcome("bad_alloc");
    }
}

/// Runs the constructor of a `T` with `arguments`, and its destructor where the object came about.
template<typename T, typename... Arguments>
void construct(Trial& trial, Arguments&&... arguments) {
    std::optional<T> object;
    trial.run([&] { object.emplace(arguments...); });
    trial.expect(trial.failed() || object.has_value(), "the object was made", __LINE__);
}

/// Adds the rows of `more` to `rows`.
inline void add(std::vector<Row>& rows, const std::vector<Row>& more) {
    rows.insert(rows.end(), more.begin(), more.end());
}

// The tables, one for each group of classes.
std::vector<Row> arrayRows();
std::vector<Row> containerRows();
std::vector<Row> streamRows();
std::vector<Row> textRows();
std::vector<Row> environmentRows();
std::vector<Row> frameworkRows();
std::vector<Row> diagnosticRows();

} // namespace faults
