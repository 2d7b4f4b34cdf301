#include "ui/access/text_change_announcer.h"

#include <QAccessible>

namespace dialcraft {

TextChangeAnnouncer::TextChangeAnnouncer(QObject* parent) : QObject(parent) {}

void TextChangeAnnouncer::setTarget(QQuickItem* target)
{
    if (target_ == target)
        return;
    target_ = target;
    emit targetChanged();
}

void TextChangeAnnouncer::setText(const QString& text)
{
    if (text_ == text)
        return;
    const QString previous = text_;
    text_ = text;
    emit textChanged();
#if QT_VERSION < QT_VERSION_CHECK(6, 5, 0)
    // Qt 6.4 announces nothing for a bound text (see the header); built for
    // Qt before 6.5 only, the Qt this was written and checked against.
    if (!target_)
        return;
    // Cheap when no assistive technology listens: Qt drops the event at once.
    QAccessibleTextUpdateEvent event(target_, 0, previous, text_);
    QAccessible::updateAccessibility(&event);
#else
    Q_UNUSED(previous);
#endif
}

}  // namespace dialcraft
