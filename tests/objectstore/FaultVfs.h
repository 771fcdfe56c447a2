#pragma once

#include <sqlite3.h>

#include <csignal>
#include <cstring>

// Stands in for the default SQLite file system: counts the writes that reach a file (write,
// sync, truncate) and fails the n-th and all later ones with a chosen error, as a full disk
// or a failing one would. Registered as the default while it lives.
class FaultVfs {
public:
    FaultVfs() {
        s_real = sqlite3_vfs_find(nullptr);
        m_vfs = *s_real;
        m_vfs.zName = "billfold-fault";
        m_vfs.szOsFile = int(sizeof(File)) + s_real->szOsFile;
        m_vfs.xOpen = &FaultVfs::open;
        sqlite3_vfs_register(&m_vfs, 1);
        s_failAt = 0;
        s_count = 0;
    }
    ~FaultVfs() {
        sqlite3_vfs_unregister(&m_vfs);
        sqlite3_vfs_register(s_real, 1);
    }
    FaultVfs(const FaultVfs &) = delete;
    FaultVfs &operator=(const FaultVfs &) = delete;

    // Writes from the n-th on fail with `code` (0: count only); kKill ends the process there.
    static constexpr int kKill = -1;
    void failAt(int write, int code) {
        s_failAt = write;
        s_code = code;
        s_count = 0;
    }
    int writes() const { return s_count; }

private:
    struct File {
        sqlite3_file base;
        sqlite3_file *real;
    };

    static sqlite3_file *real(sqlite3_file *file) { return reinterpret_cast<File *>(file)->real; }

    static bool fails() {
        ++s_count;
        const bool failing = s_failAt > 0 && s_count >= s_failAt;
        if (failing && s_code == kKill)
            std::raise(SIGKILL);
        return failing;
    }

    static int open(sqlite3_vfs *, sqlite3_filename name, sqlite3_file *file, int flags,
                    int *outFlags) {
        File *shim = reinterpret_cast<File *>(file);
        shim->real = reinterpret_cast<sqlite3_file *>(shim + 1);
        const int rc = s_real->xOpen(s_real, name, shim->real, flags, outFlags);
        if (rc != SQLITE_OK || !shim->real->pMethods) {
            shim->base.pMethods = nullptr;
            return rc;
        }
        static sqlite3_io_methods methods;
        methods = *shim->real->pMethods;
        methods.xClose = [](sqlite3_file *f) { return real(f)->pMethods->xClose(real(f)); };
        methods.xRead = [](sqlite3_file *f, void *b, int n, sqlite3_int64 at) {
            return real(f)->pMethods->xRead(real(f), b, n, at);
        };
        methods.xWrite = [](sqlite3_file *f, const void *b, int n, sqlite3_int64 at) {
            return fails() ? s_code : real(f)->pMethods->xWrite(real(f), b, n, at);
        };
        methods.xTruncate = [](sqlite3_file *f, sqlite3_int64 size) {
            return fails() ? s_code : real(f)->pMethods->xTruncate(real(f), size);
        };
        methods.xSync = [](sqlite3_file *f, int flags) {
            return fails() ? s_code : real(f)->pMethods->xSync(real(f), flags);
        };
        methods.xFileSize = [](sqlite3_file *f, sqlite3_int64 *size) {
            return real(f)->pMethods->xFileSize(real(f), size);
        };
        methods.xLock = [](sqlite3_file *f, int l) { return real(f)->pMethods->xLock(real(f), l); };
        methods.xUnlock = [](sqlite3_file *f, int l) {
            return real(f)->pMethods->xUnlock(real(f), l);
        };
        methods.xCheckReservedLock = [](sqlite3_file *f, int *out) {
            return real(f)->pMethods->xCheckReservedLock(real(f), out);
        };
        methods.xFileControl = [](sqlite3_file *f, int op, void *arg) {
            return real(f)->pMethods->xFileControl(real(f), op, arg);
        };
        methods.xSectorSize = [](sqlite3_file *f) {
            return real(f)->pMethods->xSectorSize(real(f));
        };
        methods.xDeviceCharacteristics = [](sqlite3_file *f) {
            return real(f)->pMethods->xDeviceCharacteristics(real(f));
        };
        methods.xShmMap = [](sqlite3_file *f, int page, int size, int extend, void volatile **out) {
            return real(f)->pMethods->xShmMap(real(f), page, size, extend, out);
        };
        methods.xShmLock = [](sqlite3_file *f, int offset, int n, int flags) {
            return real(f)->pMethods->xShmLock(real(f), offset, n, flags);
        };
        methods.xShmBarrier = [](sqlite3_file *f) { real(f)->pMethods->xShmBarrier(real(f)); };
        methods.xShmUnmap = [](sqlite3_file *f, int remove) {
            return real(f)->pMethods->xShmUnmap(real(f), remove);
        };
        methods.xFetch = [](sqlite3_file *f, sqlite3_int64 at, int n, void **out) {
            return real(f)->pMethods->xFetch(real(f), at, n, out);
        };
        methods.xUnfetch = [](sqlite3_file *f, sqlite3_int64 at, void *p) {
            return real(f)->pMethods->xUnfetch(real(f), at, p);
        };
        shim->base.pMethods = &methods;
        return SQLITE_OK;
    }

    sqlite3_vfs m_vfs;
    static inline sqlite3_vfs *s_real = nullptr;
    static inline int s_failAt = 0;
    static inline int s_count = 0;
    static inline int s_code = SQLITE_FULL;
};
