#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace faults {

/// Finds out which exported operations of the libraries run: a breakpoint at the first instruction of each is removed
/// when it is hit. The libraries are used as they are shipped. One object in a process.
class EnteredOperations {
public:
    /// Watches the functions that the file `list` names, one line each: the library and the symbol. Those in
    /// `withoutRow` are not watched, and missing.
    explicit EnteredOperations(const char* list);
    EnteredOperations(const EnteredOperations&) = delete;
    EnteredOperations& operator=(const EnteredOperations&) = delete;

    /// Sets breakpoints at all operations that were not entered yet.
    void watch();
    /// Removes all breakpoints.
    void pause();

    /// How many operations there are; those that differ in their symbol alone, such as the constructors of one object
    /// as a whole and as a base, are one.
    std::size_t count() const;
    /// The operations that were never entered, by their C++ names.
    std::vector<std::string> missing() const;
    /// Symbols of the list that the libraries do not have.
    const std::vector<std::string>& unknown() const {
        return m_unknown;
    }

private:
    std::vector<std::string> m_unknown;
};

} // namespace faults
