#pragma once

#include "ut_Export.h"

#include "ut_Array.h"

namespace utility {

class PortAddress;
class PutStream;

/// A growable array of pointers to port addresses, which owns them.
///
/// The destructor and `DeleteAll` delete the addresses; a copy clones them. An address that is replaced, removed or
/// truncated is not deleted; its ownership returns to the caller. Null elements are allowed. Not thread-safe. An index
/// out of range throws code 1229, a failed allocation code 1230; either leaves the array unchanged.
///
///     utility::IPV4Address address("10.1.2.3");
///     utility::PortAddressArray ports(4);
///     ports.Append(new utility::FCPortAddress(utility::FCPortAddress::WWN_TYPE_0, "500a09818d5f1234"));
///     ports.Append(new utility::ISCSIPortAddress(address, 3260, "tgt1"));
///     char text[64];
///     utility::PutStream out(text, sizeof text);
///     ports.toPutStream(out);   // "500a09818d5f1234,10.1.2.3:3260[tgt1]"
class VXUT_EXPORT PortAddressArray : public Array {
public:
    /// Creates an empty array with space for `capacity` elements, or for 20 if `capacity` is 0.
    /// Throws code 1230 if the allocation fails.
    explicit PortAddressArray(unsigned int capacity);
    /// Clones the addresses and copies the capacity of `other`. Throws code 1230 if the allocation fails, and whatever
    /// `PortAddress::clone` throws.
    PortAddressArray(const PortAddressArray& other);
    /// Deletes the addresses and replaces them with clones of the addresses of `other`. Also copies the capacity.
    /// Self-assignment does nothing. Throws what the copy constructor throws; the array is then unchanged.
    ///
    /// The old block is released with the global `operator delete`, so callers see
    /// `framework::Memory::staticOutstanding()` one too high from then on.
    PortAddressArray& operator=(const PortAddressArray& other);
    ~PortAddressArray() override;

    /// Adds `address` at the end. The array takes ownership unless the call throws.
    void Append(PortAddress* address);
    /// Inserts `address` before the element at `index`, or at the end if `index == length()`. The array takes ownership
    /// unless the call throws.
    /// Throws code 1229 if `index > length()`.
    void InsertAt(unsigned int index, PortAddress* address);
    /// Replaces the element at `index` by `address`. The array takes ownership unless the call throws; ownership of the
    /// replaced element returns to the caller. Throws code 1229 if `index >= length()`.
    void SetAt(unsigned int index, PortAddress* address) {
        if (index >= m_length)
            failIndex("void utility::PortAddressArray::SetAt(unsigned int, utility::PortAddress*)");
        slots()[index] = address;
    }
    /// Removes the element at `index` without deleting it and moves the elements after it down by one. Ownership
    /// returns to the caller. Throws code 1229 if `index >= length()`.
    void DeleteAt(unsigned int index);
    /// Returns a reference to the element at `index`, valid until the array grows or is destroyed. Throws code 1229 if
    /// `index >= length()`.
    PortAddress*& operator[](unsigned int index) {
        if (index >= m_length)
            failIndex("utility::PortAddress*& utility::PortAddressArray::operator[](unsigned int)");
        return slots()[index];
    }
    /// Does the same for a const array.
    PortAddress* const& operator[](unsigned int index) const {
        if (index >= m_length)
            failIndex("utility::PortAddress* const& utility::PortAddressArray::operator[](unsigned int) const");
        return slots()[index];
    }
    /// Returns the element at `index`, or null if `index >= length()`. The array keeps ownership.
    PortAddress* ElementAt(unsigned int index) const {
        return index < m_length ? slots()[index] : nullptr;
    }

    /// Adds the pointers of `other` at the end, in order; appending an array to itself doubles it. The addresses are
    /// not cloned: callers rely on the pointers being shared. Remove each from one of the two places with `truncate`
    /// before it would be deleted twice.
    void Append(PortAddressArray& other);
    /// Returns the index of the first element equal to the pointer `address`, or 0xFFFFFFFF if there is none.
    unsigned int Find(PortAddress* address) const;
    /// Deletes the addresses from the last to the first, and leaves an empty array with the same capacity.
    void DeleteAll();
    /// Writes the addresses separated by ",". A null element is written as the empty text; callers rely on its comma.
    /// An address that does not fit is truncated as in `PortAddress::toPutStream`; a comma that does not fit fails as
    /// `PutStream::PutC` does.
    void toPutStream(PutStream& out) const;

private:
    /// Throws code 1229 for `function`, the signature text of an operation.
    [[noreturn]] static void failIndex(const char* function);

    PortAddress** slots() const {
        return static_cast<PortAddress**>(m_block);
    }
};

} // namespace utility
