#include "ut_OutputStream.h"

#include <algorithm>

#include "ut_InputStream.h"

namespace framework {

OutputStream::~OutputStream() = default;

void OutputStream::FlushOutputStream() {}

bool OutputStream::TransferFromInputStream(InputStream& in) {
    const unsigned int blockSize = 16384;
    char block[blockSize];
    while (in.isInputStreamGood()) {
        const int count = in.ReceiveInputStream(block, sizeof block);
        if (count < 0)
            return false;
        if (count == 0)
            return true;
        // Do not trust the count: an input may report more than it was asked for.
        if (!SendOutputStream(block, std::min(static_cast<unsigned int>(count), blockSize)))
            return false;
    }
    if (in.isInputStreamInError())
        return false;
    return in.isInputStreamAtEnd();
}

bool OutputStream::isOutputStreamGood() {
    return isOutputStreamOpen() && !isOutputStreamInError() && !isOutputStreamAtEnd();
}

} // namespace framework
