#include "invoicelayout/render/LMTextPainter.h"

#include <QFontMetricsF>
#include <QHash>
#include <QImage>
#include <QPainter>
#include <QTextLayout>

// Found by the font cache's QHash through argument lookup, hence outside the unnamed namespace.
static size_t qHash(const LMFontSpec &fontSpec, size_t seed = 0) {
    return qHashMulti(seed, fontSpec.family, fontSpec.size, fontSpec.bold, fontSpec.italic);
}

namespace {

// Fonts are resolved against this device so that a point is one unit on every output.
const QImage &pointDevice() {
    thread_local const QImage device = [] {
        QImage image(1, 1, QImage::Format_ARGB32_Premultiplied);
        const int dotsPerMeter = qRound(72 / 0.0254);
        image.setDotsPerMeterX(dotsPerMeter);
        image.setDotsPerMeterY(dotsPerMeter);
        return image;
    }();
    return device;
}

Qt::Alignment qtAlignment(const LMTextAttributes &attributes) {
    const LMTextAlignment alignment =
        attributes.paragraph ? attributes.paragraph->alignment : LMTextAlignment::Left;
    switch (alignment) {
    case LMTextAlignment::Right:
        return Qt::AlignRight;
    case LMTextAlignment::Center:
        return Qt::AlignHCenter;
    case LMTextAlignment::Justified:
        return Qt::AlignJustify;
    case LMTextAlignment::Left:
        break;
    }
    return Qt::AlignLeft;
}

QTextCharFormat charFormat(const LMTextAttributes &attributes) {
    QTextCharFormat format;
    format.setFont(LMTextPainter::fontFor(attributes), QTextCharFormat::FontPropertiesAll);
    format.setForeground(LMTextPainter::colorFor(attributes));
    return format;
}

struct Paragraph {
    QString text;
    QList<QTextLayout::FormatRange> formats;
    LMTextAttributes first;
};

QList<Paragraph> paragraphsOf(const LMAttributedString &text) {
    QList<Paragraph> paragraphs(1);
    bool startsParagraph = true;
    for (const LMAttributedString::Run &run : text.runs()) {
        const QStringList pieces = run.text.split(u'\n');
        for (qsizetype i = 0; i < pieces.size(); ++i) {
            if (i > 0) {
                paragraphs.append(Paragraph{});
                startsParagraph = true;
            }
            Paragraph &paragraph = paragraphs.last();
            if (startsParagraph) {
                paragraph.first = run.attributes;
                startsParagraph = false;
            }
            if (pieces[i].isEmpty())
                continue;
            paragraph.formats.append({static_cast<int>(paragraph.text.size()),
                                      static_cast<int>(pieces[i].size()),
                                      charFormat(run.attributes)});
            paragraph.text += pieces[i];
        }
    }
    return paragraphs;
}

} // namespace

QFont LMTextPainter::fontFor(const LMTextAttributes &attributes) {
    thread_local QHash<LMFontSpec, QFont> cache;
    const LMFontSpec fontSpec =
        attributes.font.value_or(LMFontSpec{LMTextAttributes::systemFontFamily(), 12});
    auto found = cache.constFind(fontSpec);
    if (found != cache.constEnd())
        return *found;
    QFont font(fontSpec.family);
    font.setPointSizeF(fontSpec.size > 0 ? fontSpec.size : 12);
    font.setBold(fontSpec.bold);
    font.setItalic(fontSpec.italic);
    // Unhinted outlines measure the same at every scale.
    font.setHintingPreference(QFont::PreferNoHinting);
    const QFont resolved(font, &pointDevice());
    cache.insert(fontSpec, resolved);
    return resolved;
}

QColor LMTextPainter::colorFor(const LMTextAttributes &attributes) {
    return attributes.color.value_or(QColor(Qt::black));
}

qreal LMTextPainter::lineHeight(const QString &, const LMTextAttributes &attributes) {
    return QFontMetricsF(fontFor(attributes)).height();
}

qreal LMTextPainter::lineWidth(const QString &text, const LMTextAttributes &attributes) {
    return QFontMetricsF(fontFor(attributes)).horizontalAdvance(text);
}

QString LMTextPainter::truncateToWidth(const QString &text, qreal width,
                                       const LMTextAttributes &attributes) {
    const QFontMetricsF metrics(fontFor(attributes));
    if (metrics.horizontalAdvance(text) <= width)
        return text;
    return metrics.elidedText(text, Qt::ElideRight, qMax<qreal>(width, 0));
}

void LMTextPainter::drawLine(QPainter *painter, const QString &text,
                             const LMTextAttributes &attributes, const QRectF &box) {
    if (text.isEmpty())
        return;
    QTextLayout layout(text, fontFor(attributes));
    QTextOption option(qtAlignment(attributes));
    option.setWrapMode(QTextOption::NoWrap);
    layout.setTextOption(option);
    layout.beginLayout();
    QTextLine line = layout.createLine();
    line.setLineWidth(box.width());
    layout.endLayout();
    painter->setPen(colorFor(attributes));
    layout.draw(painter, box.topLeft());
}

void LMTextPainter::drawAttributedString(QPainter *painter, const LMAttributedString &text,
                                         const QRectF &box) {
    if (text.isEmpty() || box.width() <= 0 || box.height() <= 0)
        return;
    painter->save();
    painter->setClipRect(box, Qt::IntersectClip);
    qreal y = box.top();
    for (const Paragraph &paragraph : paragraphsOf(text)) {
        if (y >= box.bottom())
            break;
        const qreal spacing =
            paragraph.first.paragraph ? paragraph.first.paragraph->lineSpacing : 0;
        if (paragraph.text.isEmpty()) {
            y += lineHeight(QString(), paragraph.first) + spacing;
            continue;
        }
        QTextLayout layout(paragraph.text, fontFor(paragraph.first));
        QTextOption option(qtAlignment(paragraph.first));
        option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
        layout.setTextOption(option);
        layout.setFormats(paragraph.formats);
        layout.beginLayout();
        qreal height = 0;
        for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
            line.setLineWidth(box.width());
            line.setPosition(QPointF(0, height));
            height += line.height() + spacing;
            if (y + height - spacing >= box.bottom() + line.height())
                break;
        }
        layout.endLayout();
        painter->setPen(colorFor(paragraph.first));
        layout.draw(painter, QPointF(box.left(), y));
        y += height;
    }
    painter->restore();
}
