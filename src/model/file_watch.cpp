#include "model/file_watch.h"

#include <QDir>
#include <QFileInfo>

namespace dialcraft {

FileWatch::FileWatch(const QString& file, QObject* parent) : QObject(parent), file_(file)
{
    const auto report = [this] {
        arm();
        emit changed();
    };
    connect(&watcher_, &QFileSystemWatcher::fileChanged, this, report);
    connect(&watcher_, &QFileSystemWatcher::directoryChanged, this, report);
    arm();
}

void FileWatch::arm()
{
    QStringList wanted;
    if (QFileInfo::exists(file_))
        wanted << file_;
    QDir folder = QFileInfo(file_).absoluteDir();
    while (!folder.exists() && !folder.isRoot())
        folder.setPath(QFileInfo(folder.absolutePath()).absolutePath());
    wanted << folder.absolutePath();
    const QStringList watched = watcher_.files() + watcher_.directories();
    for (const QString& path : watched)
        if (!wanted.contains(path))
            watcher_.removePath(path);
    // A replaced file keeps its name in files() although the watch went with
    // the old inode; adding it again is refused as a duplicate, so it is
    // removed first.
    if (wanted.contains(file_) && watched.contains(file_))
        watcher_.removePath(file_);
    for (const QString& path : wanted)
        if (!watcher_.files().contains(path) && !watcher_.directories().contains(path))
            watcher_.addPath(path);
}

}  // namespace dialcraft
