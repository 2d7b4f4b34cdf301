#pragma once
// The window's one focus frame: a high-contrast frame drawn just outside the
// control that has the keyboard focus. A control asks for it with the
// attached properties
//
//     FocusFrame.shown: button.visualFocus   // drawn while true
//     FocusFrame.radius: 12                  // its corners (5 unless set)
//
// and the window holds a single FocusFrame item, which the QML around it
// draws. One frame follows the focus instead of a hidden frame in each of the
// window's many controls, each of which cost a start its items and memory.
// The frame is cut where the frame of a control's own would have been: by
// every clipping item that holds the framed item (a knob row scrolled
// sideways, the scrolling page), and it lies above the window's content and
// below its popups.
#include <QMetaObject>
#include <QPointer>
#include <QQuickItem>
#include <QRectF>
#include <QtQml/qqmlregistration.h>

#include <vector>

namespace dialcraft {

class FocusFrame;

// What one control asks of the window's focus frame.
class FocusFrameAttached : public QObject {
    Q_OBJECT
    QML_ANONYMOUS
    Q_PROPERTY(bool shown READ shown WRITE setShown NOTIFY shownChanged)
    Q_PROPERTY(qreal radius READ radius WRITE setRadius NOTIFY radiusChanged)

public:
    explicit FocusFrameAttached(QObject* parent);

    bool shown() const { return shown_; }
    void setShown(bool shown);
    qreal radius() const { return radius_; }
    void setRadius(qreal radius);
    // The item the frame is drawn around: the one these properties are
    // attached to.
    QQuickItem* framed() const;

signals:
    void shownChanged();
    void radiusChanged();

private:
    // Tells the window's frame what changed.
    void tellFrame();

    bool shown_ = false;
    qreal radius_ = 5;
};

class FocusFrame : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    QML_ATTACHED(dialcraft::FocusFrameAttached)
    // Whether a control shows the frame now.
    Q_PROPERTY(bool shown READ shown NOTIFY shownChanged)
    // Where the framed item lies, in this item's coordinates; the frame is
    // drawn just outside it. This item itself covers the room the frame may
    // be drawn in and clips it there.
    Q_PROPERTY(QRectF framedRect READ framedRect NOTIFY framedRectChanged)
    Q_PROPERTY(qreal radius READ radius NOTIFY radiusChanged)

public:
    explicit FocusFrame(QQuickItem* parent = nullptr);
    ~FocusFrame() override;

    static FocusFrameAttached* qmlAttachedProperties(QObject* object);
    // The frame of `window`, or null when it has none.
    static FocusFrame* of(const QQuickWindow* window);

    bool shown() const { return current_ != nullptr; }
    QRectF framedRect() const { return framedRect_; }
    qreal radius() const { return current_ ? current_->radius() : 5; }

    // Called by a control's attached properties.
    void follow(FocusFrameAttached* asker);
    void release(FocusFrameAttached* asker);
    void changed(FocusFrameAttached* asker);

signals:
    void shownChanged();
    void framedRectChanged();
    void radiusChanged();

protected:
    void componentComplete() override;

private:
    // Watches the framed item and everything that holds it for moves.
    void watch();
    void unwatch();
    // Puts this item and the frame where the framed item is now.
    void place();

    QPointer<FocusFrameAttached> current_;
    QRectF framedRect_;
    std::vector<QMetaObject::Connection> watches_;
};

}  // namespace dialcraft
