#pragma once
// Opens the real main window offscreen and finds and drives its controls the
// way a user would: clicks at an item's centre, typed keys, menu choices.
#include <QGuiApplication>
#include <QList>
#include <QObject>
#include <QQmlApplicationEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTest>

#include <memory>

#include "midi/sim/sim_midi_host.h"
#include "model/global_state.h"
#include "ui/shell/app_shell.h"
#include "ui/shell/content_view.h"

using namespace dialcraft;

// Writes `image` as a PNG to `path`; says on standard error when it cannot.
bool save_picture(const QImage& image, const char* path);

// The whole content of the file at `path`, or "<unreadable>".
QByteArray read_test_file(const QString& path);
// Replaces the file at `path` with `bytes`; a failure fails the test.
void write_test_file(const QString& path, const QByteArray& bytes);

// A property ("name", "description") given with an item's attached Accessible
// properties, as a screen reader is told it; empty when none was given.
QString accessible_attached(QQuickItem* item, const char* property);

// Sets record `record`'s type, channel and controller as a panel's menu and
// fields would.
void configure_knob(GlobalState& state, int record, const char* type, const char* channel, const char* controller);

class WindowHarness {
public:
    WindowHarness() = default;
    ~WindowHarness();

    // Loads and shows the main window and waits until it is drawn; the
    // start-up hook has run when this returns.
    QQuickWindow* open();
    // Closes the window the way the user does and lets the close settle.
    void close();
    // Destroys window and engine without a close event.
    void destroy();

    QQuickWindow* window() const { return window_; }
    ContentView* contentView() const;
    GlobalState* state() const;

    // Every item under `root` (the window's content when null) with this
    // object name, in tree order.
    QList<QQuickItem*> items(const QString& objectName, QQuickItem* root = nullptr) const;
    QQuickItem* item(const QString& objectName, QQuickItem* root = nullptr) const;
    // The window's one focus frame, drawn around the focused control.
    QQuickItem* focusRing() const;
    // Whether the focus frame shows just outside `framed` (3 px all round):
    // the control itself, or the item a control frames, e.g. its background.
    bool focusFrameOn(QQuickItem* framed) const;
    // The knob panels, ordered by display position.
    QList<QQuickItem*> panels() const;
    QQuickItem* panelShowingRecord(int recordIndex) const;

    void click(QQuickItem* target);
    // Clicks into the field and types `text` (ASCII) key by key.
    void typeInto(QQuickItem* field, const QString& text);
    // Clicks into the field, selects all, deletes it and types `text` (ASCII).
    void replaceText(QQuickItem* field, const QString& text);
    // Opens a combo box's list and clicks the entry with that text; false when
    // no entry carries it.
    bool choose(QQuickItem* comboBox, const QString& text);
    // The texts of a combo box's entries, in order.
    QStringList entries(QQuickItem* comboBox) const;
    // Completes an open file dialog through its own controls: goes to
    // `folder`, picks or types `fileName` (ASCII) and presses Open or 保存(Save).
    bool acceptFileDialog(QObject* dialog, const QString& folder, const QString& fileName);
    // Presses the open file dialog's Cancel button.
    bool cancelFileDialog(QObject* dialog);
    // Makes the file dialogs, which the window makes at the first press of
    // import or export, for a test that drives their workflow directly.
    void makeFileDialogs();
    // The import's open dialog and the export's save dialog.
    QObject* openDialog() const;
    QObject* saveDialog() const;
    // Grabs the current frame.
    QImage grab();

private:
    QQuickItem* dialogButton(const QString& text) const;

    std::unique_ptr<QQmlApplicationEngine> engine_;
    QQuickWindow* window_ = nullptr;
};

// What every window test program starts from: before each test a fresh
// simulated MIDI service (no real one, so the same lines on every machine) and
// an empty store, and the window opened when the program asks for it; after
// each test the window destroyed and the platform's service back.
class WindowTest : public QObject {
    Q_OBJECT

public:
    enum class Open { inInit, byTest };

protected:
    explicit WindowTest(Open open) : open_(open) {}

    std::unique_ptr<SimMidiHost> sim;
    WindowHarness harness;

private slots:
    void init();
    void cleanup();

private:
    Open open_;
};

// Test mode for documents, a private settings folder for this process,
// offscreen platform unless one is chosen, software rendering. The test's
// main then sets the application up as the program does.
void prepare_ui_test_environment();

#define DIALCRAFT_UI_TEST_MAIN(TestObject)      \
    int main(int argc, char** argv)             \
    {                                           \
        prepare_ui_test_environment();          \
        QGuiApplication app(argc, argv);        \
        configure_application(app);             \
        TestObject test;                        \
        return QTest::qExec(&test, argc, argv); \
    }
