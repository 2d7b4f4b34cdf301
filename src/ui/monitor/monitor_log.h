#pragma once
// The monitor's list: the last 200 messages as lines, oldest first, for the
// window's list view. A ring: once full, each new line pushes out the oldest.
#include <QAbstractListModel>
#include <QList>
#include <QString>
#include <QtQml/qqmlregistration.h>

namespace dialcraft {

class MonitorLog : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The monitor of a window has one: StatusBoard.of(globalState).monitor.log")
    Q_PROPERTY(int count READ rowCount NOTIFY countChanged)

public:
    static constexpr int capacity = 200;
    enum Role { LineRole = Qt::UserRole + 1, MatchedRole };

    explicit MonitorLog(QObject* parent = nullptr);

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    struct Line {
        QString text;
        bool matched = false;
    };
    // Adds a frame's lines at the end at once; of more than `capacity` only
    // the last are kept.
    void append(const QList<Line>& lines);
    void clear();
    Q_INVOKABLE QString lineAt(int row) const;

signals:
    void countChanged();

private:
    QList<Line> lines_;
};

}  // namespace dialcraft
