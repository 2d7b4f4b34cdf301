// dialcraft: programs the knobs of the 4AC0CC27 to 4ACFCC27 USB-MIDI controllers.
#include <QtQml/qqmlextensionplugin.h>

#include "ui/shell/app_shell.h"

Q_IMPORT_QML_PLUGIN(DialcraftPlugin)

int main(int argc, char** argv)
{
    dialcraftApp app;
    return app.run(argc, argv);
}
