// What the program tells the desktop about itself, checked in-process
// because Qt hands some of it only to a Wayland compositor: the desktop file
// name (the Wayland app id), which must name the installed desktop entry; the
// application version, which must be the project's; and the window icon's
// sizes, which must be the ones compiled into the program.
#include <QGuiApplication>
#include <QIcon>
#include <QTest>

#include "ui/shell/app_shell.h"

using namespace dialcraft;

class AppIdentityTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { configure_application(*qGuiApp); }

    void desktopFileNameIsTheInstalledEntry()
    {
        QCOMPARE(QGuiApplication::desktopFileName() + QStringLiteral(".desktop"),
                 QStringLiteral(DIALCRAFT_DESKTOP_ENTRY));
    }

    void versionIsTheProjectVersion()
    {
        QCOMPARE(QCoreApplication::applicationVersion(), QStringLiteral(DIALCRAFT_PROJECT_VERSION));
    }

    void windowIconHasTheRenderedSizes()
    {
        const QIcon icon = QGuiApplication::windowIcon();
        QCOMPARE(icon.availableSizes(), QList<QSize>({QSize(48, 48), QSize(128, 128), QSize(256, 256)}));
        for (const QSize& size : icon.availableSizes()) {
            const QImage image = icon.pixmap(size).toImage();
            QCOMPARE(image.size(), size);
            // Drawn, not blank: the knob body fills the middle.
            QCOMPARE(qAlpha(image.pixel(size.width() / 2, size.height() / 2)), 255);
        }
    }
};

QTEST_MAIN(AppIdentityTest)
#include "app_identity_test.moc"
