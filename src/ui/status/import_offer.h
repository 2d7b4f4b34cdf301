#pragma once
// After an import the table holds the file's values but the panels still
// show the values from before (the import refreshes them before the file is
// applied). Closing the window then stores what the panels show, and the
// import is lost without a word. The offer names that and lets the user show
// the imported values now, through the same table-to-panel refresh the
// import itself uses. It stands from a read import until it is taken or the
// next import begins.
#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

namespace dialcraft {

class GlobalState;
class WindowStatus;

class ImportOffer : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Each window status has one import offer.")
    Q_PROPERTY(bool offered READ offered NOTIFY offeredChanged)
    Q_PROPERTY(QString text READ text CONSTANT)
    Q_PROPERTY(QString buttonText READ buttonText CONSTANT)

public:
    ImportOffer(GlobalState& state, WindowStatus& status);

    bool offered() const { return offered_; }
    QString text() const;
    QString buttonText() const;

    // A file was read into the table.
    void offer();
    // The next import began: the panels are refreshed from the table anyway.
    void withdraw();
    // Refreshes knobs 0 to 26 from the table and says so in the status line.
    Q_INVOKABLE void showImported();

signals:
    void offeredChanged();

private:
    void setOffered(bool offered);

    GlobalState& state_;
    WindowStatus& status_;
    bool offered_ = false;
};

}  // namespace dialcraft
