#pragma once

#include "ut_Array.h"
#include "ut_Export.h"

namespace utility {

class PortAddress;
class PutStream;

/// A growable array of pointers to port addresses, which owns them.
///
/// The destructor and `DeleteAll` delete the addresses; a copy clones them. An address that is replaced, removed or
/// truncated is not deleted: it belongs to the caller again. Null elements are allowed. Not thread-safe. An index out
/// of range throws code 1229, a failed allocation code 1230; either leaves the array unchanged.
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
    /// Clones the addresses and copies the capacity of `other`. Also throws what `PortAddress::clone` throws.
    PortAddressArray(const PortAddressArray& other);
    /// Deletes the addresses, and takes clones of the addresses of `other` and its capacity; self-assignment does
    /// nothing. Throws what the copy constructor throws, with the array unchanged. Releases the old block with the
    /// global delete operator: callers see `framework::Memory::staticOutstanding()` one too high from then on.
    PortAddressArray& operator=(const PortAddressArray& other);
    ~PortAddressArray() override;

    /// Adds `address` at the end. The array takes ownership unless the call throws.
    void Append(PortAddress* address);
    /// Inserts `address` before the element at `index`, or at the end if `index == length()`. The array takes ownership
    /// unless the call throws.
    /// Throws code 1229 if `index > length()`.
    void InsertAt(unsigned int index, PortAddress* address);
    /// Replaces the element at `index` by `address`. The array takes ownership unless the call throws; the replaced
    /// element then belongs to the caller. Throws code 1229 if `index >= length()`.
    void SetAt(unsigned int index, PortAddress* address);
    /// Removes the element at `index`, which then belongs to the caller; the elements after it move down by one.
    /// Throws code 1229 if `index >= length()`.
    void DeleteAt(unsigned int index);
    /// Returns the element at `index`. Valid until the array grows. Throws code 1229 if `index >= length()`.
    PortAddress*& operator[](unsigned int index);
    /// The same for a constant array.
    PortAddress* const& operator[](unsigned int index) const;
    /// Returns the element at `index`, or null if `index >= length()`. The array keeps ownership.
    PortAddress* ElementAt(unsigned int index) const;

    /// Adds the pointers of `other` at the end, in order; an array appended to itself doubles. The addresses are not
    /// cloned: callers rely on the pointers being shared, and use `truncate` to remove them from one of the two places
    /// before both would delete them.
    void Append(PortAddressArray& other);
    /// Returns the index of the first element equal to the pointer `address`, or 0xFFFFFFFF if there is none.
    unsigned int Find(PortAddress* address) const;
    /// Deletes the addresses from the last to the first, and leaves an empty array with the same capacity.
    void DeleteAll();
    /// Writes the addresses with "," before each element except the first. Callers rely on the commas of null elements.
    void toPutStream(PutStream& out) const;

private:
    PortAddress** slots() const {
        return static_cast<PortAddress**>(m_block);
    }
};

} // namespace utility
