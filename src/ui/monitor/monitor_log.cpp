#include "ui/monitor/monitor_log.h"

namespace dialcraft {

MonitorLog::MonitorLog(QObject* parent) : QAbstractListModel(parent) {}

int MonitorLog::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(lines_.size());
}

QVariant MonitorLog::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || index.row() < 0 || index.row() >= lines_.size())
        return {};
    const Line& line = lines_.at(index.row());
    if (role == LineRole || role == Qt::DisplayRole)
        return line.text;
    if (role == MatchedRole)
        return line.matched;
    return {};
}

QHash<int, QByteArray> MonitorLog::roleNames() const
{
    return {{LineRole, "line"}, {MatchedRole, "matched"}};
}

void MonitorLog::append(const QList<Line>& lines)
{
    if (lines.isEmpty())
        return;
    const qsizetype incoming = std::min<qsizetype>(lines.size(), capacity);
    const qsizetype overflow = lines_.size() + incoming - capacity;
    if (overflow > 0) {
        beginRemoveRows(QModelIndex(), 0, static_cast<int>(overflow) - 1);
        lines_.remove(0, overflow);
        endRemoveRows();
    }
    const int first = static_cast<int>(lines_.size());
    beginInsertRows(QModelIndex(), first, first + static_cast<int>(incoming) - 1);
    lines_.append(lines.mid(lines.size() - incoming));
    endInsertRows();
    emit countChanged();
}

void MonitorLog::clear()
{
    if (lines_.isEmpty())
        return;
    beginResetModel();
    lines_.clear();
    endResetModel();
    emit countChanged();
}

QString MonitorLog::lineAt(int row) const
{
    return row >= 0 && row < lines_.size() ? lines_.at(row).text : QString();
}

}  // namespace dialcraft
