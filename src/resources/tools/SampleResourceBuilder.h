#pragma once

#include "foundation/Result.h"

#include <QByteArray>
#include <QDate>
#include <QJsonObject>

// Turns the reviewable sample source into the document the program ships. The source is the
// interchange form of a document without its invoice designs: those are the built-in ones,
// added here, and invoices name theirs as "InvoiceTemplate/<design name>". The source also
// states the day its dates are relative to, so that opening the sample can move them to today.
class SampleResourceBuilder {
public:
    static inline const QString kFormat = QStringLiteral("billfold-sample");
    static constexpr int kFormatVersion = 1;

    Result<void> read(const QByteArray &source);
    QDate anchor() const { return m_anchor; }

    // The interchange text of the whole document: the source's objects with the objects of the
    // built-in designs (`designs`, the "objects" of an exported document holding only them),
    // design names resolved to their keys.
    Result<QByteArray> interchange(const QJsonObject &designs) const;

    // Builds the document and writes "Sample.tadb" and "Sample.anchor" into the folder.
    Result<void> write(const QString &folder) const;

private:
    static Result<QJsonObject> designObjectsOfNewDocument();

    QJsonObject m_objects;
    QDate m_anchor;
};
