#include "dialog_files.h"

#include <QDir>

QUrl chosen_file_url(const QUrl& reported)
{
    if (reported.scheme().isEmpty() && QDir::isAbsolutePath(reported.path()))
        return QUrl::fromLocalFile(reported.path());
    return reported;
}

DialogFiles::DialogFiles(QObject* parent) : QObject(parent) {}
