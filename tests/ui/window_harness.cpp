#include "window_harness.h"

#include <QFile>

#include <cmath>
#include <cstdio>

#include <QQmlProperty>
#include <QSettings>
#include <QtQuickTest/quicktest.h>

#include "midi/host_selection.h"
#include "model/edit_journal.h"
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QtQml/qqmlextensionplugin.h>

#include <algorithm>

using namespace dialcraft;

Q_IMPORT_QML_PLUGIN(DialcraftPlugin)

void prepare_ui_test_environment()
{
    QStandardPaths::setTestModeEnabled(true);
    // The sequencer's device taken as present, so that "no controller" reads
    // the same on machines without /dev/snd/seq; a test of the missing
    // sequencer points it elsewhere.
    qputenv("DIALCRAFT_SEQ_DEVICE", "/dev/null");
    // Test mode alone shares one settings file among all test processes of the
    // user; each window test keeps its store in a folder of its own.
    static QTemporaryDir settingsFolder;
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, settingsFolder.path());
    QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, settingsFolder.path());
    // And the journals of unsaved edits: one test's window never offers
    // another's.
    static QTemporaryDir stateFolder;
    set_state_folder(stateFolder.path() + QStringLiteral("/dialcraft"));
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    if (qEnvironmentVariableIsEmpty("QT_QUICK_BACKEND"))
        qputenv("QT_QUICK_BACKEND", "software");
}

WindowHarness::~WindowHarness()
{
    destroy();
}

QQuickWindow* WindowHarness::open()
{
    engine_ = std::make_unique<QQmlApplicationEngine>();
    window_ = load_main_window(*engine_);
    if (!window_)
        return nullptr;
    if (!QTest::qWaitForWindowExposed(window_))
        return nullptr;
    window_->requestActivate();
    return QTest::qWaitForWindowActive(window_) ? window_ : nullptr;
}

void WindowHarness::close()
{
    if (window_)
        window_->close();
    QCoreApplication::processEvents();
}

void WindowHarness::destroy()
{
    engine_.reset();
    window_ = nullptr;
}

ContentView* WindowHarness::contentView() const
{
    return window_ ? window_->findChild<ContentView*>() : nullptr;
}

GlobalState* WindowHarness::state() const
{
    ContentView* view = contentView();
    return view ? view->globalState() : nullptr;
}

// Collects the items named `objectName`; every item when the name is empty.
static void collect(QQuickItem* item, const QString& objectName, QList<QQuickItem*>& found)
{
    if (objectName.isEmpty() || item->objectName() == objectName)
        found.append(item);
    for (QQuickItem* child : item->childItems())
        collect(child, objectName, found);
}

QList<QQuickItem*> WindowHarness::items(const QString& objectName, QQuickItem* root) const
{
    QList<QQuickItem*> found;
    QQuickItem* start = root ? root : (window_ ? window_->contentItem() : nullptr);
    if (start)
        collect(start, objectName, found);
    return found;
}

QQuickItem* WindowHarness::item(const QString& objectName, QQuickItem* root) const
{
    const auto found = items(objectName, root);
    return found.isEmpty() ? nullptr : found.first();
}

QQuickItem* WindowHarness::focusRing() const
{
    return item(QStringLiteral("focusRing"), item(QStringLiteral("focusFrame")));
}

bool WindowHarness::focusFrameOn(QQuickItem* framed) const
{
    QQuickItem* ring = focusRing();
    if (!ring || !framed || !ring->isVisible())
        return false;
    const QRectF drawn = ring->mapRectToScene(QRectF(0, 0, ring->width(), ring->height()));
    // The item's own extent: a text field's bounding rectangle is its text's.
    const QRectF extent(0, 0, framed->width(), framed->height());
    const QRectF around = framed->mapRectToScene(extent).adjusted(-3, -3, 3, 3);
    const auto same = [](qreal a, qreal b) { return std::abs(a - b) < 0.01; };
    return same(drawn.left(), around.left()) && same(drawn.top(), around.top()) &&
           same(drawn.width(), around.width()) && same(drawn.height(), around.height());
}

