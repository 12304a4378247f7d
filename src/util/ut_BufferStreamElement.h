#pragma once

#include "ut_Export.h"

#include <cstdint>

#include "ut_BufferStream.h"

namespace utility {

/// A stream that can be linked into a chain, for pools (`BufferStreamList`) and queues (`BufferStreamQueue`).
///
/// An element does not own the elements it is linked to: the holder of the first element owns and deletes all of them.
/// The three user fields are for the element's owner; the library only initializes and clears them. One thread at a
/// time.
///
///     utility::BufferStreamElement* chain = new utility::BufferStreamElement(64, nullptr);
///     chain = chain->Insert(new utility::BufferStreamElement(64, nullptr));   // two elements
class VXUT_EXPORT BufferStreamElement : public BufferStream {
    BufferStreamElement* m_next;

public:
    /// User field; 0 at construction, and set to 0 by the destructor.
    uint64_t m_userValue;
    /// User field; 0 at construction.
    uint32_t m_userWord1;
    /// User field; 0 at construction.
    uint32_t m_userWord2;

    /// Allocates storage of `size` bytes and makes `next`, which may be null, the element after this one. Throws code
    /// 1238 if the allocation fails or `size` is negative.
    BufferStreamElement(int size, BufferStreamElement* next);
    /// Does not delete the elements it is linked to.
    ~BufferStreamElement() override;

    /// Returns the element after this one, or null.
    BufferStreamElement* Next() const {
        return m_next;
    }
    /// Links `e` after the last element of this chain; the elements after `e` are unlinked from it. Does nothing if `e`
    /// is null or already in the chain.
    void Append(BufferStreamElement* e);
    /// Links `e` before this element and returns `e`, the new first element; the elements after `e` are unlinked from
    /// it. Does nothing and returns this element if `e` is null or already in the chain.
    BufferStreamElement* Insert(BufferStreamElement* e);
    /// Unlinks `e` from the chain that starts with this element. Returns the new first element, or null if the chain is
    /// empty then. Does nothing and returns this element if `e` is null or not in the chain.
    BufferStreamElement* Remove(BufferStreamElement* e);

private:
    friend class BufferStreamList;
    friend class BufferStreamQueue;

    bool leadsTo(const BufferStreamElement* e) const;
    /// Links `e` after this element, in place of the element after it.
    VXUT_HIDDEN void linkTo(BufferStreamElement* e);
    /// Counts a link to this element that was removed.
    VXUT_HIDDEN void linkRemoved();
    /// Unlinks this element, the first of a chain, and returns the next one, or null. For owners of a chain: unlike
    /// `Remove`, it changes the next element, which must exist.
    VXUT_HIDDEN BufferStreamElement* takeFirst();
};

} // namespace utility
