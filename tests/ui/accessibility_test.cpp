// The window as assistive technology sees it, through Qt's accessibility
// interfaces: every control that can be used has a name that says what it is
// and, in a knob panel, which knob it belongs to; roles and states are right;
// decorations are hidden; and the press action of a button does what a click
// does, down to the bytes the controller receives.
#include <QAccessible>
#include <QAccessibleActionInterface>
#include <QSettings>
#include <QTest>

#include <memory>

#include "console_capture.h"
#include "midi/host_selection.h"
#include "midi/sim/sim_midi_host.h"
#include "ui/access/text_change_announcer.h"
#include "window_harness.h"

using namespace dialcraft;

using Bytes = std::vector<uint8_t>;

namespace {
// What a screen reader walks: every visible object under `iface`, depth first.
void walk(QAccessibleInterface* iface, QList<QAccessibleInterface*>& found)
{
    if (!iface || !iface->isValid() || iface->state().invisible)
        return;
    found.append(iface);
    for (int i = 0; i < iface->childCount(); ++i)
        walk(iface->child(i), found);
}

bool isInteractive(QAccessibleInterface* iface)
{
    switch (iface->role()) {
    case QAccessible::Button:
    case QAccessible::ComboBox:
    case QAccessible::EditableText:
    case QAccessible::ScrollBar:
    case QAccessible::CheckBox:
    case QAccessible::RadioButton:
    case QAccessible::SpinBox:
    case QAccessible::Slider: return true;
    case QAccessible::StaticText: return false;  // Qt calls every text "focusable", for caret browsing
    default: return iface->state().focusable;
    }
}

// The knob panel holding `object`, or null.
QQuickItem* panelOf(QObject* object)
{
    for (auto* item = qobject_cast<QQuickItem*>(object); item; item = item->parentItem()) {
        if (item->objectName() == QLatin1String("knobPanel"))
            return item;
    }
    return nullptr;
}

int knobOf(QQuickItem* panel)
{
    return panel->property("record").value<CreateSetupAreaViewData*>()->knob_index();
}
}  // namespace

class AccessibilityTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase()
    {
        // The offscreen platform has no accessibility bridge; switching it on
        // by hand makes the controls publish their roles as under a bridge.
        QAccessible::setActive(true);
    }
    void init()
    {
        QSettings().clear();
        sim = std::make_unique<SimMidiHost>();
        set_midi_host(sim.get());
        QVERIFY(harness.open());
        QCoreApplication::processEvents();
    }
    void cleanup()
    {
        harness.destroy();
        set_midi_host(nullptr);
        sim.reset();
    }

    void everyControlIsNamedAndKnobControlsNameTheirKnob()
    {
        const QList<QAccessibleInterface*> all = tree();
        int knobControls = 0;
        int interactive = 0;
        for (QAccessibleInterface* iface : all) {
            if (!isInteractive(iface))
                continue;
            ++interactive;
            const QString name = iface->text(QAccessible::Name);
            QVERIFY2(!name.trimmed().isEmpty(), qPrintable(describe(iface)));
            if (QQuickItem* panel = panelOf(iface->object())) {
                ++knobControls;
                QVERIFY2(name.startsWith(QStringLiteral("%1号旋钮 ").arg(knobOf(panel))), qPrintable(describe(iface)));
            }
        }
        // Four controls in each of the 28 panels; the device column and top bar besides.
        QCOMPARE(knobControls, 28 * 4);
        QVERIFY(interactive > knobControls + 4);
    }

    void knobControlsCarryTheirRolesAndNames()
    {
        QQuickItem* panel = harness.panelShowingRecord(5);
        harness.state()->record(5)->set_message_type_menu_string(QStringLiteral("Control Change"));
        QCoreApplication::processEvents();
        const struct {
            const char* objectName;
            QAccessible::Role role;
            QString name;
        } expected[] = {
            {"setButton", QAccessible::Button, QStringLiteral("5号旋钮 设置")},
            {"typeMenu", QAccessible::ComboBox, QStringLiteral("5号旋钮 消息类型: Control Change")},
            {"channelField", QAccessible::EditableText, QStringLiteral("5号旋钮 MIDI通道")},
            {"controllerField", QAccessible::EditableText, QStringLiteral("5号旋钮 控制器号")},
        };
        for (const auto& control : expected) {
            QAccessibleInterface* iface = accessible(harness.item(QString::fromLatin1(control.objectName), panel));
            QVERIFY2(iface, control.objectName);
            QCOMPARE(iface->role(), control.role);
            QCOMPARE(iface->text(QAccessible::Name), control.name);
            QVERIFY(!iface->state().disabled);
            QVERIFY(iface->state().focusable);
        }
        // The visible texts stay as they are.
        QCOMPARE(harness.item(QStringLiteral("typeMenu"), panel)->property("displayText").toString(),
                 QStringLiteral("Control Change"));
        QCOMPARE(harness.item(QStringLiteral("knobLabel"), panel)->property("text").toString(),
                 QStringLiteral("\u273D 5号旋钮"));

        QAccessibleInterface* model = accessible(harness.item(QStringLiteral("modelMenu")));
        QCOMPARE(model->role(), QAccessible::ComboBox);
        QCOMPARE(model->text(QAccessible::Name),
                 QStringLiteral("设备型号(Machine Serial): ") + harness.state()->machine_type_menu_string());
        QCOMPARE(accessible(harness.item(QStringLiteral("importButton")))->text(QAccessible::Name),
                 QStringLiteral("导入配置(Import Config)"));
        QCOMPARE(accessible(harness.item(QStringLiteral("exportButton")))->text(QAccessible::Name),
                 QStringLiteral("导出配置(Export Config)"));
    }

    void placeholderControlsAreReportedDisabled()
    {
        QQuickItem* panel = harness.panelShowingRecord(27);
        for (const char* name : {"setButton", "typeMenu", "channelField", "controllerField"}) {
            QAccessibleInterface* iface = accessible(harness.item(QString::fromLatin1(name), panel));
            QVERIFY2(iface, name);
            QVERIFY2(iface->state().disabled, name);
            QVERIFY2(!iface->state().focusable, name);
            QVERIFY2(iface->text(QAccessible::Name).startsWith(QStringLiteral("27号旋钮 ")), name);
        }
    }

    void symbolsAreHiddenAndCaptionsRead()
    {
        QStringList texts;
        for (QAccessibleInterface* iface : tree())
            texts << iface->text(QAccessible::Name);
        for (const QString& text : texts) {
            for (const QString& symbol : {QStringLiteral("\u273D"), QStringLiteral("\u2601")})
                QVERIFY2(!text.contains(symbol), qPrintable(text));
        }
        QVERIFY(texts.contains(QStringLiteral("5号旋钮")));
        QVERIFY(texts.contains(QStringLiteral("设备型号(Machine Serial)")));
        QCOMPARE(texts.count(QStringLiteral("1-16")), 28);
    }

    void textAreaIsNamedReadOnlyTextAndAnnouncesChanges()
    {
        QAccessibleInterface* text = accessible(harness.item(QStringLiteral("textArea")));
        QVERIFY(text);
        QCOMPARE(text->role(), QAccessible::EditableText);
        QVERIFY(text->state().readOnly);
        QCOMPARE(text->text(QAccessible::Name), QStringLiteral("信息(Messages)"));
        QVERIFY(text->textInterface());

        harness.state()->setFullText(QStringLiteral("旋钮5-设置成功!"));
        QCoreApplication::processEvents();
        QCOMPARE(text->textInterface()->text(0, text->textInterface()->characterCount()),
                 QStringLiteral("旋钮5-设置成功!"));
        // Each new text is announced as a text change of the text area. (The
        // offscreen platform has no bridge that would pass the event on; the
        // session check under Xvfb sees it arrive over AT-SPI.)
        TextChangeAnnouncer* announcer = nullptr;
        for (auto* candidate : harness.window()->findChildren<TextChangeAnnouncer*>())
            if (candidate->target() == harness.item(QStringLiteral("textArea")))
                announcer = candidate;
        QVERIFY(announcer);
        QCOMPARE(announcer->text(), QStringLiteral("旋钮5-设置成功!"));
        QAccessibleInterface* frame = accessible(harness.item(QStringLiteral("textAreaFrame")));
        QCOMPARE(frame->text(QAccessible::Name), QStringLiteral("信息(Messages)"));
        QCOMPARE(frame->text(QAccessible::Description), QStringLiteral("旋钮5-设置成功!"));
    }

    void pressActionOfTheSetButtonProgramsTheKnob()
    {
        plug("4AC1CC27");
        CreateSetupAreaViewData* knob = harness.state()->record(5);
        knob->set_message_type_menu_string(QStringLiteral("Control Change"));
        knob->set_message_channel_menu_string(QStringLiteral("2"));
        knob->set_message_controller_number_code_string(QStringLiteral("74"));
        QAccessibleInterface* button = accessible(
            harness.item(QStringLiteral("setButton"), harness.panelShowingRecord(5)));
        QVERIFY(button && button->actionInterface());
        QVERIFY(button->actionInterface()->actionNames().contains(QAccessibleActionInterface::pressAction()));
        sim->clear_sent();

        ConsoleCapture capture;
        button->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
        const QStringList lines = capture.finishLines();

        QCOMPARE(lines.value(0), QStringLiteral("5号旋钮"));
        QCOMPARE(lines.count(QStringLiteral("5号旋钮")), 1);  // pressed once, not twice
        QCOMPARE(harness.state()->fullText(), QStringLiteral("旋钮5-设置成功!"));
        const std::vector<Bytes> expected{{0xF8}, {0x91, 0x4A, 0x05}, {0x81, 0x4A, 0x05}, {0xB1, 0x4A, 0x05}, {0xF8}};
        const auto sent = sim->sent();
        QCOMPARE(sent.size(), expected.size());
        for (size_t i = 0; i < sent.size(); ++i) {
            QCOMPARE(sent[i].destination, std::string("4AC1CC27 MIDI 1"));
            QVERIFY(sent[i].bytes == expected[i]);
        }
    }

    void pressActionOfTheTopBarButtonsRaisesTheirDialogs()
    {
        QAccessibleInterface* exportButton = accessible(harness.item(QStringLiteral("exportButton")));
        QVERIFY(exportButton && exportButton->actionInterface());
        exportButton->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
        QCOMPARE(harness.state()->fullText(), QStringLiteral("导出文件:\n导出配置文件"));
        QObject* saveDialog = harness.window()->findChild<QObject*>(QStringLiteral("saveDialog"));
        QTRY_VERIFY(saveDialog->property("visible").toBool());
        QVERIFY(harness.cancelFileDialog(saveDialog));

        QAccessibleInterface* importButton = accessible(harness.item(QStringLiteral("importButton")));
        importButton->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
        QCOMPARE(harness.state()->fullText(), QStringLiteral("导入文件:\n导入配置文件"));
        QObject* openDialog = harness.window()->findChild<QObject*>(QStringLiteral("openDialog"));
        QTRY_VERIFY(openDialog->property("visible").toBool());
        QVERIFY(harness.cancelFileDialog(openDialog));
    }

    void numberFieldsDescribeTheirRange()
    {
        for (QQuickItem* panel : harness.panels()) {
            if (panel->property("placeholder").toBool())
                continue;
            QAccessibleInterface* channel = accessible(harness.item(QStringLiteral("channelField"), panel));
            QAccessibleInterface* controller = accessible(harness.item(QStringLiteral("controllerField"), panel));
            QCOMPARE(channel->text(QAccessible::Description), QStringLiteral("1-16"));
            QCOMPARE(controller->text(QAccessible::Description), QStringLiteral("0-127"));
        }
    }

private:
    QList<QAccessibleInterface*> tree() const
    {
        QList<QAccessibleInterface*> found;
        walk(QAccessible::queryAccessibleInterface(harness.window()), found);
        return found;
    }
    static QAccessibleInterface* accessible(QQuickItem* item)
    {
        return item ? QAccessible::queryAccessibleInterface(item) : nullptr;
    }
    static QString describe(QAccessibleInterface* iface)
    {
        QObject* object = iface->object();
        return QStringLiteral("%1 \"%2\" role %3 name \"%4\"")
            .arg(object ? QString::fromLatin1(object->metaObject()->className()) : QStringLiteral("?"),
                 object ? object->objectName() : QString())
            .arg(int(iface->role()))
            .arg(iface->text(QAccessible::Name));
    }

    void plug(const std::string& serial)
    {
        sim->add_device(serial, "Maker", serial);
        sim->add_source(serial + " MIDI 1");
        sim->add_destination(serial + " MIDI 1");
    }

    std::unique_ptr<SimMidiHost> sim;
    WindowHarness harness;
};

DIALCRAFT_UI_TEST_MAIN(AccessibilityTest)
#include "accessibility_test.moc"
