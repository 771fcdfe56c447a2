#include "invoicelayout/LMTemplateDesignReader.h"

#include "layoutvalues/LMArchivedColor.h"
#include "layoutvalues/LMAttributedString.h"
#include "layoutvalues/LMGeometry.h"
#include "store/entities/TAKeys.h"

#include <QColor>
#include <QJsonArray>
#include <QJsonDocument>
#include <QRectF>
#include <QSizeF>

namespace {

QColor colorFrom(const QJsonValue &value) {
    const QString text = value.toString();
    if (text.size() == 9) // #rrggbbaa
        return QColor::fromRgba((text.mid(7, 2).toUInt(nullptr, 16) << 24) |
                                text.mid(1, 6).toUInt(nullptr, 16));
    return QColor::fromString(text);
}

LMTextAttributes attributesFrom(const QJsonObject &style) {
    LMTextAttributes out;
    if (style.contains(QLatin1String("family")) || style.contains(QLatin1String("size")))
        out.font = LMFontSpec{
            style.value(QLatin1String("family")).toString(LMTextAttributes::systemFontFamily()),
            style.value(QLatin1String("size")).toDouble(12),
            style.value(QLatin1String("bold")).toBool(),
            style.value(QLatin1String("italic")).toBool()};
    if (style.contains(QLatin1String("color")))
        out.color = colorFrom(style.value(QLatin1String("color")));
    if (style.contains(QLatin1String("align"))) {
        const auto alignment =
            LMTextAttributes::alignmentFromName(style.value(QLatin1String("align")).toString());
        out.paragraph = LMParagraphStyle{alignment.value_or(LMTextAlignment::Left),
                                         style.value(QLatin1String("lineSpacing")).toDouble()};
    }
    return out;
}

LMTextAttributes namedStyle(const QJsonObject &styles, const QString &name) {
    return attributesFrom(styles.value(name).toObject());
}

QVariantList readColumns(const QJsonArray &list) {
    QVariantList out;
    for (qsizetype i = 0; i < list.size(); ++i) {
        const QJsonObject column = list.at(i).toObject();
        const QString align = column.value(QLatin1String("align")).toString(QStringLiteral("left"));
        out.append(QVariantMap{
            {TAKey::nr, i},
            {TAKey::colID, column.value(QLatin1String("id")).toString()},
            {TAKey::name, column.value(QLatin1String("name")).toString()},
            {TAKey::visible, column.value(QLatin1String("visible")).toBool(true)},
            {TAKey::width, column.value(QLatin1String("width")).toDouble()},
            {TAKey::textAttributes,
             LMTextAttributes::withAlignment(
                 LMTextAttributes::alignmentFromName(align).value_or(LMTextAlignment::Left))
                 .archive()},
        });
    }
    return out;
}

QRectF rectFrom(const QJsonValue &value) {
    const QJsonArray a = value.toArray();
    if (a.size() != 4)
        return {};
    return {a.at(0).toDouble(), a.at(1).toDouble(), a.at(2).toDouble(), a.at(3).toDouble()};
}

} // namespace

LMTemplateDesignReader::LMTemplateDesignReader(ImageLoader imageLoader)
    : m_imageLoader(std::move(imageLoader)) {}

Result<QVariantMap> LMTemplateDesignReader::read(const QByteArray &json) const {
    QJsonParseError parseError;
    const QJsonDocument document = QJsonDocument::fromJson(json, &parseError);
    // The position counts from 1, as editors show it.
    if (parseError.error != QJsonParseError::NoError)
        return Error{ErrorCode::Generic,
                     QStringLiteral("The template design is not valid JSON: %1 at character %2.")
                         .arg(parseError.errorString())
                         .arg(parseError.offset + 1)};
    if (!document.isObject())
        return Error{ErrorCode::Generic,
                     QStringLiteral("The template design must be a JSON object with a name, a "
                                    "size and pages.")};
    return readTemplate(document.object());
}

