#pragma once

#include <QAbstractItemModel>
#include <QPointer>
#include <QStringList>

class TAProject;

// The sidebar's rows: the heading "MANAGE", the sections by their keys ("Invoices",
// "Recurring", ...) and, under "Projects", the open projects. Only "Projects" has children;
// only project rows can be renamed.
class TAGroupsModel : public QAbstractItemModel {
    Q_OBJECT
public:
    static inline const QString kManage = QStringLiteral("MANAGE");
    // A known row that is never listed: its title and icon stay available.
    static inline const QString kTimers = QStringLiteral("Timers");
    enum Role { OverdueRole = Qt::UserRole + 1, CountRole, HeadingRole };

    using QAbstractItemModel::QAbstractItemModel;

    void setRows(const QStringList &keys, const QList<TAProject *> &projects);
    const QStringList &keys() const { return m_keys; }
    const QList<TAProject *> &projects() const { return m_projects; }

    // The row's key, empty for a project row; and its project, null for a section row.
    QString keyAt(const QModelIndex &index) const;
    TAProject *projectAt(const QModelIndex &index) const;
    QModelIndex indexOfKey(const QString &key) const;
    QModelIndex indexOfProject(const TAProject *project) const;

    // The title of a section row, and its image name.
    static QString titleForKey(const QString &key);
    static QString imageNameForKey(const QString &key);

    QModelIndex index(int row, int column, const QModelIndex &parent = {}) const override;
    QModelIndex parent(const QModelIndex &child) const override;
    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role) override;

signals:
    // A project row's name was edited; the controller stores it.
    void renameRequested(TAProject *project, const QString &name);

private:
    QStringList m_keys;
    QList<TAProject *> m_projects;
};
