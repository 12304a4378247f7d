#pragma once

/// The same CRC in the plain way, one table look-up per byte. It lies in a shared library of its own, so that it is
/// called at the same cost as the library's.
unsigned char peerCrc(char* data, int length);
