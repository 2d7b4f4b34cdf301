#include "ui/dialogs/dialog_words.h"

#include <QCoreApplication>
#include <cstring>

namespace dialcraft {

const QString DialogWords::file_name_label = QStringLiteral("文件名(File name)");
const QString DialogWords::filter_label = QStringLiteral("筛选(Filter)");
const QString DialogWords::text_files_filter = QStringLiteral("文本文件（Text files） (*.txt)");

QString DialogWords::translate(const char* context, const char* source_text, const char*, int) const
{
    // qsTr() in a QML file takes the file's base name as its context.
    if (!context || !source_text || std::strcmp(context, "FileDialog") != 0)
        return {};
    if (std::strcmp(source_text, "Filter") == 0)
        return filter_label;
    if (std::strcmp(source_text, "File name") == 0)
        return file_name_label;
    return {};
}

void install_dialog_words(QCoreApplication& app)
{
    if (app.findChild<DialogWords*>(QString(), Qt::FindDirectChildrenOnly))
        return;
    QCoreApplication::installTranslator(new DialogWords(&app));
}

}  // namespace dialcraft
