#pragma once
// Tells assistive technology what the status line says now. A screen reader
// hears nothing when a label's text changes, so a press that sent nothing
// would go unnoticed by someone who cannot see the line. Each change is
// passed on as the replacement of the text last told by the new one (over
// AT-SPI: text-changed delete, then insert), at most once a second: a run of
// changes within the second is told once, as the latest of them, when the
// second is over. `announced` is what was told last; the label gives it as
// its accessible name, so the name changes at the same pace.
#include <QElapsedTimer>
#include <QObject>
#include <QPointer>
#include <QQuickItem>
#include <QString>
#include <QTimer>
#include <QtQml/qqmlregistration.h>

namespace dialcraft {

class StatusAnnouncer : public QObject {
    Q_OBJECT
    QML_ELEMENT
    // The item that shows the status; the announcements are its text changes.
    Q_PROPERTY(QQuickItem* target READ target WRITE setTarget NOTIFY targetChanged)
    // What the status line says now.
    Q_PROPERTY(QString text READ text WRITE setText NOTIFY textChanged)
    // What was told last, and how many times anything was told.
    Q_PROPERTY(QString announced READ announced NOTIFY announcedChanged)
    Q_PROPERTY(int announcements READ announcements NOTIFY announcedChanged)

public:
    static constexpr int min_interval_ms = 1000;

    explicit StatusAnnouncer(QObject* parent = nullptr);

    QQuickItem* target() const { return target_; }
    void setTarget(QQuickItem* target);
    QString text() const { return text_; }
    void setText(const QString& text);
    QString announced() const { return announced_; }
    int announcements() const { return announcements_; }

signals:
    void targetChanged();
    void textChanged();
    void announcedChanged();

private:
    void announce();

    QPointer<QQuickItem> target_;
    QString text_;
    QString announced_;
    int announcements_ = 0;
    QElapsedTimer sinceLast_;
    QTimer pending_;
};

}  // namespace dialcraft
