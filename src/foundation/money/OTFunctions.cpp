#include "OTFunctions.h"

#include "NumberFormatterCache.h"
#include "OTConvert.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QUuid>

QString OTFunctions::currencyFormatter(const Decimal &number, const QLocale &locale) {
    QString text = NumberFormatterCache::format(
        number, NumberFormatterCache::Style::CurrencyWithoutSymbol, locale);
    if (text.endsWith(QChar(0x00A0)))
        text.chop(1);
    return text;
}

Decimal OTFunctions::decimalNumber(const Decimal &number, const QString &roundedByCurrency,
                                   const QLocale &locale) {
    return number.rounded(MoneyLocale::fractionDigits(roundedByCurrency, locale),
                          Decimal::RoundingMode::Bankers);
}

Decimal OTFunctions::decimalNumberCeiledByCurrency(const Decimal &number,
                                                   const QString &ceiledByCurrency,
                                                   const QLocale &locale) {
    const int digits = MoneyLocale::fractionDigits(ceiledByCurrency, locale);
    const QString text = decimalFormatter(number, locale);
    const qsizetype separator = text.lastIndexOf(locale.decimalPoint());
    if (separator < 0)
        return number;
    const qsizetype extra = text.size() - separator - locale.decimalPoint().size() - digits;
    if (extra < 1)
        return number;
    const Decimal cut = OTConvert::decimalNumberFromString(text.chopped(extra), locale);
    if (cut == number)
        return number;
    return cut + Decimal::fromParts(1, -digits);
}

bool OTFunctions::isEmptyString(const QVariant &object) {
    if (!object.isValid() || object.isNull())
        return true;
    return object.metaType() == QMetaType::fromType<QString>() && object.toString().isEmpty();
}

QString OTFunctions::generateUniqueID() {
    return QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper();
}

QString OTFunctions::generateTemporaryFilePath() {
    return QDir(QDir::tempPath()).filePath(generateUniqueID());
}

QUrl OTFunctions::generateTemporaryFileURL() {
    return QUrl::fromLocalFile(generateTemporaryFilePath());
}

void OTFunctions::deleteFilesAtPaths(const QStringList &paths) {
    for (const QString &path : paths) {
        const QFileInfo info(path);
        if (info.isDir() && !info.isSymLink())
            QDir(path).removeRecursively();
        else
            QFile::remove(path);
    }
}

void OTFunctions::deleteFilesAtURLs(const QList<QUrl> &urls) {
    QStringList paths;
    for (const QUrl &url : urls) {
        if (url.isLocalFile())
            paths << url.toLocalFile();
    }
    deleteFilesAtPaths(paths);
}

void OTFunctions::moveToTrashFilesAtPaths(const QStringList &paths) {
    for (const QString &path : paths)
        QFile::moveToTrash(path);
}

QString OTFunctions::formattedPredicateString(const QString &text) {
    QString escaped = text;
    escaped.replace(u'\\', QStringLiteral("\\\\"));
    escaped.replace(u'"', QStringLiteral("\\\""));
    escaped.replace(u'\'', QStringLiteral("\\'"));
    return escaped;
}
