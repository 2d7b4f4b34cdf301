#include "ui/status/controller_presence.h"

#include <QQuickWindow>

#include "midi/family_presence.h"
#include "midi/host_selection.h"
#include "ui/status/status_texts.h"

namespace dialcraft {

void presence_changed(void* context)
{
    static_cast<ControllerPresence*>(context)->changeReported();
}

ControllerPresence::ControllerPresence(QQuickItem* parent) : QQuickItem(parent)
{
    poll_.setInterval(poll_interval_ms);
    connect(&poll_, &QTimer::timeout, this, &ControllerPresence::refresh);
}

ControllerPresence::~ControllerPresence()
{
    // First of all: a report in flight may be touching this object, and
    // ending the watch waits for it.
    watch_.reset();
}

void ControllerPresence::itemChange(ItemChange change, const ItemChangeData& value)
{
    QQuickItem::itemChange(change, value);
    if (change != ItemSceneChange || started_)
        return;
    disconnect(firstFrame_);
    if (!value.window)
        return;
    // frameSwapped may come from the render thread; start on this one.
    firstFrame_ = connect(value.window, &QQuickWindow::frameSwapped, this, &ControllerPresence::start,
                          Qt::QueuedConnection);
}

void ControllerPresence::start()
{
    disconnect(firstFrame_);
    if (started_)
        return;
    started_ = true;

    notified_ = midi_host().watch_changes(&presence_changed, this, &watch_) == 0;
    if (!notified_)
        poll_.start();
    emit startedChanged();
    refresh();
}

void ControllerPresence::changeReported()
{
    if (!refreshQueued_.exchange(true))
        QMetaObject::invokeMethod(this, &ControllerPresence::refresh, Qt::QueuedConnection);
}

void ControllerPresence::refresh()
{
    refreshQueued_ = false;
    QStringList serials;
    for (const PresentController& controller : present_family_controllers(midi_host()))
        serials.append(QString::fromStdString(controller.serial));
    const QString text = presence_text(serials);
    if (serials == serials_ && text == text_)
        return;
    serials_ = serials;
    text_ = text;
    emit serialsChanged();
}

}  // namespace dialcraft
