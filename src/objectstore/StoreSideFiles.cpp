#include "objectstore/StoreSideFiles.h"

#include <QFile>
#include <QFileInfo>

#include <fcntl.h>
#include <unistd.h>

namespace {

// Every connection that maps the index holds a shared lock on this byte of it while it does
// (SQLite's "dead man switch"): whoever can lock it for writing is alone with the file.
constexpr off_t kDeadManSwitch = 128;

// Removes the index, and with it an emptied log, when no connection of any program maps the
// index. The lock is held until both are gone, so that no connection can start in between.
void removeUnused(const QString &index, const QString &log, bool removeLog) {
    const int fd = ::open(QFile::encodeName(index).constData(), O_RDWR | O_CLOEXEC);
    if (fd < 0)
        return;
    struct flock lock {};
    lock.l_type = F_WRLCK;
    lock.l_whence = SEEK_SET;
    lock.l_start = kDeadManSwitch;
    lock.l_len = 1;
    if (::fcntl(fd, F_SETLK, &lock) == 0) {
        if (removeLog && QFileInfo(log).size() == 0)
            QFile::remove(log);
        QFile::remove(index);
    }
    ::close(fd);
}

} // namespace

StoreSideFiles::StoreSideFiles(const QString &path) {
    const QFileInfo info(path);
    const QString file = info.exists() ? info.canonicalFilePath() : info.absoluteFilePath();
    m_log = file + QStringLiteral("-wal");
    m_index = file + QStringLiteral("-shm");
    m_hadLog = QFileInfo::exists(m_log);
    m_hadIndex = QFileInfo::exists(m_index);
}

void StoreSideFiles::removeAdded() const {
    if (m_hadIndex || !QFileInfo::exists(m_index)) {
        // Without an index, a log this reader made has nobody to belong to.
        if (!m_hadLog && !QFileInfo::exists(m_index) && QFileInfo(m_log).size() == 0)
            QFile::remove(m_log);
        return;
    }
    removeUnused(m_index, m_log, !m_hadLog);
}
