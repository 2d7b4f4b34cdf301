#include "cli/text_file.h"

#include <QFile>
#include <QFileInfo>

#include "cli/cli_arguments.h"
#include "cli/cli_console.h"
#include "model/document_slots.h"
#include "model/text_document.h"

namespace dialcraft {

namespace {
constexpr qsizetype lines_named = 10;
}  // namespace

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

void warn_about_cutting(CliConsole& console, const std::string& command, const QString& text)
{
    const DocumentSlots cut = split_document_slots(text);
    const std::string prefix = "dialcraft-cli " + command + ": 警告(warning): ";
    if (!cut.shifting_empty_lines.isEmpty()) {
        std::string lines;
        for (qsizetype i = 0; i < cut.shifting_empty_lines.size() && i < lines_named; ++i)
            lines += (lines.empty() ? "" : ", ") + std::to_string(cut.shifting_empty_lines[i]);
        if (cut.shifting_empty_lines.size() > lines_named)
            lines += ", ...";
        console.error_text(prefix + std::to_string(cut.shifting_empty_lines.size()) +
                           " 个空行被丢弃, 其后的旋钮前移(empty lines dropped; the knobs after them shift): " +
                           "第(line) " + lines + "\n");
    }
    if (cut.has_cr_lf)
        console.error_text(prefix +
                           "CR LF 行尾不分行, 这些行合为一个槽(CR LF line ends do not split; "
                           "those lines become one slot)\n");
}

}  // namespace dialcraft
