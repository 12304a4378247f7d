#pragma once

#include <cstddef>

#include "console_Command.h"

namespace console {

/// The commands about one subject, as an array that exists as long as the program.
///
///     for (const Command& command : fileCommands) show(command.name);
class CommandGroup {
public:
    template<std::size_t Count>
    constexpr CommandGroup(const char* title, const Command (&commands)[Count])
        : m_title(title), m_begin(commands), m_end(commands + Count) {}

    constexpr const char* title() const {
        return m_title;
    }
    constexpr const Command* begin() const {
        return m_begin;
    }
    constexpr const Command* end() const {
        return m_end;
    }

private:
    const char* m_title;
    const Command* m_begin;
    const Command* m_end;
};

extern const CommandGroup generalCommands;
extern const CommandGroup fileCommands;
extern const CommandGroup textCommands;
extern const CommandGroup systemCommands;
extern const CommandGroup machineCommands;
extern const CommandGroup pathCommands;
extern const CommandGroup userCommands;

} // namespace console
