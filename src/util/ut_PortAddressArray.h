#pragma once

#include "ut_Array.h"
#include "ut_Export.h"

namespace utility {

class PortAddress;
class PutStream;

/// A growable array of pointers to port addresses, which owns them.
///
/// The array deletes its addresses at its end and in `DeleteAll`; a copy has clones of its own. What is replaced, taken
/// out or cut off is not deleted: it is the caller's again. Null is an element like any other. One thread at a time. An
/// index outside the array throws code 1229, no memory code 1230; either leaves the array as it was.
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
    /// An empty array with room for `capacity` elements, for 20 when `capacity` is 0.
    explicit PortAddressArray(unsigned int capacity);
    /// Clones of the addresses, with the capacity of `other`. Throws as well what `PortAddress::clone` throws.
    PortAddressArray(const PortAddressArray& other);
    /// Deletes the addresses and takes clones of those of `other`, and its capacity; an array given to itself changes
    /// nothing. Throws as the copy does, and then leaves the array as it was. The old block goes back through the
    /// global delete operator: callers who count the framework's memory see one piece too many outstanding ever after.
    PortAddressArray& operator=(const PortAddressArray& other);
    ~PortAddressArray() override;

    /// Adds `address` at the end and takes it over.
    void Append(PortAddress* address);
    /// Puts `address` before the element at `index`, or at the end when `index` is the length, and takes it over. A
    /// greater `index` throws code 1229, with `address` still the caller's.
    void InsertAt(unsigned int index, PortAddress* address);
    /// Puts `address` in the place of the element at `index`, which is the caller's from then on. From the length on,
    /// throws code 1229.
    void SetAt(unsigned int index, PortAddress* address);
    /// Takes out the element at `index`, which is the caller's from then on; those behind it move up. From the length
    /// on, throws code 1229.
    void DeleteAt(unsigned int index);
    /// The element at `index`, valid until the array next grows. From the length on, throws code 1229.
    PortAddress*& operator[](unsigned int index);
    PortAddress* const& operator[](unsigned int index) const;
    /// The element at `index`, or null from the length on.
    PortAddress* ElementAt(unsigned int index) const;

    /// Adds the pointers of `other` at the end, in order; an array given to itself doubles. The addresses are not
    /// cloned, deliberately: callers cut one of the places off again (`truncate`) before both would delete them.
    void Append(PortAddressArray& other);
    /// The index of the first element that is `address`, or 0xFFFFFFFF.
    unsigned int Find(PortAddress* address) const;
    /// Deletes the addresses, the last one first; the array is empty then and keeps its block.
    void DeleteAll();
    /// Writes the addresses with "," before every element but the first; callers see the commas of null elements too.
    void toPutStream(PutStream& out) const;

private:
    PortAddress** slots() const {
        return static_cast<PortAddress**>(m_block);
    }
    void growWhenFull();
};

} // namespace utility
