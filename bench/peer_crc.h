#pragma once

/// The same CRC by one table look-up per byte. It is in a shared library, so that a call costs the same as a call of
/// VXut.
unsigned char peerCrc(char* data, int length);
