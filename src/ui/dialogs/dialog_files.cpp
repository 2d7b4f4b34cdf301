#include "ui/dialogs/dialog_files.h"

#include "ui/dialogs/dialog_words.h"

#include <QDir>
#include <QStandardPaths>

namespace dialcraft {

QUrl chosen_file_url(const QUrl& reported)
{
    if (!reported.scheme().isEmpty() || !QDir::isAbsolutePath(reported.path()))
        return reported;
    // The path is taken with its escapes: a file name that is not valid UTF-8
    // is held as escaped bytes, which decoding to text would replace.
    QUrl local;
    local.setScheme(QStringLiteral("file"));
    local.setPath(reported.path(QUrl::FullyEncoded), QUrl::TolerantMode);
    return local;
}

QUrl documents_folder_url()
{
    const QString documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    if (!documents.isEmpty() && QDir(documents).exists())
        return QUrl::fromLocalFile(documents);
    return QUrl::fromLocalFile(QDir::homePath());
}

DialogFiles::DialogFiles(QObject* parent) : QObject(parent) {}

QString DialogFiles::textFilesFilter() const
{
    return DialogWords::text_files_filter;
}

}  // namespace dialcraft
