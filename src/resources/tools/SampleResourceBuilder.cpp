#include "resources/tools/SampleResourceBuilder.h"

#include "importsync/json/JsonDocumentExporter.h"
#include "importsync/json/JsonDocumentImporter.h"
#include "objectstore/ManagedObjectContext.h"
#include "objectstore/PersistentStore.h"
#include "store/TADatabase.h"
#include "store/TADocModel.h"

#include <QDir>
#include <QFile>
#include <QHash>
#include <QJsonDocument>
#include <QSaveFile>

namespace {

Error sourceError(const QString &reason) {
    return Error{ErrorCode::FileDamaged, QStringLiteral("sample source: ") + reason};
}

const QString kTemplatePrefix = QStringLiteral("InvoiceTemplate/");

bool isDesignEntity(const QString &key) {
    const QString entity = key.section(u'/', 0, 0);
    return entity.startsWith(QLatin1String("InvoiceTemplate")) ||
           entity == QLatin1String("InvoiceElement");
}

} // namespace

Result<void> SampleResourceBuilder::read(const QByteArray &source) {
    QJsonParseError parseError;
    const QJsonDocument document = QJsonDocument::fromJson(source, &parseError);
    if (parseError.error != QJsonParseError::NoError)
        return sourceError(QStringLiteral("not valid JSON at offset %1 (%2)")
                               .arg(parseError.offset)
                               .arg(parseError.errorString()));
    const QJsonObject root = document.object();
    if (root.value(QLatin1String("format")).toString() != kFormat ||
        root.value(QLatin1String("formatVersion")).toInt() != kFormatVersion)
        return sourceError(
            QStringLiteral("expected format \"%1\" version %2").arg(kFormat).arg(kFormatVersion));
    m_anchor =
        QDate::fromString(root.value(QLatin1String("datesRelativeTo")).toString(), Qt::ISODate);
    if (!m_anchor.isValid())
        return sourceError(QStringLiteral("\"datesRelativeTo\" must be a day such as 2026-11-01"));
    m_objects = root.value(QLatin1String("objects")).toObject();
    for (auto it = m_objects.constBegin(); it != m_objects.constEnd(); ++it)
        if (isDesignEntity(it.key()))
            return sourceError(
                QStringLiteral("%1: invoice designs come from the built-in set").arg(it.key()));
    return {};
}

Result<QByteArray> SampleResourceBuilder::interchange(const QJsonObject &designs) const {
    QHash<QString, QString> keyByName;
    for (auto it = designs.constBegin(); it != designs.constEnd(); ++it)
        if (it.key().startsWith(kTemplatePrefix))
            keyByName.insert(it.value().toObject().value(QLatin1String("name")).toString(),
                             it.key());
    QJsonObject objects = designs;
    for (auto it = m_objects.constBegin(); it != m_objects.constEnd(); ++it) {
        QJsonObject object = it.value().toObject();
        const QString named = object.value(QLatin1String("template")).toString();
        if (!named.isEmpty()) {
            const QString key = keyByName.value(named.mid(kTemplatePrefix.size()));
            if (!named.startsWith(kTemplatePrefix) || key.isEmpty())
                return sourceError(
                    QStringLiteral("%1: no built-in design \"%2\"").arg(it.key(), named));
            object.insert(QLatin1String("template"), key);
        }
        objects.insert(it.key(), object);
    }
    QJsonObject root;
    root.insert(QLatin1String("format"), JsonDocumentExporter::kFormat);
    root.insert(QLatin1String("formatVersion"), JsonDocumentExporter::kFormatVersion);
    root.insert(QLatin1String("model"), TADocModel::kVersionName);
    root.insert(QLatin1String("objects"), objects);
    return QJsonDocument(root).toJson(QJsonDocument::Compact);
}

Result<QJsonObject> SampleResourceBuilder::designObjectsOfNewDocument() {
    auto store = PersistentStore::createInMemory(TADocModel::model());
    if (!store)
        return store.error();
    ManagedObjectContext context(*store);
    TADatabase database;
    database.setContext(&context);
    database.disableUndoRegistration();
    TAContextDatabase::getTemplatesInContext(database.context());
    JsonDocumentExporter exporter(context);
    auto json = exporter.exportDocument();
    if (!json)
        return json.error();
    QJsonObject designs;
    const QJsonObject all =
        QJsonDocument::fromJson(*json).object().value(QLatin1String("objects")).toObject();
    for (auto it = all.constBegin(); it != all.constEnd(); ++it)
        if (isDesignEntity(it.key()))
            designs.insert(it.key(), it.value());
    if (designs.isEmpty())
        return Error{ErrorCode::Generic, QStringLiteral("no built-in designs are installed")};
    return designs;
}

Result<void> SampleResourceBuilder::write(const QString &folder) const {
    auto designs = designObjectsOfNewDocument();
    if (!designs)
        return designs.error();
    auto text = interchange(*designs);
    if (!text)
        return text.error();
    JsonDocumentImporter importer;
    if (auto read = importer.read(*text); !read)
        return sourceError(read.error().message);
    auto store = PersistentStore::createInMemory(TADocModel::model());
    if (!store)
        return store.error();
    ManagedObjectContext context(*store);
    if (auto built = importer.build(context); !built)
        return built;
    if (auto saved = context.save(); !saved)
        return saved;
    QDir().mkpath(folder);
    if (auto written = (*store)->saveAs(QDir(folder).filePath(QStringLiteral("Sample.tadb")));
        !written)
        return written;
    QSaveFile anchor(QDir(folder).filePath(QStringLiteral("Sample.anchor")));
    if (!anchor.open(QIODevice::WriteOnly) ||
        anchor.write(m_anchor.toString(Qt::ISODate).toLatin1() + '\n') < 0 || !anchor.commit())
        return Error{ErrorCode::WriteFailed,
                     anchor.fileName() + QStringLiteral(": ") + anchor.errorString()};
    return {};
}
