#pragma once
// Turns what a file dialog reports into the location the file transfer takes,
// and names the folder both file dialogs start in.
#include <QObject>
#include <QUrl>
#include <QtQml/qqmlregistration.h>

namespace dialcraft {

// Qt's own (non-native) save dialog reports the chosen file as a bare path
// without the file scheme; native dialogs report a file URL. Both mean a
// local file.
QUrl chosen_file_url(const QUrl& reported);

// The user's documents folder as a file URL; the home folder when the
// documents folder does not exist.
QUrl documents_folder_url();

class DialogFiles : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(QUrl documentsFolder READ documentsFolder CONSTANT)
    // The one entry of both dialogs' filter menu, in the window's words.
    Q_PROPERTY(QString textFilesFilter READ textFilesFilter CONSTANT)

public:
    explicit DialogFiles(QObject* parent = nullptr);

    Q_INVOKABLE QUrl chosenFile(const QUrl& reported) const { return chosen_file_url(reported); }
    // The chosen file as a path to show the user.
    Q_INVOKABLE QString shownPath(const QUrl& reported) const { return chosen_file_url(reported).toLocalFile(); }
    QUrl documentsFolder() const { return documents_folder_url(); }
    QString textFilesFilter() const;
};

}  // namespace dialcraft
