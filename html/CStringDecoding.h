#pragma once

#include <QByteArrayView>
#include <QString>

// Text of the bytes that libxml2 hands back. The tree normally holds UTF-8, but the parser
// passes invalid sequences through unchanged; such bytes are then read one byte per
// character in the Mac OS Roman 8-bit encoding instead of being lost.
// A null pointer gives a null string; zero bytes give "" (not null).
QString textFromCString(const char* bytes);
QString textFromBytes(QByteArrayView bytes);

// One character per byte, Mac OS Roman.
QString macRomanToString(QByteArrayView bytes);
