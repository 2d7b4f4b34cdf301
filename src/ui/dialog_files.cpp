#include "dialog_files.h"

#include <QDir>
#include <QStandardPaths>

QUrl chosen_file_url(const QUrl& reported)
{
    if (reported.scheme().isEmpty() && QDir::isAbsolutePath(reported.path()))
        return QUrl::fromLocalFile(reported.path());
    return reported;
}

QUrl documents_folder_url()
{
    const QString documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    if (!documents.isEmpty() && QDir(documents).exists())
        return QUrl::fromLocalFile(documents);
    return QUrl::fromLocalFile(QDir::homePath());
}

DialogFiles::DialogFiles(QObject* parent) : QObject(parent) {}
