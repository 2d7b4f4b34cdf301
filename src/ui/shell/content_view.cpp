#include "ui/shell/content_view.h"

#include <QEvent>

#include "ui/press/set_all_run.h"
#include "ui/shell/lifecycle_hooks.h"
#include "ui/status/window_status.h"

namespace dialcraft {

ContentView::ContentView(QQuickItem* parent) : QQuickItem(parent), globalState_(new GlobalState(this)) {}

ContentView::~ContentView()
{
    // Destruction without a close event still stores the table; the state is
    // a child and outlives this body.
    disappear();
}

const QList<int>& ContentView::customOrderIndices()
{
    static const QList<int> order = [] {
        QList<int> list{0, 1, 2, 27};
        for (int i = 3; i <= 26; ++i)
            list.append(i);
        return list;
    }();
    return order;
}

void ContentView::itemChange(ItemChange change, const ItemChangeData& value)
{
    QQuickItem::itemChange(change, value);
    if (change != ItemSceneChange)
        return;
    if (value.window)
        attachToWindow(value.window);
    else if (appeared_)
        disappear();  // taken out of its window: the root view has gone
}

void ContentView::attachToWindow(QQuickWindow* window)
{
    if (window_ == window)
        return;
    if (window_)
        window_->removeEventFilter(this);
    window_ = window;
    window->installEventFilter(this);
    connect(window, &QWindow::visibleChanged, this, [this](bool visible) {
        if (visible)
            appear();
    });
    connect(window, &QObject::destroyed, this, &ContentView::disappear);
    if (window->isVisible())
        appear();
}

bool ContentView::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == window_ && event->type() == QEvent::Close)
        disappear();
    return QQuickItem::eventFilter(watched, event);
}

void ContentView::appear()
{
    if (appeared_ || disappeared_)
        return;
    appeared_ = true;
    start_up_hook(*globalState_);
    emit appearedChanged();
}

void ContentView::disappear()
{
    if (!appeared_ || disappeared_)
        return;
    disappeared_ = true;
    // A set-all run would go on pressing knobs on the closed client.
    WindowStatus::of(*globalState_)->setAll()->stop();
    shut_down_hook(*globalState_);
}

}  // namespace dialcraft
