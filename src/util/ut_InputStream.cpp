#include "ut_InputStream.h"

namespace framework {

InputStream::~InputStream() = default;

bool InputStream::isInputStreamGood() {
    return isInputStreamOpen() && !isInputStreamInError() && !isInputStreamAtEnd();
}

int InputStream::GetInputStreamSize() {
    return -1;
}

void InputStream::setInputMode(InputMode) {}

} // namespace framework
