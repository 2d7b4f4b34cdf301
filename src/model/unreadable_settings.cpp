#include "model/unreadable_settings.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QLockFile>
#include <QSettings>

#include <cerrno>
#include <optional>
#include <stdio.h>
#include <unistd.h>

namespace dialcraft {

namespace {

// QSettings parses a file once per process and keeps the result for every
// later QSettings of that file while the file stays unchanged; only the one
// that parsed it is told of a format error. The verdict is therefore kept
// with the size and time of the file it was made for, so the save at close
// still knows what the load at start found.
struct FileVersion {
    QString name;
    qint64 size = 0;
    QDateTime modified;

    friend bool operator==(const FileVersion&, const FileVersion&) = default;
};

std::optional<FileVersion> unreadable_version;

FileVersion version_of(const QString& file)
{
    const QFileInfo info(file);
    return {info.absoluteFilePath(), info.size(), info.lastModified()};
}

}  // namespace

QString unreadable_aside_name(const QString& file, int attempt)
{
    QString name = file + QStringLiteral(".unreadable-") +
                   QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMdd-HHmmss"));
    if (attempt > 1)
        name += QLatin1Char('-') + QString::number(attempt);
    return name;
}

bool settings_file_unreadable(const QString& file)
{
    QSettings settings(file, QSettings::IniFormat);
    (void)settings.allKeys();
    if (settings.status() == QSettings::FormatError) {
        unreadable_version = version_of(file);
        return true;
    }
    return unreadable_version && QFileInfo::exists(file) && *unreadable_version == version_of(file);
}

QString replace_unreadable_file(const QString& file, const QString& fresh, QString* error)
{
    // The lock QSettings takes around its own writes, so no other instance
    // writes the file between the two steps.
    QLockFile lock(file + QStringLiteral(".lock"));
    if (!lock.lock()) {
        *error = QStringLiteral("the settings file is locked");
        return {};
    }
    const QByteArray from = QFile::encodeName(file);
    const QByteArray to = QFile::encodeName(fresh);
    for (int attempt = 1; attempt < 100; ++attempt) {
        const QString aside = unreadable_aside_name(file, attempt);
        const QByteArray aside_bytes = QFile::encodeName(aside);
        // A second name for the unreadable file, then the fresh one replaces
        // the first in one step: readers always find a whole file.
        if (::link(from.constData(), aside_bytes.constData()) == 0) {
            if (::rename(to.constData(), from.constData()) == 0) {
                unreadable_version.reset();
                return aside;
            }
            *error = qt_error_string(errno);
            ::unlink(aside_bytes.constData());
            return {};
        }
        if (errno == EEXIST)
            continue;
        // No hard links on this file system: move it, then put the fresh one there.
        if (QFileInfo::exists(aside))
            continue;
        if (::rename(from.constData(), aside_bytes.constData()) != 0) {
            *error = qt_error_string(errno);
            return {};
        }
        if (::rename(to.constData(), from.constData()) != 0) {
            *error = qt_error_string(errno);
            ::rename(aside_bytes.constData(), from.constData());
            return {};
        }
        unreadable_version.reset();
        return aside;
    }
    *error = QStringLiteral("no free name beside the settings file");
    return {};
}

}  // namespace dialcraft
