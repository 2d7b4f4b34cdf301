#include "model/configuration.h"

const QString blank_slot = QStringLiteral("                    ");

const QStringList& initialSettings()
{
    // Built from the literal rather than blank_slot so that a caller running
    // during static initialisation of another file still gets twenty spaces.
    static const QStringList settings(90, QStringLiteral("                    "));
    return settings;
}

Configuration configuration{initialSettings()};
std::optional<Configuration> loadedConfig;
