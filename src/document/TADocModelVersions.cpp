#include "document/TADocModelVersions.h"

#include "document/OTVersionManager.h"
#include "objectstore/ManagedObjectModel.h"
#include "store/TADocModel.h"
#include "store/entities/TAKeys.h"

#include <memory>

namespace {
namespace E = TAEntity;
namespace K = TAKey;
using A = AttributeType;

// Each release added to the one before it.
void addFirstRelease(ManagedObjectModel &model) {
    model.addEntity(E::Preferences).addAttribute(K::password, A::String);
    model.addEntity(E::Currency)
        .addAttribute(K::code, A::String)
        .addAttribute(K::title, A::String)
        .addAttribute(K::isDefault, A::Boolean);
}

void addClients(ManagedObjectModel &model) {
    model.addEntity(E::Client)
        .addAttribute(K::fullName, A::String)
        .addAttribute(K::company, A::String);
}

void addInvoices(ManagedObjectModel &model) {
    model.addEntity(E::Invoice)
        .addAttribute(K::identification, A::String)
        .addAttribute(K::date, A::Date);
}

std::unique_ptr<ManagedObjectModel> olderModel(int minor) {
    auto model = std::make_unique<ManagedObjectModel>(QStringLiteral("TADoc_1.%1").arg(minor));
    addFirstRelease(*model);
    if (minor >= 1)
        addClients(*model);
    if (minor >= 2)
        addInvoices(*model);
    if (!model->finish())
        qFatal("an earlier document model is inconsistent");
    return model;
}

const QList<const ManagedObjectModel *> &earlier() {
    static const auto models = [] {
        static std::unique_ptr<ManagedObjectModel> owned[3] = {olderModel(0), olderModel(1),
                                                               olderModel(2)};
        return QList<const ManagedObjectModel *>{owned[0].get(), owned[1].get(), owned[2].get()};
    }();
    return models;
}

} // namespace

const ManagedObjectModel *TADocModelVersions::modelNamed(const QString &name) {
    if (name == TADocModel::kVersionName)
        return &TADocModel::model();
    for (const ManagedObjectModel *model : earlier())
        if (model->versionName() == name)
            return model;
    return nullptr;
}

QList<const ManagedObjectModel *> TADocModelVersions::olderModels() {
    return earlier();
}

void TADocModelVersions::registerVersions(OTVersionManager &manager) {
    manager.setConfiguration({});
    manager.setModelLoader(&TADocModelVersions::modelNamed);
    for (int minor = 0; minor <= 3; ++minor)
        manager.addVersion(QStringLiteral("1.%1").arg(minor),
                           QStringLiteral("TADoc_1.%1").arg(minor),
                           OTVersionManager::kSQLiteStoreType);
}
