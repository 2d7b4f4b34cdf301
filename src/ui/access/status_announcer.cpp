#include "ui/access/status_announcer.h"

#include <QAccessible>

namespace dialcraft {

StatusAnnouncer::StatusAnnouncer(QObject* parent) : QObject(parent)
{
    pending_.setSingleShot(true);
    connect(&pending_, &QTimer::timeout, this, &StatusAnnouncer::announce);
}

void StatusAnnouncer::setTarget(QQuickItem* target)
{
    if (target_ == target)
        return;
    target_ = target;
    emit targetChanged();
}

void StatusAnnouncer::setText(const QString& text)
{
    if (text_ == text)
        return;
    text_ = text;
    emit textChanged();
    if (pending_.isActive())
        return;  // the waiting announcement takes the latest text when it is due
    if (!sinceLast_.isValid() || sinceLast_.elapsed() >= min_interval_ms) {
        announce();
        return;
    }
    pending_.start(static_cast<int>(min_interval_ms - sinceLast_.elapsed()));
}

void StatusAnnouncer::announce()
{
    if (announced_ == text_)
        return;
    const QString previous = announced_;
    announced_ = text_;
    ++announcements_;
    sinceLast_.start();
    emit announcedChanged();
    if (!target_)
        return;
    // Cheap when no assistive technology listens: Qt drops the event at once.
    QAccessibleTextUpdateEvent event(target_, 0, previous, announced_);
    QAccessible::updateAccessibility(&event);
}

}  // namespace dialcraft
