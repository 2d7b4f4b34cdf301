#include "ui/access/focus_frame.h"

#include <QHash>
#include <QQuickWindow>

namespace dialcraft {

// Under the window's popups (Qt's overlay stands at 1000001), above
// everything else: the header, the content, the scroll bars.
static constexpr qreal frame_z = 1000000;

static QHash<const QQuickWindow*, QPointer<FocusFrame>>& frames()
{
    static QHash<const QQuickWindow*, QPointer<FocusFrame>> byWindow;
    return byWindow;
}

FocusFrameAttached::FocusFrameAttached(QObject* parent) : QObject(parent) {}

void FocusFrameAttached::setShown(bool shown)
{
    if (shown_ == shown)
        return;
    shown_ = shown;
    emit shownChanged();
    tellFrame();
}

void FocusFrameAttached::setRadius(qreal radius)
{
    if (radius_ == radius)
        return;
    radius_ = radius;
    emit radiusChanged();
    tellFrame();
}

QQuickItem* FocusFrameAttached::framed() const
{
    return qobject_cast<QQuickItem*>(parent());
}

void FocusFrameAttached::tellFrame()
{
    const auto* control = qobject_cast<QQuickItem*>(parent());
    FocusFrame* frame = control ? FocusFrame::of(control->window()) : nullptr;
    if (!frame)
        return;
    if (shown_)
        frame->follow(this);
    else
        frame->release(this);
}

FocusFrame::FocusFrame(QQuickItem* parent) : QQuickItem(parent)
{
    setClip(true);
    setZ(frame_z);
}

FocusFrame::~FocusFrame()
{
    unwatch();
    for (auto it = frames().begin(); it != frames().end();) {
        if (it.value() == this || it.value().isNull())
            it = frames().erase(it);
        else
            ++it;
    }
}

FocusFrameAttached* FocusFrame::qmlAttachedProperties(QObject* object)
{
    return new FocusFrameAttached(object);
}

FocusFrame* FocusFrame::of(const QQuickWindow* window)
{
    return window ? frames().value(window).data() : nullptr;
}

void FocusFrame::componentComplete()
{
    QQuickItem::componentComplete();
    // Straight under the window's root, beside the header and the popups'
    // overlay, so that no part of the window covers it.
    if (QQuickWindow* frameWindow = window()) {
        setParentItem(frameWindow->contentItem());
        frames().insert(frameWindow, this);
    }
}

void FocusFrame::follow(FocusFrameAttached* asker)
{
    if (current_ == asker) {
        changed(asker);
        return;
    }
    unwatch();
    current_ = asker;
    watch();
    place();
    emit shownChanged();
    emit radiusChanged();
}

void FocusFrame::release(FocusFrameAttached* asker)
{
    // The focus may have reached the next control first.
    if (current_ != asker)
        return;
    unwatch();
    current_ = nullptr;
    emit shownChanged();
    emit radiusChanged();
}

void FocusFrame::changed(FocusFrameAttached* asker)
{
    if (current_ != asker)
        return;
    unwatch();
    watch();
    place();
    emit radiusChanged();
}

void FocusFrame::watch()
{
    QQuickItem* framed = current_ ? current_->framed() : nullptr;
    if (!framed)
        return;
    // The frame moves with its item, which moves with everything that holds
    // it: a row or the page scrolling, a layout placing it anew.
    for (QQuickItem* item = framed; item; item = item->parentItem()) {
        for (auto signal :
             {&QQuickItem::xChanged, &QQuickItem::yChanged, &QQuickItem::widthChanged, &QQuickItem::heightChanged})
            watches_.push_back(connect(item, signal, this, &FocusFrame::place));
        watches_.push_back(connect(item, &QQuickItem::clipChanged, this, &FocusFrame::place));
        // Held by something else now: watch the new holders.
        watches_.push_back(connect(item, &QQuickItem::parentChanged, this, [this] {
            unwatch();
            watch();
            place();
        }));
    }
    watches_.push_back(connect(current_, &QObject::destroyed, this, [this] {
        unwatch();
        emit shownChanged();
        emit radiusChanged();
    }));
}

void FocusFrame::unwatch()
{
    for (const QMetaObject::Connection& watch : watches_)
        QObject::disconnect(watch);
    watches_.clear();
}

void FocusFrame::place()
{
    QQuickItem* framed = current_ ? current_->framed() : nullptr;
    QQuickItem* holder = parentItem();
    if (!framed || !holder)
        return;
    // The room the frame may be drawn in: the window, cut by every clipping
    // item from the framed item outwards.
    QRectF room = holder->mapRectToScene(holder->boundingRect());
    for (QQuickItem* item = framed; item; item = item->parentItem()) {
        if (item->clip())
            room &= item->mapRectToScene(item->clipRect());
    }
    const QRectF shown = holder->mapRectFromScene(room);
    setPosition(shown.topLeft());
    setSize(shown.size());
    // The item's own extent, as anchors see it: a text field's bounding
    // rectangle is its text's.
    const QRectF extent(0, 0, framed->width(), framed->height());
    const QRectF framedRect = mapRectFromScene(framed->mapRectToScene(extent));
    if (framedRect != framedRect_) {
        framedRect_ = framedRect;
        emit framedRectChanged();
    }
}

}  // namespace dialcraft
