#include "ut_PortAddressArray.h"

#include <cstddef>
#include <new>

#include "fw_KnownStrings.h"
#include "internal/ut_Failure.h"
#include "internal/ut_SlotMoves.h"
#include "internal/ut_Trace.h"
#include "ut_PortAddress.h"
#include "ut_PutStream.h"

namespace utility {

namespace {

constexpr std::size_t slotWidth = sizeof(void*);
constexpr unsigned int notFound = 0xFFFFFFFF;

void deleteAddress(PortAddress* address) {
    // Safe although the destructor of `PortAddress` is not virtual: every subclass is trivially destructible, and the
    // class's own operator delete does not use the size.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdelete-non-virtual-dtor"
    delete address;
#pragma GCC diagnostic pop
}

} // namespace

PortAddressArray::PortAddressArray(unsigned int capacity) : Array(capacity) {
    allocateBlock(capacity, slotWidth);
}

// Delegates to the other constructor, so that the destructor releases the clones if a later clone fails.
PortAddressArray::PortAddressArray(const PortAddressArray& other) : PortAddressArray(other.size()) {
    for (; m_length < other.m_length; ++m_length) {
        const PortAddress* const address = other.slots()[m_length];
        slots()[m_length] = address != nullptr ? address->clone() : nullptr;
    }
}

PortAddressArray& PortAddressArray::operator=(const PortAddressArray& other) {
    if (this == &other)
        return *this;
    PortAddressArray clones(other);
    DeleteAll();
    ::operator delete(m_block);
    m_block = clones.m_block;
    m_size = clones.m_size;
    m_length = clones.m_length;
    clones.m_block = nullptr;
    clones.m_length = 0;
    return *this;
}

PortAddressArray::~PortAddressArray() {
    DeleteAll();
    freeBlock();
}

void PortAddressArray::failIndex(const char* function) {
    VXUT_THROW_AS(function, FAILURE_INDEX, "");
}

void PortAddressArray::Append(PortAddress* address) {
    growIfFull(slotWidth);
    VXUT_TRACE(TOKEN_PORT_ADDRESS_ARRAY, "Appending [%p] at %d", static_cast<void*>(address), m_length);
    slots()[m_length] = address;
    ++m_length;
}

void PortAddressArray::InsertAt(unsigned int index, PortAddress* address) {
    VXUT_TRACE_ENTER(TOKEN_PORT_ADDRESS_ARRAY);
    VXUT_CHECK_INDEX(index <= m_length);
    growIfFull(slotWidth);
    moveSlotsUp(slots(), index, m_length, Debug::isDebugOn(strings::TOKEN_PORT_ADDRESS_ARRAY), __PRETTY_FUNCTION__);
    VXUT_TRACE(TOKEN_PORT_ADDRESS_ARRAY, "setting %d = %p", index, static_cast<void*>(address));
    slots()[index] = address;
    ++m_length;
}

void PortAddressArray::DeleteAt(unsigned int index) {
    VXUT_CHECK_INDEX(index < m_length);
    moveSlotsDown(slots(), index, m_length);
    --m_length;
}

void PortAddressArray::Append(PortAddressArray& other) {
    const unsigned int count = other.length();
    growBlock(slotWidth, count);
    for (unsigned int index = 0; index < count; ++index)
        Append(other.slots()[index]);
}

unsigned int PortAddressArray::Find(PortAddress* address) const {
    for (unsigned int index = 0; index < m_length; ++index) {
        if (slots()[index] == address)
            return index;
    }
    return notFound;
}

void PortAddressArray::DeleteAll() {
    for (; m_length > 0; --m_length)
        deleteAddress(slots()[m_length - 1]);
}

void PortAddressArray::toPutStream(PutStream& out) const {
    for (unsigned int index = 0; index < m_length; ++index) {
        if (index > 0)
            out.PutC(',');
        if (slots()[index] != nullptr)
            slots()[index]->toPutStream(out);
    }
}

} // namespace utility
