#include "FailingDatabase.h"

#include <cstddef>
#include <cstring>

#include <sqlite3.h>

#include "FailingCalls.h"

// A shim around SQLite's default virtual file system (https://sqlite.org/vfs.html).
namespace varnith::test {

namespace {

sqlite3_vfs* real_system = nullptr;

// The real file lies behind this one, in the same block of SQLite's.
struct alignas(std::max_align_t) FailingFile {
    sqlite3_file base;
};

sqlite3_file* Real(sqlite3_file* file) {
    return &(reinterpret_cast<FailingFile*>(file) + 1)->base;
}

// A method that fails in turn, else does what the real one does.
#define FAILING(name, parameters, real, ...)                           \
    int name parameters {                                              \
        const int error = FailureOf(Call::Database, #name);            \
        return error != SQLITE_OK ? error : (real)->name(__VA_ARGS__); \
    }
#define FAILING_FILE(name, parameters, ...) \
    FAILING(name, parameters, Real(f)->pMethods, Real(f) __VA_OPT__(, ) __VA_ARGS__)

FAILING(xDelete, (sqlite3_vfs*, const char* p, int h), real_system, real_system, p, h)
FAILING(xAccess, (sqlite3_vfs*, const char* p, int h, int* r), real_system, real_system, p, h, r)

FAILING_FILE(xWrite, (sqlite3_file * f, const void* b, int n, sqlite3_int64 o), b, n, o)
FAILING_FILE(xTruncate, (sqlite3_file * f, sqlite3_int64 n), n)
FAILING_FILE(xSync, (sqlite3_file * f, int h), h)
FAILING_FILE(xFileSize, (sqlite3_file * f, sqlite3_int64* n), n)
FAILING_FILE(xLock, (sqlite3_file * f, int l), l)
FAILING_FILE(xUnlock, (sqlite3_file * f, int l), l)
FAILING_FILE(xCheckReservedLock, (sqlite3_file * f, int* r), r)
FAILING_FILE(xFileControl, (sqlite3_file * f, int c, void* a), c, a)

int xRead(sqlite3_file* f, void* b, int n, sqlite3_int64 o) {
    const int error = FailureOf(Call::Database, "xRead");
    if (error == SQLITE_OK) return Real(f)->pMethods->xRead(Real(f), b, n, o);
    // After a short read the missing bytes must be zeros.
    std::memset(b, 0, static_cast<std::size_t>(n));
    return error;
}

// These always succeed: SQLite passes over what xClose returns, and the others give no result code.
int xClose(sqlite3_file* f) {
    return Real(f)->pMethods->xClose(Real(f));
}
int xSectorSize(sqlite3_file* f) {
    return Real(f)->pMethods->xSectorSize(Real(f));
}
int xDeviceCharacteristics(sqlite3_file* f) {
    return Real(f)->pMethods->xDeviceCharacteristics(Real(f));
}

// Version 1 has no shared memory and no maps, which the program doesn't use.
constexpr sqlite3_io_methods FailingMethods = {
    1,
    xClose,
    xRead,
    xWrite,
    xTruncate,
    xSync,
    xFileSize,
    xLock,
    xUnlock,
    xCheckReservedLock,
    xFileControl,
    xSectorSize,
    xDeviceCharacteristics,
    nullptr,
    nullptr,
    nullptr,
    nullptr,
    nullptr,
    nullptr,
};

int xOpen(sqlite3_vfs*, const char* p, sqlite3_file* f, int h, int* r) {
    f->pMethods = nullptr;
    if (const int error = FailureOf(Call::Database, "xOpen")) return error;
    const int result = real_system->xOpen(real_system, p, Real(f), h, r);
    if (Real(f)->pMethods) f->pMethods = &FailingMethods;
    return result;
}

}  // namespace

void UseFailingDatabase() {
    real_system = sqlite3_vfs_find(nullptr);
    static sqlite3_vfs failing = *real_system;
    failing.zName = "failing";
    failing.szOsFile += static_cast<int>(sizeof(FailingFile));
    failing.xOpen = xOpen;
    failing.xDelete = xDelete;
    failing.xAccess = xAccess;
    sqlite3_vfs_register(&failing, 1);
}

}  // namespace varnith::test
