#pragma once

#include <QByteArray>
#include <QString>
#include <QVariantMap>

// A document window's frame, divider and sidebar selection, kept in the user's settings under
// the document's canonical path, so a file opened again looks as it was left.
class TAWindowState {
public:
    explicit TAWindowState(const QString &documentPath);

    QByteArray geometry() const;
    QByteArray splitter() const;
    QVariantMap groups() const;
    void save(const QByteArray &geometry, const QByteArray &splitter,
              const QVariantMap &groups) const;

private:
    QString m_group;
};
