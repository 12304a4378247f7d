#pragma once

#include "fw_Export.h"

#include <cstdarg>

#include "fw_KnownStrings.h"
#include "fw_KnownTokens.h"
#include "fw_StringToken.h"

namespace utility {
class PutStream;
}

namespace framework {

class FSUMemory;
class Memory;

/// The base class of objects with a class name, an error state and a memory source. Always inherited virtually.
///
/// An entity allocates from its memory object, or from the process if it has none. It owns its error text and the pool
/// that `setResources` creates, but not an object passed to `setMemory`. One thread at a time. Nothing is thrown.
///
///     class Volume : public virtual framework::Entity { ... };
///     volume.setError("volume %s is offline", name);
///     volume.inError();   // true
class VXFW_EXPORT Entity {
public:
    Entity();
    /// Copies the pointer to the memory object that was passed to `setMemory`, but neither error state nor pool.
    Entity(const Entity& other);
    /// Does nothing: memory source and error state are not assigned.
    Entity& operator=(const Entity& other);
    virtual ~Entity();

    /// Returns the token of the class name.
    virtual stringtoken getName() const {
        return strings::TOKEN_ENTITY;
    }
    /// Returns the class name, an interned text that is never freed.
    virtual const char* getNameString() const {
        return pGSEntity;
    }
    /// Writes a description of the object. The base class does nothing.
    virtual void information(utility::PutStream& /*out*/, int /*indent*/, bool /*flag*/) const {}
    /// Returns a copy on the heap that the caller owns, or null if the class cannot be cloned, as this one cannot.
    virtual Entity* clone() const {
        return nullptr;
    }
    /// Returns true if an error was set and not cleared.
    virtual bool inError() const {
        return m_inError != 0;
    }
    /// Returns the text of the last error, empty if there is none, never null. Valid until the error changes.
    virtual const char* ErrorMessage() const {
        return m_errorMessage;
    }
    /// Clears the error flag and text.
    virtual void ClearError();
    /// Creates a memory pool that the entity owns. Does nothing if the entity has a memory object. Free what was
    /// allocated earlier first.
    virtual void setResources();
    /// Sets the error flag and text.
    virtual void setError(const char* format, ...) VXFW_PRINTF(2, 3);

    /// Allocates from `memory` from now on; null means the process. `memory` is not owned and must outlive the entity.
    /// Free what was allocated earlier first.
    void setMemory(Memory* memory);
    /// Returns `size` bytes, to be freed with `Free` of the same entity, or null if the allocation fails.
    void* Alloc(unsigned long size) const;
    /// Frees what `Alloc` returned; null is ignored.
    void Free(const void* piece) const;
    /// Returns a NUL-terminated copy of `text`, to be freed with `FreeString`, or null if `text` is null or the
    /// allocation fails.
    char* AllocString(const char* text) const;
    /// Returns a NUL-terminated copy of at most `length` bytes of `text`, or null if `text` is null or the allocation
    /// fails.
    char* AllocString(const char* text, unsigned int length) const;
    /// Frees what `AllocString` returned; null is ignored.
    void FreeString(const void* text) const;

    /// Logs a trace (type 3) tagged with the caller's signature text and line. Not gated by a switch.
    void LogMethodDebug(const char* function, int line, const char* format, ...) const VXFW_PRINTF(4, 5);
    /// Logs an error (type 0) tagged with the caller's signature text and line.
    void LogMethodError(const char* function, int line, const char* format, ...) const VXFW_PRINTF(4, 5);

protected:
    /// Implements `setError`, for derived classes.
    void setErrorFrom(const char* format, va_list arguments) VXFW_PRINTF(2, 0);

private:
    VXFW_HIDDEN void dropErrorMessage();

    Memory* m_memory;
    FSUMemory* m_pool;
    const char* m_errorMessage;
    unsigned char m_inError;
};

} // namespace framework
