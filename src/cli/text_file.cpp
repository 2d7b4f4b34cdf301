#include "cli/text_file.h"

#include <QFile>
#include <QFileInfo>

#include "cli/cli_arguments.h"
#include "model/text_document.h"

namespace dialcraft {

QString read_text_file(const std::string& path)
{
    const QString name = QString::fromStdString(path);
    QFile file(name);
    QString reason;
    if (QFileInfo(name).isDir())
        reason = QStringLiteral("Is a directory");
    else if (!file.open(QIODevice::ReadOnly))
        reason = file.errorString();
    QByteArray bytes;
    if (reason.isEmpty()) {
        bytes = file.readAll();
        if (file.error() != QFileDevice::NoError)
            reason = file.errorString();
    }
    if (!reason.isEmpty())
        throw UsageError("FILE \"" + path + "\" 无法读取(cannot be read): " + reason.toStdString());
    return TextDocument::fromBytes(bytes).text;
}

}  // namespace dialcraft
