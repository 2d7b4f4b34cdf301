#include "model/configuration.h"

#include "model/print_line.h"

namespace dialcraft {

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

void pad_to_300_slots(QStringList& settings)
{
    if (settings.size() >= 300)
        return;
    settings.reserve(300);
    while (settings.size() < 300)
        settings.append(blank_slot);
    print_line(QStringLiteral("Expanded configuration.settings to 300 elements"));
}

}  // namespace dialcraft
