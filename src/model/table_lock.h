#pragma once
// The lock every writer of the stored table holds while it reads the store
// again, merges and writes: "table.lock" beside the settings file. The
// window's save at close and dialcraft-cli import take it, so two writers
// never lose each other's knobs. A lock left by a process that died is taken
// over at once. (QSettings locks "dialcraft.conf.lock" around its own file
// writes only; this one spans the whole read-merge-write.)
#include <QString>

#include <memory>

class QLockFile;

namespace dialcraft {

// How long a writer waits for another one; a write takes milliseconds, so
// only a hung holder makes this run out.
inline constexpr int table_lock_wait_ms = 10000;

QString table_lock_path();

class TableLock {
public:
    explicit TableLock(int wait_ms = table_lock_wait_ms);
    ~TableLock();
    TableLock(const TableLock&) = delete;
    TableLock& operator=(const TableLock&) = delete;

    bool held() const { return held_; }
    // Why it is not held: the folder cannot be written (the write that
    // follows fails with its own line anyway) or another writer kept it.
    QString failure() const { return failure_; }
    // The folder refused the lock file: nothing can be written there.
    bool folderReadOnly() const { return read_only_; }

private:
    std::unique_ptr<QLockFile> lock_;
    bool held_ = false;
    bool read_only_ = false;
    QString failure_;
};

}  // namespace dialcraft