QList<QQuickItem*> WindowHarness::panels() const
{
    QList<QQuickItem*> found = items(QStringLiteral("knobPanel"));
    std::sort(found.begin(), found.end(), [](QQuickItem* a, QQuickItem* b) {
        return a->property("displayPosition").toInt() < b->property("displayPosition").toInt();
    });
    return found;
}

QQuickItem* WindowHarness::panelShowingRecord(int recordIndex) const
{
    GlobalState* s = state();
    for (QQuickItem* panel : panels()) {
        if (panel->property("record").value<QObject*>() == s->record(recordIndex))
            return panel;
    }
    return nullptr;
}

void WindowHarness::click(QQuickItem* target)
{
    // A control just made or shown is placed by its layout at the next
    // polish; its centre is only known after it.
    QQuickTest::qWaitForPolish(window_);
    const QPointF centre = target->mapToScene(QPointF(target->width() / 2, target->height() / 2));
    QTest::mouseClick(window_, Qt::LeftButton, Qt::NoModifier, centre.toPoint());
    QCoreApplication::processEvents();
}

void WindowHarness::typeInto(QQuickItem* field, const QString& text)
{
    click(field);
    for (QChar c : text)
        QTest::keyClick(window_, c.toLatin1());
    QCoreApplication::processEvents();
}

void WindowHarness::replaceText(QQuickItem* field, const QString& text)
{
    click(field);
    QTest::keyClick(window_, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(window_, Qt::Key_Backspace);
    for (QChar c : text)
        QTest::keyClick(window_, c.toLatin1());
    QCoreApplication::processEvents();
}

static QQuickItem* popupList(QQuickItem* comboBox)
{
    QObject* popup = comboBox->property("popup").value<QObject*>();
    return popup ? popup->property("contentItem").value<QQuickItem*>() : nullptr;
}

bool WindowHarness::choose(QQuickItem* comboBox, const QString& text)
{
    const int index = entries(comboBox).indexOf(text);
    if (index < 0)
        return false;
    click(comboBox);
    QObject* popup = comboBox->property("popup").value<QObject*>();
    if (!popup || !QTest::qWaitFor([popup] { return popup->property("opened").toBool(); }))
        return false;
    QQuickItem* list = popupList(comboBox);
    if (!list)
        return false;
    // Long lists scroll: bring the entry into view (ListView.Contain) first.
    QMetaObject::invokeMethod(list, "positionViewAtIndex", Q_ARG(int, index), Q_ARG(int, 4));
    QCoreApplication::processEvents();
    QQuickItem* content = list->property("contentItem").value<QQuickItem*>();
    for (QQuickItem* delegate : content->childItems()) {
        if (delegate->isVisible() && delegate->property("text").toString() == text) {
            click(delegate);
            return QTest::qWaitFor([popup] { return !popup->property("visible").toBool(); });
        }
    }
    return false;
}

QStringList WindowHarness::entries(QQuickItem* comboBox) const
{
    QStringList texts;
    const int count = comboBox->property("count").toInt();
    for (int i = 0; i < count; ++i) {
        QString text;
        QMetaObject::invokeMethod(comboBox, "textAt", Q_RETURN_ARG(QString, text), Q_ARG(int, i));
        texts.append(text);
    }
    return texts;
}

QQuickItem* WindowHarness::dialogButton(const QString& text) const
{
    // A visible button of that text inside a dialog's button box.
    for (QQuickItem* candidate : items(QString())) {
        if (!candidate->isVisible() || !candidate->inherits("QQuickAbstractButton") ||
            candidate->property("text").toString() != text)
            continue;
        for (QQuickItem* up = candidate->parentItem(); up; up = up->parentItem()) {
            if (up->inherits("QQuickDialogButtonBox"))
                return candidate;
        }
    }
    return nullptr;
}

bool WindowHarness::acceptFileDialog(QObject* dialog, const QString& folder, const QString& fileName)
{
    if (!QTest::qWaitFor([dialog] { return dialog->property("visible").toBool(); }))
        return false;
    dialog->setProperty("currentFolder", QUrl::fromLocalFile(folder));
    const bool saving = dialog->property("fileMode").toInt() == 2;  // FileDialog.SaveFile
    if (saving) {
        QQuickItem* field = item(QStringLiteral("fileNameTextField"));
        if (!field || !QTest::qWaitFor([field] { return field->isVisible(); }))
            return false;
        replaceText(field, fileName);  // typing alone makes the name the selection
    } else {
        QQuickItem* entry = nullptr;
        (void)QTest::qWaitFor([&] {
            for (QQuickItem* candidate : items(QString())) {
                if (candidate->objectName().startsWith(QLatin1String("fileDialogDelegate")) &&
                    candidate->property("fileName").toString() == fileName)
                    entry = candidate;
            }
            return entry != nullptr;
        });
        if (!entry)
            return false;
        click(entry);
    }
    QQuickItem* button = dialogButton(saving ? QStringLiteral("保存(Save)") : QStringLiteral("打开(Open)"));
    if (!button || !button->isEnabled())
        return false;
    click(button);
    return QTest::qWaitFor([dialog] { return !dialog->property("visible").toBool(); });
}

bool WindowHarness::cancelFileDialog(QObject* dialog)
{
    if (!QTest::qWaitFor([dialog] { return dialog->property("visible").toBool(); }))
        return false;
    QQuickItem* button = dialogButton(QStringLiteral("取消(Cancel)"));
    if (!button)
        return false;
    click(button);
    return QTest::qWaitFor([dialog] { return !dialog->property("visible").toBool(); });
}

bool save_picture(const QImage& image, const char* path)
{
    if (!image.save(QString::fromLocal8Bit(path))) {
        std::fprintf(stderr, "cannot write %s\n", path);
        return false;
    }
    return true;
}

QByteArray read_test_file(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<unreadable>");
}

void write_test_file(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(bytes), bytes.size());
}

