#pragma once
// Keeps the control that has the keyboard focus in view. When Tab moves the
// focus to a knob panel scrolled out of its row, or to a row below the
// window's lower edge, every scrolling area around the control scrolls just
// far enough to show it whole, its focus frame included.
#include <QObject>
#include <QPointer>
#include <QQuickWindow>
#include <QtQml/qqmlregistration.h>

namespace dialcraft {

class FocusIntoView : public QObject {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QQuickWindow* window READ window WRITE setWindow NOTIFY windowChanged)

public:
    explicit FocusIntoView(QObject* parent = nullptr);

    QQuickWindow* window() const { return window_; }
    void setWindow(QQuickWindow* window);

    // Scrolls every scrolling area that holds `item` so that `item` is shown.
    static void bringIntoView(QQuickItem* item);

signals:
    void windowChanged();

private:
    QPointer<QQuickWindow> window_;
    QMetaObject::Connection focusWatch_;
};

}  // namespace dialcraft