QVariantMap LMTemplateDesignReader::readTemplate(const QJsonObject &design) const {
    QVariantMap out;
    out.insert(TAKey::name, design.value(QLatin1String("name")).toString());
    out.insert(
        TAKey::creationDate,
        QDateTime::fromString(design.value(QLatin1String("creationDate")).toString(), Qt::ISODate));
    const QJsonArray size = design.value(QLatin1String("size")).toArray();
    out.insert(TAKey::size,
               LMGeometry::stringFromSize(QSizeF(size.at(0).toDouble(), size.at(1).toDouble())));

    const QJsonObject background = design.value(QLatin1String("background")).toObject();
    out.insert(TAKey::backgroundType, background.value(QLatin1String("type")).toInt());
    out.insert(TAKey::backgroundImageType, background.value(QLatin1String("imageType")).toInt());
    out.insert(TAKey::backgroundGradientAngle, background.value(QLatin1String("angle")).toInt());
    if (background.contains(QLatin1String("color")))
        out.insert(TAKey::backgroundColor,
                   LMArchivedColor::archive(colorFrom(background.value(QLatin1String("color")))));
    if (background.contains(QLatin1String("color2")))
        out.insert(TAKey::backgroundColor2,
                   LMArchivedColor::archive(colorFrom(background.value(QLatin1String("color2")))));
    if (background.contains(QLatin1String("image")))
        out.insert(TAKey::backgroundImage,
                   m_imageLoader(background.value(QLatin1String("image")).toString()));

    const QJsonObject styles = design.value(QLatin1String("styles")).toObject();
    const QJsonArray pages = design.value(QLatin1String("pages")).toArray();
    QVariantList pageList;
    for (qsizetype tag = 0; tag < pages.size(); ++tag) {
        const QJsonArray elements =
            pages.at(tag).toObject().value(QLatin1String("elements")).toArray();
        QVariantList elementList;
        for (qsizetype i = 0; i < elements.size(); ++i)
            elementList.append(readElement(elements.at(i).toObject(), styles, i));
        pageList.append(QVariantMap{{TAKey::tag, tag}, {TAKey::elements, elementList}});
    }
    out.insert(TAKey::pages, pageList);
    return out;
}

QVariantMap LMTemplateDesignReader::readElement(const QJsonObject &element,
                                                const QJsonObject &styles,
                                                qsizetype orderNr) const {
    QVariantMap out;
    out.insert(TAKey::type, element.value(QLatin1String("type")).toInt());
    out.insert(TAKey::frame,
               LMGeometry::stringFromRect(rectFrom(element.value(QLatin1String("frame")))));
    out.insert(TAKey::orderNr, orderNr);
    out.insert(TAKey::isHidden, element.value(QLatin1String("hidden")).toBool(false));
    out.insert(TAKey::style, element.value(QLatin1String("style")).toInt());
    if (element.contains(QLatin1String("color")))
        out.insert(TAKey::color,
                   LMArchivedColor::archive(colorFrom(element.value(QLatin1String("color")))));
    if (element.contains(QLatin1String("image")))
        out.insert(TAKey::image, m_imageLoader(element.value(QLatin1String("image")).toString()));
    if (element.contains(QLatin1String("attributes")))
        out.insert(
            TAKey::textAttributes,
            namedStyle(styles, element.value(QLatin1String("attributes")).toString()).archive());
    if (element.contains(QLatin1String("text"))) {
        LMAttributedString text;
        for (const QJsonValue &run : element.value(QLatin1String("text")).toArray())
            text.append(run.toArray().at(1).toString(),
                        namedStyle(styles, run.toArray().at(0).toString()));
        out.insert(TAKey::text, text.archive());
    }
    const QVariantList columns = readColumns(element.value(QLatin1String("columns")).toArray());
    if (!columns.isEmpty())
        out.insert(TAKey::columns, columns);
    const QVariantList rows = readColumns(element.value(QLatin1String("rows")).toArray());
    if (!rows.isEmpty())
        out.insert(TAKey::rows, rows);
    return out;
}
