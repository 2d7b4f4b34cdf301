#pragma once
// Makes Qt's own save dialog, used where the desktop offers no native one,
// behave like a save dialog. Qt 6.4's non-native dialog takes a typed file
// name only when Enter is pressed in the name field, so its accept button
// stays disabled while the user types; and it replaces an existing file
// without asking. Native dialogs do both themselves and are left alone.
// It finds Qt's own dialog by the internal names of that dialog's parts, so
// it is built for Qt before 6.5 only, the Qt it was written and checked
// against; elsewhere it never becomes active and asks nothing.
//
// Attach it to the save dialog: it follows the typed name into the dialog's
// selection as the user types, saves on Enter in the name field, starts
// every showing with an empty name, and
// tells the window whether a chosen file must be confirmed before it is
// replaced. For every save dialog, native or not, it adds ".txt" to a chosen
// name without an extension, so the import's plain-text filter shows the
// file later.
#include <QObject>
#include <QPointer>
#include <QUrl>
#include <QtQml/qqmlregistration.h>

namespace dialcraft {

class SaveDialogFallback : public QObject {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QObject* dialog READ dialog WRITE setDialog NOTIFY dialogChanged)
    // True once the dialog has shown itself as Qt's own dialog.
    Q_PROPERTY(bool active READ active NOTIFY activeChanged)

public:
    explicit SaveDialogFallback(QObject* parent = nullptr);

    QObject* dialog() const { return dialog_; }
    void setDialog(QObject* dialog);
    bool active() const { return impl_ != nullptr; }

    // True when Qt's own dialog chose `reported` and that file exists already:
    // the window asks before replacing it.
    Q_INVOKABLE bool mustConfirmOverwrite(const QUrl& reported) const;

    // The file a save dialog's choice saves to, as a file URL: ".../gig" is
    // ".../gig.txt"; a name with an extension of its own stays as chosen.
    Q_INVOKABLE QUrl fileToSave(const QUrl& reported) const;
    // The dialog comes back after the user declined to replace a file: it
    // keeps the name typed, this once.
    Q_INVOKABLE void keepNameOnce() { keepName_ = true; }

signals:
    void dialogChanged();
    void activeChanged();

private slots:
    void dialogVisibilityChanged();
    void findOwnDialog();
    void nameTyped();
    void nameEntered();

private:
    // Each showing starts with an empty name and nothing chosen.
    void startAfresh();

    QPointer<QObject> dialog_;
    QPointer<QObject> impl_;       // Qt's own dialog, once it was shown
    QPointer<QObject> nameField_;  // its file name field
    bool keepName_ = false;
};

}  // namespace dialcraft
