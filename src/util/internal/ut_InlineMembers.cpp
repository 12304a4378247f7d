// Symbols for the public members that the headers define inline: a caller built without inlining, or in another
// language, finds them in the library. The compiler emits an inline member where its address is taken, so each has a
// place here.

#include <tuple>

#include "VXut.h"

namespace utility {
namespace {

// Names what derived classes may call.
struct DerivedBuffer : Buffer {
    static constexpr auto members() {
        return std::tuple(&DerivedBuffer::boundedRoom, &DerivedBuffer::boundedReadable, &DerivedBuffer::isStored,
                          &DerivedBuffer::terminate);
    }
};

[[gnu::used]] constexpr std::tuple bufferMembers = DerivedBuffer::members();

[[gnu::used]] constexpr std::tuple
    streamMembers(&Buffer::pBuffer, &Buffer::pHead, &Buffer::pTail, &Buffer::WritePosition, &Buffer::ReadPosition,
                  &Buffer::Size, &Buffer::setNoThrow, &Buffer::isNoThrow, &BufferStreamElement::Next,
                  &BufferStreamList::Next, &BufferStreamQueue::Count, &FileInputStream::errorNumber,
                  &FileOutputStream::errorNumber, &NullStream::inputCount, &NullStream::outputCount,
                  &PagingVirtualPutStream::hasQuit, &Terminal::width, &Terminal::height,
                  &VirtualGetStream::setWaitForData, &VirtualGetStream::setTrace, &VirtualGetStream::received,
                  &VirtualPutStream::setHoldOutput, &VirtualPutStream::setTrace, &VirtualPutStream::transferred);

template<typename Value, typename ArrayType>
constexpr auto elementMembers() {
    return std::tuple(static_cast<Value& (ArrayType::*)(unsigned int)>(&ArrayType::operator[]),
                      static_cast<const Value& (ArrayType::*)(unsigned int) const>(&ArrayType::operator[]),
                      &ArrayType::SetAt);
}

template<typename Value, typename ArrayType>
constexpr auto numberMembers() {
    return std::tuple_cat(elementMembers<Value, ArrayType>(), std::tuple(&ArrayType::Append));
}

[[gnu::used]] constexpr std::tuple
    arrayMembers(numberMembers<short, ShortArray>(), numberMembers<unsigned short, UShortArray>(),
                 numberMembers<int, IntArray>(), numberMembers<unsigned int, UIntArray>(),
                 numberMembers<int64_t, Int64Array>(), numberMembers<unsigned long long, UInt64Array>(),
                 elementMembers<framework::Item*, ItemArray>(), elementMembers<PortAddress*, PortAddressArray>(),
                 elementMembers<SerialNumber*, SerialNumberArray>(), elementMembers<stringtoken, TokenArray>(),
                 elementMembers<WWN*, WWNArray>(), elementMembers<char*, StringArray>(), &PortAddressArray::ElementAt,
                 &ShortArray::ElementAt, &StringArray::ElementAt, &UShortArray::ElementAt);

[[gnu::used]] constexpr std::tuple
    containerMembers(&Array::length, &Array::size, &List::ListEntry::element, &List::ListEntry::previous,
                     &List::ListEntry::next, &Map::count, &Map::setPlacementTrace, &MapEntity::count,
                     &MapEntity::setPlacementTrace, &StringMap::count, &StringMap::setPlacementTrace,
                     &Stack::StackNode::Name, &Stack::StackNode::Obj,
                     static_cast<const Stack::StackNode* (Stack::StackNode::*)() const>(&Stack::StackNode::Next),
                     static_cast<void (Stack::StackNode::*)(const Stack::StackNode*)>(&Stack::StackNode::Next));

[[gnu::used]] constexpr std::tuple identifierMembers(&FCPortAddress::getWWN, &FCPortAddress::getWWNType,
                                                     &ISCSIPortAddress::getIPType, &ISCSIPortAddress::getIPV4,
                                                     &ISCSIPortAddress::getIPV6, &ISCSIPortAddress::getPort,
                                                     &ISCSIPortAddress::getName);

[[gnu::used]] constexpr std::tuple environmentMembers(&Arguments::quoteUnmatched, &DateTime::getTime,
                                                      &DirIterator::getIndex, &Options::count, &Options::getKey,
                                                      &ParameterList::hasNextToken, &Path::getPath, &Path::getFile,
                                                      &Path::getExtension, &PW::getUserName, &PW::getPassword,
                                                      &PW::getUid, &PW::getGid, &PW::getRealName, &PW::getDir,
                                                      &PW::getShell, &PW::used, &URL::GetScheme, &URL::GetAuthority,
                                                      &URL::GetPath, &URL::GetQuery);

[[gnu::used]] constexpr std::tuple diagnosticMembers(static_cast<bool (*)(unsigned int)>(&Debug::isDebugOn));

} // namespace
} // namespace utility
