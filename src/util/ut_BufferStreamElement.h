#pragma once

#include "ut_Export.h"

#include <cstdint>

#include "ut_BufferStream.h"

namespace utility {

/// A stream that can be chained: for pools (`BufferStreamList`) and queues (`BufferStreamQueue`).
///
/// A chain owns nothing; who holds its first element owns the elements. The three owner fields are free for the
/// element's owner and are never read here. One thread at a time.
///
///     utility::BufferStreamElement* chain = new utility::BufferStreamElement(64, nullptr);
///     chain = chain->Insert(new utility::BufferStreamElement(64, nullptr));   // two elements
class VXUT_EXPORT BufferStreamElement : public BufferStream {
    BufferStreamElement* m_next;

public:
    uint64_t m_userValue;
    uint32_t m_userWord1;
    uint32_t m_userWord2;

    /// Own storage of `size` bytes, in front of `next` (which may be null). Throws code 1238 when there is no storage.
    BufferStreamElement(int size, BufferStreamElement* next);
    ~BufferStreamElement() override;

    /// The element behind this one, or null.
    BufferStreamElement* Next() const {
        return m_next;
    }
    /// Puts `e` behind the last element of this chain; what was chained behind `e` is cut off. Null, and an element
    /// that is in the chain already, change nothing.
    void Append(BufferStreamElement* e);
    /// Puts `e` in front of this element and returns the new first one; what was chained behind `e` is cut off. Null,
    /// this element, and one that is in the chain already change nothing and return this one.
    BufferStreamElement* Insert(BufferStreamElement* e);
    /// Takes `e` out of the chain that begins here and returns the new first element, null for an empty chain. Null,
    /// and an element that is not in the chain, change nothing.
    BufferStreamElement* Remove(BufferStreamElement* e);

private:
    friend class BufferStreamQueue;

    bool leadsTo(const BufferStreamElement* e) const;
};

} // namespace utility
