#include "model/table_lock.h"

#include <QDir>
#include <QFileInfo>
#include <QLockFile>

#include "model/stored_configuration.h"

namespace dialcraft {

QString table_lock_path()
{
    return QFileInfo(settings_file_path()).absolutePath() + QStringLiteral("/table.lock");
}

TableLock::TableLock(int wait_ms)
{
    const QString path = table_lock_path();
    QDir().mkpath(QFileInfo(path).absolutePath());
    lock_ = std::make_unique<QLockFile>(path);
    held_ = lock_->tryLock(wait_ms);
    if (held_)
        return;
    // Anything but another holder means the lock file cannot be made there.
    read_only_ = lock_->error() != QLockFile::LockFailedError;
    failure_ = read_only_ ? QStringLiteral("the folder of the settings file cannot be written")
                          : QStringLiteral("another program holds the table's lock ") + path;
}

TableLock::~TableLock() = default;

}  // namespace dialcraft
