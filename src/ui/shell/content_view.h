#pragma once
// The main window's content. It owns the one GlobalState for the window's
// life, knows which record each display position shows, and brackets the
// window's life with the start-up and shut-down hooks: the first runs once
// when the window is first shown, the second once when it is closed or
// destroyed, whichever comes first.
#include <QList>
#include <QPointer>
#include <QQuickItem>
#include <QQuickWindow>
#include <QtQml/qqmlregistration.h>

#include "model/global_state.h"

namespace dialcraft {

class ContentView : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(dialcraft::GlobalState* globalState READ globalState CONSTANT)
    Q_PROPERTY(QList<int> customOrderIndices READ customOrderIndices CONSTANT)
    Q_PROPERTY(bool appeared READ appeared NOTIFY appearedChanged)

public:
    explicit ContentView(QQuickItem* parent = nullptr);
    ~ContentView() override;

    GlobalState* globalState() const { return globalState_; }
    // Display position -> index into SetupAreaData: 0, 1, 2, 27, 3, ..., 26.
    static const QList<int>& customOrderIndices();
    // True once the start-up hook has run.
    bool appeared() const { return appeared_; }

signals:
    void appearedChanged();

protected:
    void itemChange(ItemChange change, const ItemChangeData& value) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void attachToWindow(QQuickWindow* window);
    void appear();
    void disappear();

    GlobalState* globalState_;
    // The window whose events are filtered. Held as a QObject: events reach
    // the filter while the window is being destroyed, when it is no longer a
    // QQuickWindow, and the filter compares it by identity only.
    QPointer<QObject> window_;
    bool appeared_ = false;
    bool disappeared_ = false;
};

}  // namespace dialcraft
