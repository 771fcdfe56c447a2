#include "layoutvalues/LMCborEnvelope.h"

namespace LMCborEnvelope {

QCborValue parse(const QByteArray &data) {
    if (data.isEmpty())
        return {};
    QCborParserError error;
    QCborValue value = QCborValue::fromCbor(data, &error);
    if (error.error != QCborError::NoError)
        return {};
    return value;
}

std::optional<QCborMap> versionedMap(const QCborValue &value, qint64 version) {
    if (!value.isMap())
        return std::nullopt;
    QCborMap map = value.toMap();
    if (map.value(QStringLiteral("v")).toInteger(-1) != version)
        return std::nullopt;
    return map;
}

} // namespace LMCborEnvelope
