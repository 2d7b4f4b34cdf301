#include "model/guarded_file.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

namespace dialcraft {

namespace {

// Attempts at a free name within the same second.
constexpr int name_attempts = 100;

QString stamp(int attempt)
{
    QString text = QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMdd-HHmmss"));
    if (attempt > 1)
        text += QLatin1Char('-') + QString::number(attempt);
    return text;
}

}  // namespace

bool write_file_whole(const QString& path, const QByteArray& bytes, QString* reason)
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly)) {
        *reason = file.errorString();
        return false;
    }
    // The flush is checked on its own: when the disk refuses part of the
    // bytes (full, or over a size limit) commit() can still report success
    // and put the cut-short file in place.
    if (file.write(bytes) != bytes.size() || !file.flush() || !file.commit()) {
        *reason = file.errorString();
        file.cancelWriting();
        return false;
    }
    return true;
}

QString move_file_aside(const QString& path, const QString& label, QString* reason)
{
    for (int attempt = 1; attempt <= name_attempts; ++attempt) {
        const QString aside = path + QLatin1Char('.') + label + QLatin1Char('-') + stamp(attempt);
        if (QFileInfo::exists(aside))
            continue;
        QFile file(path);
        if (file.rename(aside))
            return aside;
        *reason = file.errorString();
        return {};
    }
    *reason = QStringLiteral("no free name beside it");
    return {};
}

QString free_stamped_name(const QString& stem, const QString& suffix)
{
    for (int attempt = 1; attempt < name_attempts; ++attempt) {
        const QString name = stem + QLatin1Char('-') + stamp(attempt) + suffix;
        if (!QFileInfo::exists(name))
            return name;
    }
    return stem + QLatin1Char('-') + stamp(name_attempts) + suffix;
}

}  // namespace dialcraft
