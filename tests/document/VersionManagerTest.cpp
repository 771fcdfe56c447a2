#include "DocumentTestSupport.h"

#include "document/OTVersionManager.h"
#include "document/TADocModelVersions.h"
#include "objectstore/ManagedObjectContext.h"
#include "objectstore/ManagedObjectModel.h"
#include "objectstore/PersistentStore.h"
#include "store/TADocModel.h"
#include "support/FileFingerprint.h"

#include <QFile>
#include <QFileInfo>

namespace {

QStringList entries(const QTemporaryDir &dir) {
    return QDir(dir.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
}

// A file of the given model with the given notes in it.
void makeFile(const QString &path, const ManagedObjectModel &model, const QStringList &notes = {}) {
    auto store = PersistentStore::create(path, model);
    ASSERT_TRUE(store.ok()) << store.error().message.toStdString();
    ManagedObjectContext context(*store);
    for (const QString &text : notes)
        context.insertNewObject(QStringLiteral("Note"))
            ->setValueForKey(text, QStringLiteral("text"));
    ASSERT_TRUE(context.save().ok());
}

// Three releases of a small format; each adds an attribute to its notes.
struct NoteModels {
    ManagedObjectModel a{QStringLiteral("Notes_A")}, b{QStringLiteral("Notes_B")},
        c{QStringLiteral("Notes_C")};
    NoteModels() {
        a.addEntity(QStringLiteral("Note"))
            .addAttribute(QStringLiteral("text"), AttributeType::String);
        b.addEntity(QStringLiteral("Note"))
            .addAttribute(QStringLiteral("text"), AttributeType::String)
            .addAttribute(QStringLiteral("size"), AttributeType::Integer);
        c.addEntity(QStringLiteral("Note"))
            .addAttribute(QStringLiteral("text"), AttributeType::String)
            .addAttribute(QStringLiteral("size"), AttributeType::Integer)
            .addAttribute(QStringLiteral("flag"), AttributeType::Boolean);
        for (ManagedObjectModel *model : {&a, &b, &c})
            (void)model->finish();
    }
    // A chain whose steps copy everything; `missing` names a model the loader cannot find.
    OTVersionManager manager(const QString &missing = {}) {
        OTVersionManager m;
        m.setModelLoader([this, missing](const QString &name) -> const ManagedObjectModel * {
            if (name == missing)
                return nullptr;
            for (const ManagedObjectModel *model : {&a, &b, &c})
                if (model->versionName() == name)
                    return model;
            return nullptr;
        });
        // Added out of order on purpose: the manager keeps them sorted.
        const QList<QPair<const char *, const char *>> chain{
            {"1.2", "Notes_C"}, {"1.0", "Notes_A"}, {"1.1", "Notes_B"}};
        for (const auto &[version, model] : chain)
            m.addVersion(QLatin1String(version), QLatin1String(model),
                         OTVersionManager::kSQLiteStoreType,
                         &OTVersionManager::copyAllObjectsFromContext);
        return m;
    }
};

} // namespace

TEST(VersionManager, DocumentVersionsAreRecognisedByTheirRecordedHash) {
    QTemporaryDir dir;
    OTVersionManager &manager = TADocument::versionManager();
    ASSERT_EQ(manager.versions().size(), 4);
    EXPECT_EQ(manager.latestVersion(), QStringLiteral("1.3"));
    EXPECT_EQ(manager.latestModel(), QStringLiteral("TADoc_1.3"));
    for (int minor = 0; minor <= 3; ++minor) {
        const QString name = QStringLiteral("TADoc_1.%1").arg(minor);
        const ManagedObjectModel *model = TADocModelVersions::modelNamed(name);
        ASSERT_NE(model, nullptr);
        const QString path = dir.filePath(name + QStringLiteral(".tadb"));
        makeFile(path, *model);
        EXPECT_EQ(manager.modelForURL(path), name);
        auto context = manager.managedObjectContextForURL(path);
        ASSERT_TRUE(context) << context.error().message.toStdString();
        EXPECT_EQ((*context)->model(), model);
    }
    // The latest file is left alone.
    const QString latest = dir.filePath(QStringLiteral("TADoc_1.3.tadb"));
    const QByteArray before = fingerprint(latest);
    EXPECT_FALSE(manager.upgradeToTheLatestVersionURL(latest).has_value());
    EXPECT_EQ(fingerprint(latest), before);
}

TEST(VersionManager, FilesNoModelOpensAreRefusedUntouched) {
    QTemporaryDir dir;
    NoteModels models;
    OTVersionManager manager = models.manager();
    const QString text = dir.filePath(QStringLiteral("letter.tadb"));
    QFile file(text);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("Dear client, ...");
    file.close();
    const QString foreign = dir.filePath(QStringLiteral("foreign.tadb"));
    makeFile(foreign, TADocModel::model());
    const QStringList before = entries(dir);
    const QByteArray foreignBefore = fingerprint(foreign);
    for (const QString &path : {text, foreign, dir.filePath(QStringLiteral("absent.tadb"))}) {
        auto error = manager.upgradeToTheLatestVersionURL(path);
        ASSERT_TRUE(error.has_value());
        EXPECT_EQ(error->message, QStringLiteral("Can't retrieve file information."));
        const auto context = manager.managedObjectContextForURL(path);
        ASSERT_FALSE(context);
        EXPECT_EQ(context.error().code, int(ErrorCode::FileNotADocument));
    }
    EXPECT_EQ(fingerprint(foreign), foreignBefore);
    EXPECT_EQ(entries(dir), before);
    EXPECT_FALSE(manager.versionInformationForURL(QString()).has_value());
}

TEST(VersionManager, LadderCarriesDataOrFailsWithoutTrace) {
    QTemporaryDir dir;
    NoteModels models;
    const QString path = dir.filePath(QStringLiteral("notes.db"));
    makeFile(path, models.a, {QStringLiteral("first"), QStringLiteral("second")});
    const QByteArray before = fingerprint(path);
    const QStringList listing = entries(dir);

    // The step to the last model fails after the first step has made its file.
    auto error = models.manager(QStringLiteral("Notes_C")).upgradeToTheLatestVersionURL(path);
    ASSERT_TRUE(error.has_value());
    EXPECT_EQ(error->message, QStringLiteral("Can't open new data model."));
    EXPECT_EQ(fingerprint(path), before);
    EXPECT_EQ(entries(dir), listing);

    OTVersionManager manager = models.manager();
    EXPECT_EQ(manager.versionInformationForURL(path)->version, QStringLiteral("1.0"));
    EXPECT_FALSE(manager.upgradeToTheLatestVersionURL(path).has_value());
    EXPECT_EQ(manager.versionInformationForURL(path)->version, QStringLiteral("1.2"));
    EXPECT_EQ(entries(dir), listing);
    auto context = manager.managedObjectContextForURL(path);
    ASSERT_TRUE(context) << context.error().message.toStdString();
    QStringList texts;
    auto notes = (*context)->executeFetchRequest(FetchRequest(QStringLiteral("Note")));
    ASSERT_TRUE(notes.ok());
    for (ManagedObject *note : *notes)
        texts.append(note->stringForKey(QStringLiteral("text")));
    texts.sort();
    EXPECT_EQ(texts, (QStringList{QStringLiteral("first"), QStringLiteral("second")}));
}

TEST(VersionManager, CopyingAListOfEntitiesLinksOnlyWithinIt) {
    auto source = PersistentStore::createInMemory(TADocModel::model());
    auto target = PersistentStore::createInMemory(TADocModel::model());
    ManagedObjectContext from(*source), to(*target);
    ManagedObject *client = from.insertNewObject(QStringLiteral("Client"));
    client->setValueForKey(QStringLiteral("Ada"), QStringLiteral("fullName"));
    ManagedObject *project = from.insertNewObject(QStringLiteral("Project"));
    project->setObjectForKey(client, QStringLiteral("client"));
    ManagedObject *invoice = from.insertNewObject(QStringLiteral("Invoice"));
    invoice->setValueForKey(QStringLiteral("A-1"), QStringLiteral("identification"));
    invoice->setObjectForKey(client, QStringLiteral("client"));
    invoice->setObjectForKey(project, QStringLiteral("project"));
    ManagedObject *material = from.insertNewObject(QStringLiteral("Material"));
    material->setValueForKey(QVariant::fromValue(dec("12.50")), QStringLiteral("price"));
    material->setObjectForKey(invoice, QStringLiteral("invoice"));

    const auto copies = OTVersionManager::copyObjectsWithEntities(
        QStringList{QStringLiteral("TAObject"), QStringLiteral("Item"), QStringLiteral("Invoice"),
                    QStringLiteral("Client"), QStringLiteral("Material")},
        &from, &to);
    // The abstract entities brought nothing; the material came in by its own name.
    EXPECT_EQ(copies.size(), 3);
    ManagedObject *invoiceCopy = copies.value(invoice->uriText());
    ASSERT_NE(invoiceCopy, nullptr);
    EXPECT_EQ(invoiceCopy->stringForKey(QStringLiteral("identification")), QStringLiteral("A-1"));
    EXPECT_EQ(invoiceCopy->objectForKey(QStringLiteral("client")), copies.value(client->uriText()));
    EXPECT_EQ(invoiceCopy->objectForKey(QStringLiteral("project")), nullptr);
    ASSERT_EQ(invoiceCopy->countForKey(QStringLiteral("items")), 1);
    EXPECT_EQ(invoiceCopy->objectsForKey(QStringLiteral("items"))
                  .first()
                  ->decimalForKey(QStringLiteral("price")),
              dec("12.50"));
    EXPECT_EQ(copies.value(client->uriText())->countForKey(QStringLiteral("projects")), 0);

    OTVersionManager::removeAllObjectsFromContext(&to);
    EXPECT_TRUE(to.executeFetchRequest(FetchRequest(QStringLiteral("TAObject")))->isEmpty());
}
