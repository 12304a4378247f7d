#include "peer_crc.h"

#include "ut_Misc.h"

unsigned char peerCrc(char* data, int length) {
    const unsigned char* const table = utility::Misc::m_crc_array;
    unsigned char crc = 0xFF;
    for (int i = 0; i < length; ++i)
        crc = table[crc ^ static_cast<unsigned char>(data[i])];
    return crc;
}
