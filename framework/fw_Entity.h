#pragma once

#include "fw_Export.h"

#include <cstdarg>

#include "fw_KnownStrings.h"
#include "fw_StringToken.h"

namespace utility {
class PutStream;
}

namespace framework {

class FSUMemory;
class Memory;

/// The base of everything that has a name, an error state and memory of its own. Always inherited virtually.
///
/// An entity takes its memory from its memory object, or from the process when it has none; it owns its error text and
/// the pool that `setResources` makes, never an object given to `setMemory`. One thread at a time. Nothing is thrown.
///
///     class Volume : public virtual framework::Entity { ... };
///     volume.setError("volume %s is offline", name);
///     volume.inError();   // true
class VXFW_EXPORT Entity {
public:
    Entity();
    /// A copy takes over the memory object given to `setMemory`, but neither error state nor pool.
    Entity(const Entity& other);
    /// Changes nothing: memory and error state belong to each entity.
    Entity& operator=(const Entity& other);
    virtual ~Entity();

    /// The token of the class name.
    virtual stringtoken getName() const {
        return 367;
    }
    /// The class name, interned.
    virtual const char* getNameString() const {
        return pGSEntity;
    }
    /// Writes what there is to know; nothing for a plain entity.
    virtual void information(utility::PutStream& /*out*/, int /*indent*/, bool /*flag*/) const {}
    /// A copy on the heap that the caller owns, or null for what cannot be cloned.
    virtual Entity* clone() const {
        return nullptr;
    }
    /// Whether an error was set and not cleared.
    virtual bool inError() const {
        return m_inError != 0;
    }
    /// The text of the last error; empty when there is none, never null. Valid until the next change.
    virtual const char* ErrorMessage() const {
        return m_errorMessage;
    }
    /// Clears the error flag and text.
    virtual void ClearError();
    /// Gives the entity a pool of its own, which lives as long as the entity. Does nothing when it has memory already.
    /// What was taken before must be freed before.
    virtual void setResources();
    /// Sets the error flag and text.
    virtual void setError(const char* format, ...) VXFW_PRINTF(2, 3);

    /// Makes `memory` the source of what the entity takes from now on; null means the process. Kept, not owned: it must
    /// outlive the entity, and what was taken before must be freed before.
    void setMemory(Memory* memory);
    /// `size` bytes that the entity's owner frees with `Free`, or null.
    void* Alloc(unsigned long size) const;
    /// Frees what `Alloc` gave; null does nothing.
    void Free(const void* piece) const;
    /// A terminated copy of `text`, freed with `FreeString`; null for a null text or a failure.
    char* AllocString(const char* text) const;
    /// A terminated copy of the first `length` characters of `text`, or of all when it is shorter.
    /// Null for a null text or a failure.
    char* AllocString(const char* text, unsigned int length) const;
    /// Frees what `AllocString` gave; null does nothing.
    void FreeString(const void* text) const;

    /// Logs a trace (type 3) tagged with the caller's signature text and line. Not gated by a switch.
    void LogMethodDebug(const char* function, int line, const char* format, ...) const VXFW_PRINTF(4, 5);
    /// Logs an error (type 0) tagged with the caller's signature text and line.
    void LogMethodError(const char* function, int line, const char* format, ...) const VXFW_PRINTF(4, 5);

protected:
    /// What `setError` does, for classes that override it.
    void setErrorFrom(const char* format, va_list arguments) VXFW_PRINTF(2, 0);

private:
    void dropErrorMessage();

    Memory* m_memory;
    FSUMemory* m_pool;
    const char* m_errorMessage;
    unsigned char m_inError;
};

} // namespace framework
