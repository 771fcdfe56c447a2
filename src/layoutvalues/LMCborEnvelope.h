#pragma once

#include <QByteArray>
#include <QCborMap>
#include <QCborValue>

#include <optional>

// The shared frame of every archived value: a CBOR map with its format version under "v".
// Damaged bytes, another shape or another version read as nothing, so callers fall back to
// their defaults.
namespace LMCborEnvelope {

// The CBOR value held by the bytes; undefined when they are empty or do not parse.
QCborValue parse(const QByteArray &data);

// The map of a value written in this version; nothing for any other value.
std::optional<QCborMap> versionedMap(const QCborValue &value, qint64 version);

} // namespace LMCborEnvelope
