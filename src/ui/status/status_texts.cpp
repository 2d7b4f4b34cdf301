#include "ui/status/status_texts.h"

#include "base/sequencer_device.h"

namespace dialcraft {

QString knob_list_text(const QList<int>& knobs)
{
    QStringList parts;
    for (qsizetype i = 0; i < knobs.size();) {
        qsizetype end = i;
        while (end + 1 < knobs.size() && knobs[end + 1] == knobs[end] + 1)
            ++end;
        if (end - i >= 2) {
            parts.append(QString::number(knobs[i]) + u'-' + QString::number(knobs[end]));
        } else {
            for (qsizetype k = i; k <= end; ++k)
                parts.append(QString::number(knobs[k]));
        }
        i = end + 1;
    }
    return parts.join(QStringLiteral(", "));
}

QString presence_text(const QStringList& serials)
{
    // No controller because there is no sequencer at all: re-plugging the
    // controller would not help, loading the module does.
    if (serials.isEmpty()) {
        if (const auto reason = sequencer_unavailable_reason())
            return QString::fromStdString(sequencer_unavailable_text(*reason));
        return QStringLiteral("未发现控制器(No controller found)");
    }
    return QStringLiteral("已连接(Connected): ") + serials.join(QStringLiteral(", "));
}

// "5条消息已送达(5 messages accepted) → 4AC1CC27 MIDI 1", with the refused
// ones added when there were any.
static QString accepted_text(int accepted, int refused, const QStringList& destinations)
{
    const QString count = QString::number(accepted);
    QString text = count + QStringLiteral("条消息已送达(") + count +
                   (accepted == 1 ? QStringLiteral(" message accepted) → ")
                                  : QStringLiteral(" messages accepted) → ")) +
                   destinations.join(QStringLiteral(", "));
    if (refused > 0)
        text += QStringLiteral("; ") + QString::number(refused) + QStringLiteral("条被拒绝(") +
                QString::number(refused) + QStringLiteral(" refused)");
    return text;
}

static QString nothing_sent_text(bool programmed, int refused)
{
    if (refused > 0)
        return QStringLiteral("未送达任何消息, ") + QString::number(refused) +
               QStringLiteral("条被拒绝(Nothing was accepted, ") + QString::number(refused) +
               QStringLiteral(" refused)");
    if (programmed)
        return QStringLiteral("未发送任何消息, 未找到控制器(Nothing was sent, no controller found)");
    return QStringLiteral("未发送任何消息(Nothing was sent)");
}

QString press_status_text(const SetPressOutcome& outcome)
{
    const QString knob = QStringLiteral("旋钮") + QString::number(outcome.knob) + QStringLiteral(": ");
    if (outcome.accepted > 0)
        return knob + accepted_text(outcome.accepted, outcome.refused, outcome.destinations);
    return knob + nothing_sent_text(outcome.programmed, outcome.refused);
}

QString warning_spoken_text(const QString& text)
{
    return QStringLiteral("警告(Warning): ") + text;
}

QString set_all_not_sent_text(const QList<int>& knobs)
{
    const QString list = knob_list_text(knobs);
    return QStringLiteral("未发送(not sent): 旋钮 ") + list + QStringLiteral(" 的消息未全部送达(") +
           (knobs.size() == 1 ? QStringLiteral("knob ") : QStringLiteral("knobs ")) + list +
           QStringLiteral(": not all messages accepted)");
}

QString set_all_sent_text(int accepted, int refused, const QStringList& destinations)
{
    const QString head = QStringLiteral("全部设置(Set All): ");
    if (accepted > 0)
        return head + accepted_text(accepted, refused, destinations);
    return head + nothing_sent_text(true, refused);
}

QString set_all_progress_text(int done, int total, int knob)
{
    return QStringLiteral("全部设置(Set All) ") + QString::number(done) + u'/' + QString::number(total) +
           QStringLiteral(", 旋钮(Knob) ") + QString::number(knob);
}

QString set_all_summary(const SetAllTally& tally)
{
    QStringList lines;
    lines.append(tally.stopped ? QStringLiteral("全部设置已停止(Set All stopped)")
                               : QStringLiteral("全部设置完成(Set All done)"));
    lines.append(QStringLiteral("成功(succeeded): ") + QString::number(tally.succeeded));
    if (!tally.notSent.isEmpty())
        lines.append(QStringLiteral("未发送(not sent): ") + QString::number(tally.notSent.size()));
    lines.append(QStringLiteral("失败(failed): ") + QString::number(tally.failed.size()));
    lines.append(QStringLiteral("跳过(skipped): ") + QString::number(tally.skipped));
    if (tally.held > 0)
        lines.append(QStringLiteral("已跳过(skipped, already held): ") + QString::number(tally.held));
    if (tally.stopped)
        lines.append(QStringLiteral("未设置(not run): ") + QString::number(tally.notRun));
    for (const SetPressOutcome& press : tally.notSent) {
        const QString accepted = QString::number(press.accepted);
        lines.append(QStringLiteral("旋钮") + QString::number(press.knob) + QStringLiteral(": 未发送(not sent), ") +
                     accepted + QStringLiteral("/5条消息已送达(") + accepted +
                     QStringLiteral(" of 5 messages accepted)"));
    }
    for (const SetPressOutcome& press : tally.failed)
        lines.append(QStringLiteral("旋钮") + QString::number(press.knob) + QStringLiteral(": ") +
                     press.fullText.section(u'\n', 0, 0));
    return lines.join(u'\n');
}

QString export_gap_warning(const QList<int>& knobs)
{
    const QString list = knob_list_text(knobs);
    return QStringLiteral("注意: 旋钮 ") + list + QStringLiteral(" 有空字段, 导入时其后各行将错位(Knobs ") + list +
           QStringLiteral(" have empty fields; on import the lines after them shift)");
}

QString saved_text(const QUrl& url)
{
    return QStringLiteral("已保存到(Saved to) ") + url.toDisplayString(QUrl::PreferLocalFile);
}

QString not_saved_text(const QString& reason)
{
    return QStringLiteral("未能保存(Not saved): ") + reason;
}

QString read_text(const QUrl& url, qsizetype slotCount, qsizetype droppedLines)
{
    const QString count = QString::number(slotCount);
    const QString path = url.toDisplayString(QUrl::PreferLocalFile);
    QString text = QStringLiteral("已从 ") + path + QStringLiteral(" 读取") + count + QStringLiteral("个槽位(") +
                   count + (slotCount == 1 ? QStringLiteral(" slot read from ") : QStringLiteral(" slots read from ")) +
                   path + u')';
    if (droppedLines > 0) {
        const QString dropped = QString::number(droppedLines);
        text += QStringLiteral("; 丢弃了") + dropped + QStringLiteral("个空行, 其后的旋钮都前移了(") + dropped +
                (droppedLines == 1 ? QStringLiteral(" empty line dropped") : QStringLiteral(" empty lines dropped")) +
                QStringLiteral("; every later knob moved up)");
    }
    return text + QStringLiteral("\n面板仍显示导入前的值(the panels still show the values from before)");
}

const QString import_offer_text = QStringLiteral(
    "关闭窗口会保存面板显示的值, 导入的值将丢失(closing keeps what the panels show; the imported values "
    "are lost)");
const QString show_imported_button_text = QStringLiteral("显示导入的值(Show imported values)");
const QString imported_values_shown_text = QStringLiteral("面板已显示导入的值(the panels show the imported values)");

QString not_read_text(const QString& location)
{
    // The location is the URL text the import took; a local file shows as its path.
    const QUrl url(location, QUrl::StrictMode);
    const QString shown = url.isValid() && url.isLocalFile() ? url.toDisplayString(QUrl::PreferLocalFile) : location;
    return QStringLiteral("未能读取(Could not read) ") + shown;
}

QString verify_invite_text(int knob)
{
    return QStringLiteral("请转动 %1 号旋钮以验证(turn knob %1 to verify)").arg(knob);
}

QString verified_text(int knob)
{
    return QStringLiteral("%1 号旋钮 已验证(verified)").arg(knob);
}

QString old_setting_text(int knob)
{
    return QStringLiteral("%1 号旋钮 仍发送旧设置(still sends the old setting)").arg(knob);
}

QString verify_timeout_text(int knob)
{
    return QStringLiteral("%1 号旋钮 60 秒内没有收到, 未验证(not verified: nothing within 60 s)").arg(knob);
}

QString verify_batch_text(int verified, int toGo, int timedOut)
{
    QString text = QStringLiteral(
                       "转动每个旋钮以验证(turn each knob to verify): 已验证(verified) %1 / 待验证(to go) %2")
                       .arg(verified)
                       .arg(toGo);
    if (timedOut > 0)
        text += QStringLiteral(", 超时(timed out) %1").arg(timedOut);
    return text;
}

QString monitor_counts_text(uint64_t received, uint64_t unmatched)
{
    return QStringLiteral("收到(received) %1, 未匹配(unmatched) %2").arg(received).arg(unmatched);
}

QString table_taken_text(const QList<int>& taken, bool merged)
{
    const QString changed = QStringLiteral("旋钮表已被其他程序更新(the table was changed by another program)");
    if (!merged || taken.isEmpty())
        return changed;
    const QString list = knob_list_text(taken);
    return changed + QStringLiteral("; 已取来旋钮 ") + list + QStringLiteral(", 本窗口的修改保留(knobs ") + list +
           QStringLiteral(" taken, this window's edits kept)");
}

QString conflicts_kept_text(const QList<int>& knobs, const QString& file)
{
    const QString list = knob_list_text(knobs);
    if (file.isEmpty())
        return QStringLiteral("两边都改了旋钮 ") + list +
               QStringLiteral(", 保留本窗口的值; 其他程序的值无法存入文件(both sides changed knobs ") + list +
               QStringLiteral("; this window's values stay, the other program's could not be written to a file)");
    return QStringLiteral("两边都改了旋钮 ") + list + QStringLiteral(", 保留本窗口的值; 其他程序的值在 ") + file +
           QStringLiteral("(both sides changed knobs ") + list +
           QStringLiteral("; this window's values stay, the other program's are in ") + file + QStringLiteral(")");
}

const QString restore_offer_text = QStringLiteral("恢复上次未保存的修改(Restore unsaved edits)");

QString edits_restored_text(int knobs)
{
    return QStringLiteral("已恢复 %1 个旋钮的修改(edits of %1 knobs restored)").arg(knobs);
}

QString edits_dismissed_text(const QStringList& files)
{
    return QStringLiteral("未恢复; 上次的修改保留在(not restored; the edits are kept in) ") +
           files.join(QStringLiteral(", "));
}

}  // namespace dialcraft
