#pragma once

#include <QString>

// The files SQLite keeps beside a document while it is open: the write-ahead log and the
// log's shared index. Even a connection that only reads makes them, so a reader notes what
// was there before it opened the file and, when it is done (this object goes, after all its
// connections), takes away what it added: an emptied log and an index nobody uses any more.
class StoreSideFiles {
public:
    // Notes the side files of the file the path leads to, through any symbolic links: SQLite
    // keeps them beside the file itself.
    explicit StoreSideFiles(const QString &path);
    ~StoreSideFiles() { removeAdded(); }
    StoreSideFiles(const StoreSideFiles &) = delete;
    StoreSideFiles &operator=(const StoreSideFiles &) = delete;

private:
    // Removes the side files that were not there before, when no program uses them and the
    // log holds nothing; a log that was there keeps its index while it holds anything.
    void removeAdded() const;

private:
    QString m_log;
    QString m_index;
    bool m_hadLog = false;
    bool m_hadIndex = false;
};
