#include "shell/sidebar/TAGroupsModel.h"

#include "store/entities/TAProject.h"
#include "toolkit/OTIcons.h"

#include <QFont>
#include <QHash>

namespace {
// Children of "Projects" carry this id; top-level rows carry 0.
constexpr quintptr kProjectRow = 1;
} // namespace

void TAGroupsModel::setRows(const QStringList &keys, const QList<TAProject *> &projects) {
    beginResetModel();
    m_keys = keys;
    m_projects = projects;
    endResetModel();
}

QString TAGroupsModel::keyAt(const QModelIndex &index) const {
    if (!index.isValid() || index.internalId() == kProjectRow || index.row() >= m_keys.size())
        return {};
    return m_keys.at(index.row());
}

TAProject *TAGroupsModel::projectAt(const QModelIndex &index) const {
    if (!index.isValid() || index.internalId() != kProjectRow || index.row() >= m_projects.size())
        return nullptr;
    return m_projects.at(index.row());
}

QModelIndex TAGroupsModel::indexOfKey(const QString &key) const {
    const qsizetype row = m_keys.indexOf(key);
    return row < 0 ? QModelIndex() : createIndex(int(row), 0, quintptr(0));
}

QModelIndex TAGroupsModel::indexOfProject(const TAProject *project) const {
    const qsizetype row = m_projects.indexOf(project);
    return row < 0 ? QModelIndex() : createIndex(int(row), 0, kProjectRow);
}

QString TAGroupsModel::titleForKey(const QString &key) {
    static const QHash<QString, const char *> titles = {
        {kManage, QT_TR_NOOP("MANAGE")},
        {QStringLiteral("Invoices"), QT_TR_NOOP("Invoices")},
        {QStringLiteral("Recurring"), QT_TR_NOOP("Recurring")},
        {QStringLiteral("Inventory"), QT_TR_NOOP("Inventory")},
        {QStringLiteral("Clients"), QT_TR_NOOP("Clients")},
        {QStringLiteral("Projects"), QT_TR_NOOP("Projects")},
        {QStringLiteral("Reports"), QT_TR_NOOP("Reports")},
        {kTimers, QT_TR_NOOP("Timers")}};
    const char *title = titles.value(key);
    return title ? tr(title) : key;
}

QString TAGroupsModel::imageNameForKey(const QString &key) {
    static const QHash<QString, QString> images = {
        {QStringLiteral("Invoices"), QStringLiteral("groupInvoice")},
        {QStringLiteral("Recurring"), QStringLiteral("groupCalendar")},
        {QStringLiteral("Inventory"), QStringLiteral("groupInventory")},
        {QStringLiteral("Clients"), QStringLiteral("groupClients")},
        {QStringLiteral("Projects"), QStringLiteral("groupProjects")},
        {QStringLiteral("Reports"), QStringLiteral("groupReports")},
        {kTimers, QStringLiteral("groupTimers")}};
    return images.value(key);
}

QModelIndex TAGroupsModel::index(int row, int column, const QModelIndex &parent) const {
    if (column != 0 || row < 0)
        return {};
    if (!parent.isValid())
        return row < m_keys.size() ? createIndex(row, 0, quintptr(0)) : QModelIndex();
    if (keyAt(parent) == QLatin1String("Projects") && row < m_projects.size())
        return createIndex(row, 0, kProjectRow);
    return {};
}

QModelIndex TAGroupsModel::parent(const QModelIndex &child) const {
    if (!child.isValid() || child.internalId() != kProjectRow)
        return {};
    return indexOfKey(QStringLiteral("Projects"));
}

int TAGroupsModel::rowCount(const QModelIndex &parent) const {
    if (!parent.isValid())
        return int(m_keys.size());
    return keyAt(parent) == QLatin1String("Projects") ? int(m_projects.size()) : 0;
}

int TAGroupsModel::columnCount(const QModelIndex &) const {
    return 1;
}

QVariant TAGroupsModel::data(const QModelIndex &index, int role) const {
    if (TAProject *project = projectAt(index)) {
        switch (role) {
        case Qt::DisplayRole:
        case Qt::EditRole:
        case Qt::ToolTipRole:
            return project->name();
        case OverdueRole:
            return project->overdue();
        default:
            return {};
        }
    }
    const QString key = keyAt(index);
    if (key.isEmpty())
        return {};
    switch (role) {
    case Qt::DisplayRole:
    case Qt::AccessibleTextRole:
        return titleForKey(key);
    case Qt::DecorationRole:
        return key == kManage ? QVariant() : QVariant(OTIcons::icon(imageNameForKey(key)));
    case HeadingRole:
        return key == kManage;
    case CountRole:
        // The badge's source; no section counts anything yet, so no number is shown.
        return 0;
    default:
        return {};
    }
}

Qt::ItemFlags TAGroupsModel::flags(const QModelIndex &index) const {
    if (projectAt(index))
        return Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsEditable |
               Qt::ItemNeverHasChildren;
    const QString key = keyAt(index);
    if (key == kManage)
        return Qt::ItemIsEnabled | Qt::ItemNeverHasChildren;
    if (key.isEmpty())
        return Qt::NoItemFlags;
    return Qt::ItemIsEnabled | Qt::ItemIsSelectable;
}

bool TAGroupsModel::setData(const QModelIndex &index, const QVariant &value, int role) {
    TAProject *project = projectAt(index);
    if (!project || role != Qt::EditRole)
        return false;
    emit renameRequested(project, value.toString());
    emit dataChanged(index, index);
    return true;
}
