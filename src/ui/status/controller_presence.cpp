#include "ui/status/controller_presence.h"

#include <QQuickWindow>

#include <algorithm>
#include <mutex>
#include <vector>

#include "midi/family_presence.h"
#include "midi/host_selection.h"
#include "ui/status/status_texts.h"

namespace {

// The service takes one change watcher; every presence item of the process
// shares it. The list is guarded because reports come on any thread.
struct Watchers {
    std::mutex mutex;
    std::vector<ControllerPresence*> items;
    MidiHost* host = nullptr;  // the host watched, while items is not empty
};

Watchers& watchers()
{
    static Watchers w;
    return w;
}

}  // namespace

void presence_changed(void*)
{
    Watchers& w = watchers();
    const std::lock_guard lock(w.mutex);
    for (ControllerPresence* item : w.items)
        item->changeReported();
}

ControllerPresence::ControllerPresence(QQuickItem* parent) : QQuickItem(parent)
{
    poll_.setInterval(poll_interval_ms);
    connect(&poll_, &QTimer::timeout, this, &ControllerPresence::refresh);
}

ControllerPresence::~ControllerPresence()
{
    if (!notified_)
        return;
    Watchers& w = watchers();
    MidiHost* stop = nullptr;
    {
        const std::lock_guard lock(w.mutex);
        w.items.erase(std::remove(w.items.begin(), w.items.end(), this), w.items.end());
        if (w.items.empty()) {
            stop = w.host;
            w.host = nullptr;
        }
    }
    // Outside the lock: the host may wait for a report in flight, which
    // takes the lock.
    if (stop)
        stop->watch_changes(nullptr, nullptr);
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

    MidiHost& host = midi_host();
    Watchers& w = watchers();
    bool watching = false;
    {
        const std::lock_guard lock(w.mutex);
        if (w.host == &host) {
            w.items.push_back(this);
            watching = true;
        }
    }
    if (!watching && host.watch_changes(&presence_changed, nullptr) == 0) {
        const std::lock_guard lock(w.mutex);
        w.host = &host;
        w.items.push_back(this);
        watching = true;
    }
    notified_ = watching;
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
