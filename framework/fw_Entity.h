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
/// An entity allocates from its memory object, or with `Memory::StaticAlloc` if it has none. It owns its error text and
/// the pool that `setResources` creates, but not an object passed to `setMemory`. One thread at a time. Nothing is
/// thrown.
///
///     class Volume : public virtual framework::Entity { ... };
///     volume.setError("volume %s is offline", name);
///     volume.inError();   // true
class VXFW_EXPORT Entity {
public:
    /// Creates an entity without an error and without a memory object.
    Entity();
    /// Copies the pointer to the memory object that was passed to `setMemory`, but neither error state nor pool.
    Entity(const Entity& other);
    /// Does nothing: memory source and error state are not assigned.
    Entity& operator=(const Entity& other);
    /// Frees the error text and the pool, and so everything allocated from the pool.
    virtual ~Entity();

    /// Returns the token of the class name.
    virtual stringtoken getName() const {
        return strings::TOKEN_ENTITY;
    }
    /// Returns the class name, an interned text that is never freed.
    virtual const char* getNameString() const {
        return pGSEntity;
    }
    /// Writes a description of the object to `out`. Derived classes define it; this class leaves `out` unchanged.
    virtual void information(utility::PutStream& /*out*/, int /*indent*/, bool /*flag*/) const {}
    /// Returns a copy that the caller owns and deletes, or null if the class cannot be cloned. This class cannot.
    virtual Entity* clone() const {
        return nullptr;
    }
    /// Returns true if an error was set and has not been cleared.
    virtual bool inError() const {
        return m_inError != 0;
    }
    /// Returns the text of the last error, empty if there is none, never null. Valid until the error changes.
    virtual const char* ErrorMessage() const {
        return m_errorMessage;
    }
    /// Clears the error flag and text.
    virtual void ClearError();
    /// Creates a memory pool that the entity owns and allocates from. Does nothing if the entity has a memory object.
    /// If the pool cannot be allocated, the memory source does not change. Before the call, free everything allocated
    /// from the entity.
    virtual void setResources();
    /// Sets the error flag, and the text as `printf` formats it; a null `format` counts as empty. If the text cannot be
    /// allocated, it is "No memory was left for the error text".
    virtual void setError(const char* format, ...) VXFW_PRINTF(2, 3);

    /// Makes the entity allocate from `memory`, or with `Memory::StaticAlloc` if it is null. `memory` is not owned and
    /// must outlive the entity. Before the call, free everything allocated from the entity.
    void setMemory(Memory* memory);
    /// Returns `size` bytes, which the caller frees with `Free` of the same entity, or null if the allocation fails.
    void* Alloc(unsigned long size) const;
    /// Frees what `Alloc` returned; null is ignored.
    void Free(const void* piece) const;
    /// Returns a NUL-terminated copy of `text`, which the caller frees with `FreeString`, or null if `text` is null or
    /// the allocation fails.
    char* AllocString(const char* text) const;
    /// Returns a NUL-terminated copy of at most `length` bytes of `text`, which the caller frees with `FreeString`, or
    /// null if `text` is null or the allocation fails.
    char* AllocString(const char* text, unsigned int length) const;
    /// Frees what `AllocString` returned; null is ignored.
    void FreeString(const void* text) const;

    /// Logs a trace (level 3) with the caller's signature text and line. No debug switch is checked.
    void LogMethodDebug(const char* function, int line, const char* format, ...) const VXFW_PRINTF(4, 5);
    /// Logs an error (level 0) with the caller's signature text and line.
    void LogMethodError(const char* function, int line, const char* format, ...) const VXFW_PRINTF(4, 5);

protected:
    /// Does what `setError` does, with the arguments in a `va_list`; for derived classes that override it.
    void setErrorFrom(const char* format, va_list arguments) VXFW_PRINTF(2, 0);

private:
    VXFW_HIDDEN void dropErrorMessage();

    Memory* m_memory;
    FSUMemory* m_pool;
    const char* m_errorMessage;
    unsigned char m_inError;
};

} // namespace framework
