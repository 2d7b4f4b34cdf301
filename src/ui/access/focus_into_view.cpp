#include "ui/access/focus_into_view.h"

#include <QQuickItem>

#include <algorithm>

namespace dialcraft {

// Room left around the control for its focus frame, drawn just outside it.
static constexpr qreal frame_room = 4;

FocusIntoView::FocusIntoView(QObject* parent) : QObject(parent) {}

void FocusIntoView::setWindow(QQuickWindow* window)
{
    if (window_ == window)
        return;
    QObject::disconnect(focusWatch_);
    window_ = window;
    if (window_) {
        focusWatch_ = connect(window_, &QQuickWindow::activeFocusItemChanged, this, [this] {
            if (window_ && window_->activeFocusItem())
                bringIntoView(window_->activeFocusItem());
        });
    }
    emit windowChanged();
}

// New offset of one scrolling axis so that the span [low, high] (in the
// area's own coordinates) lies inside [0, extent], clamped to the content.
static qreal scrolledOffset(qreal offset, qreal low, qreal high, qreal extent, qreal contentExtent)
{
    qreal shift = 0;
    if (high - low > extent || low < 0)
        shift = low;  // too large to fit: show its start
    else if (high > extent)
        shift = high - extent;
    const qreal limit = std::max<qreal>(0, contentExtent - extent);
    return std::clamp(offset + shift, qreal(0), limit);
}

void FocusIntoView::bringIntoView(QQuickItem* item)
{
    // Innermost area first, so the outer ones see where the inner ones moved it.
    // List views scroll to their own current entry and are left alone.
    for (QQuickItem* area = item->parentItem(); area; area = area->parentItem()) {
        if (!area->inherits("QQuickFlickable") || area->inherits("QQuickItemView"))
            continue;
        const QRectF shown =
            item->mapRectToItem(area, item->boundingRect()).adjusted(-frame_room, -frame_room, frame_room, frame_room);
        const qreal x = scrolledOffset(area->property("contentX").toReal(), shown.left(), shown.right(), area->width(),
                                       area->property("contentWidth").toReal());
        const qreal y = scrolledOffset(area->property("contentY").toReal(), shown.top(), shown.bottom(), area->height(),
                                       area->property("contentHeight").toReal());
        area->setProperty("contentX", x);
        area->setProperty("contentY", y);
    }
}

}  // namespace dialcraft
