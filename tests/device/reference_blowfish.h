// OpenSSL's Blowfish as the measure of the payload cipher.
#pragma once

#include <QByteArray>

// Enciphers or deciphers whole 8-byte blocks, each half taken big-endian as published.
QByteArray referenceEncipher(const QByteArray &key, const QByteArray &blocks);
QByteArray referenceDecipher(const QByteArray &key, const QByteArray &blocks);

// The bytes of every 4-byte half in reverse order: from the published convention to the reader's
// little-endian halves, and back.
QByteArray reverseHalves(const QByteArray &blocks);
