#include "ui/access/accessible_enabled_state.h"

#include <QtGlobal>

// Qt 6.4's accessible Qt Quick item leaves the "disabled" state unset; Qt
// Quick's own accessible item is subclassed, through its private headers, to
// set it. Built for Qt before 6.5 only, the Qt it was written and checked
// against: private headers change without notice between versions.
#if QT_VERSION < QT_VERSION_CHECK(6, 5, 0)
#include <QAccessible>
#include <QQuickItem>
#include <QtQuick/private/qaccessiblequickitem_p.h>
#include <QtQuick/private/qquickitem_p.h>

namespace {

class QuickItemWithEnabledState final : public QAccessibleQuickItem {
public:
    using QAccessibleQuickItem::QAccessibleQuickItem;

    QAccessible::State state() const override
    {
        QAccessible::State state = QAccessibleQuickItem::state();
        if (!item()->isEnabled()) {
            state.disabled = true;
            state.focusable = false;
        }
        return state;
    }
};

// Consulted before Qt Quick's own factory (the last installed factory is asked
// first), for exactly the items that one would describe.
QAccessibleInterface* quickItemFactory(const QString& className, QObject* object)
{
    if (className != QLatin1String("QQuickItem"))
        return nullptr;
    auto* item = qobject_cast<QQuickItem*>(object);
    if (!item || !QQuickItemPrivate::get(item)->isAccessible)
        return nullptr;
    return new QuickItemWithEnabledState(item);
}

}  // namespace

namespace dialcraft {

void report_disabled_quick_controls()
{
    static const bool installed = [] {
        QAccessible::installFactory(quickItemFactory);
        return true;
    }();
    (void)installed;
}

}  // namespace dialcraft
#else
namespace dialcraft {
void report_disabled_quick_controls() {}
}  // namespace dialcraft
#endif
