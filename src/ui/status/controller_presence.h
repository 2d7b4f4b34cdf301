#pragma once
// Which controllers of the family the MIDI service shows, followed live for
// the status line. It reads the service only (present_family_controllers):
// the link's target, flags and buffers stay as they are, nothing is sent and
// nothing is printed.
//
// It starts after its window's first frame, so it adds nothing to start-up,
// and by then the start-up hook has opened the link's client, which the
// service needs before it lists endpoints. From then on it looks again
// whenever the service reports a change; where the service cannot report
// changes it looks again every half second instead.
#include <QQuickItem>
#include <QStringList>
#include <QTimer>
#include <QtQml/qqmlregistration.h>

#include <atomic>

#include "midi/midi_change_watch.h"

namespace dialcraft {

class ControllerPresence : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    // Serials present, in the service's order ("4AC1CC27").
    Q_PROPERTY(QStringList serials READ serials NOTIFY serialsChanged)
    // The status line's wording of `serials`; empty until the first look.
    Q_PROPERTY(QString text READ text NOTIFY serialsChanged)
    // True once started and following the service's change reports, false
    // when looking again on a timer (or not started yet).
    Q_PROPERTY(bool notified READ notified NOTIFY startedChanged)
    Q_PROPERTY(bool started READ started NOTIFY startedChanged)

public:
    explicit ControllerPresence(QQuickItem* parent = nullptr);
    ~ControllerPresence() override;

    QStringList serials() const { return serials_; }
    QString text() const { return text_; }
    bool notified() const { return notified_; }
    bool started() const { return started_; }

    // How often the service is read again when it reports no changes.
    static constexpr int poll_interval_ms = 500;

    // Reads the service now.
    Q_INVOKABLE void refresh();

signals:
    void serialsChanged();
    void startedChanged();

protected:
    void itemChange(ItemChange change, const ItemChangeData& value) override;

private:
    void start();
    // Called by the service, on any thread: asks for one refresh on this
    // object's thread, however many reports arrive before it runs.
    void changeReported();
    friend void presence_changed(void* context);

    QStringList serials_;
    QString text_;
    bool started_ = false;
    bool notified_ = false;
    QMetaObject::Connection firstFrame_;
    QTimer poll_;
    std::atomic<bool> refreshQueued_{false};
    // This item's own watch of the service, while notified_.
    MidiChangeWatch watch_;
};

}  // namespace dialcraft
