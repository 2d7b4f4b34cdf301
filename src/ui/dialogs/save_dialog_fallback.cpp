#include "ui/dialogs/save_dialog_fallback.h"

#include <QDir>
#include <QFileInfo>
#include <QQmlContext>
#include <QQuickItem>
#include <QQuickWindow>

#include "ui/dialogs/dialog_files.h"

namespace dialcraft {

SaveDialogFallback::SaveDialogFallback(QObject* parent) : QObject(parent) {}

void SaveDialogFallback::setDialog(QObject* dialog)
{
    if (dialog_ == dialog)
        return;
    if (dialog_)
        disconnect(dialog_, nullptr, this, nullptr);
    dialog_ = dialog;
#if QT_VERSION < QT_VERSION_CHECK(6, 5, 0)
    if (dialog_)
        connect(dialog_, SIGNAL(visibleChanged()), this, SLOT(dialogVisibilityChanged()));
#endif
    emit dialogChanged();
}

QUrl SaveDialogFallback::fileToSave(const QUrl& reported) const
{
    const QUrl file = chosen_file_url(reported);
    if (!file.isLocalFile())
        return file;
    const QString path = file.toLocalFile();
    if (path.isEmpty() || path.endsWith(u'/') || !QFileInfo(path).suffix().isEmpty())
        return file;
    return QUrl::fromLocalFile(path + QStringLiteral(".txt"));
}

void SaveDialogFallback::dialogVisibilityChanged()
{
    if (!dialog_ || !dialog_->property("visible").toBool())
        return;
    if (impl_) {
        if (keepName_)
            keepName_ = false;
        else
            QMetaObject::invokeMethod(this, &SaveDialogFallback::startAfresh, Qt::QueuedConnection);
        return;
    }
    // Qt's own dialog puts itself into the window's overlay once shown.
    QMetaObject::invokeMethod(this, &SaveDialogFallback::findOwnDialog, Qt::QueuedConnection);
}

#if QT_VERSION < QT_VERSION_CHECK(6, 5, 0)
// Every item named `name` among `root` and its descendants.
static void findItems(QQuickItem* root, const QString& name, QList<QQuickItem*>& found)
{
    if (root->objectName() == name)
        found.append(root);
    for (QQuickItem* child : root->childItems())
        findItems(child, name, found);
}

void SaveDialogFallback::findOwnDialog()
{
    // Qt's own dialog is found by the names of its parts in Qt 6.4's QML
    // (fileNameTextField, control, QQuickFileDialogImpl), which are not API.
    auto* window = dialog_ ? dialog_->property("parentWindow").value<QQuickWindow*>() : nullptr;
    if (!window || impl_)
        return;
    // A shown file name field belongs to a save dialog; its dialog is the
    // root object ("control") of the field's own QML document. A native
    // dialog shows no such field, and nothing is changed.
    QList<QQuickItem*> fields;
    findItems(window->contentItem(), QStringLiteral("fileNameTextField"), fields);
    for (QQuickItem* field : fields) {
        QQmlContext* context = qmlContext(field);
        QObject* impl = context ? context->objectForName(QStringLiteral("control")) : nullptr;
        if (!field->isVisible() || !impl || !impl->inherits("QQuickFileDialogImpl") ||
            !impl->property("visible").toBool())
            continue;
        impl_ = impl;
        nameField_ = field;
        connect(nameField_, SIGNAL(textEdited()), this, SLOT(nameTyped()));
        // Queued: the dialog's own handling of Enter (which takes the name
        // as typed) comes first, and the name with its extension after it.
        connect(nameField_, SIGNAL(accepted()), this, SLOT(nameEntered()), Qt::QueuedConnection);
        startAfresh();
        emit activeChanged();
        return;
    }
}

#else
void SaveDialogFallback::findOwnDialog() {}
#endif

void SaveDialogFallback::startAfresh()
{
    // Qt's own dialog keeps the last name; typing would add to it.
    if (!impl_ || !nameField_)
        return;
    nameField_->setProperty("text", QString());
    impl_->setProperty("selectedFile", QUrl());
}

void SaveDialogFallback::nameEntered()
{
    if (!impl_ || !nameField_ || !impl_->property("visible").toBool() ||
        nameField_->property("text").toString().isEmpty())
        return;
    nameTyped();
    QMetaObject::invokeMethod(impl_, "accept");
}

void SaveDialogFallback::nameTyped()
{
    if (!impl_ || !nameField_)
        return;
    // The typed name, in the folder shown, becomes the selection at once; the
    // dialog enables its accept button exactly while a file is selected.
    const QString name = nameField_->property("text").toString();
    const QString folder = impl_->property("currentFolder").toUrl().toLocalFile();
    const QUrl file = name.isEmpty() ? QUrl() : QUrl::fromLocalFile(QDir(folder).filePath(name));
    impl_->setProperty("selectedFile", file);
}

bool SaveDialogFallback::mustConfirmOverwrite(const QUrl& reported) const
{
    if (!impl_)
        return false;
    const QUrl file = chosen_file_url(reported);
    return file.isLocalFile() && QFileInfo(file.toLocalFile()).isFile();
}

}  // namespace dialcraft
