#pragma once
// Follows one file that other processes replace whole (written to a
// temporary file and renamed over it, as QSaveFile and QSettings do): the
// file itself for changes in place, and the nearest existing folder on its
// way for a file replaced, created or removed. The watch on a replaced file
// is gone with its old inode, so it is put back on the new one after every
// report.
#include <QFileSystemWatcher>
#include <QObject>
#include <QString>

namespace dialcraft {

class FileWatch : public QObject {
    Q_OBJECT

public:
    explicit FileWatch(const QString& file, QObject* parent = nullptr);

    QString file() const { return file_; }

signals:
    // Something happened to the file or its folder; the watch is already
    // re-armed. Several reports may come for one write.
    void changed();

private:
    void arm();

    QString file_;
    QFileSystemWatcher watcher_;
};

}  // namespace dialcraft
