#pragma once
// Tells assistive technology that a text view's whole text was replaced.
// Qt 6.4's Qt Quick text view reports nothing when its text property is
// bound to a new value, so a screen reader would never learn that the tool
// wrote a new message. The announcer reports each change as the replacement
// of the old text by the new one (over AT-SPI: text-changed delete, then
// insert, with the new text). It announces for Qt before 6.5 only, the Qt it
// was written and checked against; elsewhere it only keeps the text.
#include <QObject>
#include <QPointer>
#include <QQuickItem>
#include <QString>
#include <QtQml/qqmlregistration.h>

namespace dialcraft {

class TextChangeAnnouncer : public QObject {
    Q_OBJECT
    QML_ELEMENT
    // The text view whose text is announced.
    Q_PROPERTY(QQuickItem* target READ target WRITE setTarget NOTIFY targetChanged)
    // The text it shows; every change is announced.
    Q_PROPERTY(QString text READ text WRITE setText NOTIFY textChanged)

public:
    explicit TextChangeAnnouncer(QObject* parent = nullptr);

    QQuickItem* target() const { return target_; }
    void setTarget(QQuickItem* target);
    QString text() const { return text_; }
    void setText(const QString& text);

signals:
    void targetChanged();
    void textChanged();

private:
    QPointer<QQuickItem> target_;
    QString text_;
};

}  // namespace dialcraft