QString accessible_attached(QQuickItem* item, const char* property)
{
    for (QObject* child : item->children()) {
        if (qstrcmp(child->metaObject()->className(), "QQuickAccessibleAttached") == 0)
            return child->property(property).toString();
    }
    return QString();
}

void configure_knob(GlobalState& state, int record, const char* type, const char* channel, const char* controller)
{
    CreateSetupAreaViewData* knob = state.record(record);
    knob->set_message_type_menu_string(QString::fromUtf8(type));
    knob->set_message_channel_menu_string(QString::fromUtf8(channel));
    knob->set_message_controller_number_code_string(QString::fromUtf8(controller));
}

void WindowHarness::makeFileDialogs()
{
    QMetaObject::invokeMethod(window_->findChild<QObject*>(QStringLiteral("fileDialogsOnDemand")), "make");
}

QObject* WindowHarness::openDialog() const
{
    return window_->findChild<QObject*>(QStringLiteral("openDialog"));
}

QObject* WindowHarness::saveDialog() const
{
    return window_->findChild<QObject*>(QStringLiteral("saveDialog"));
}

QImage WindowHarness::grab()
{
    return window_->grabWindow();
}

void WindowTest::init()
{
    QSettings(QStringLiteral("dialcraft"), QStringLiteral("dialcraft")).clear();
    sim = std::make_unique<SimMidiHost>();
    set_midi_host(sim.get());
    if (open_ == Open::inInit)
        QVERIFY(harness.open());
}

void WindowTest::cleanup()
{
    harness.destroy();
    set_midi_host(nullptr);
    sim.reset();
}
