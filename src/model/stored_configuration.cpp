#include "model/stored_configuration.h"

#include <QFile>
#include <QSaveFile>
#include <QSettings>
#include <QStandardPaths>
#include <QUrl>
#include <QVariant>

#include "midi/console.h"
#include "model/configuration_json.h"
#include "model/fatal_error.h"

namespace {

const QString configuration_key = QStringLiteral("configurationKey");

void print(const QString& line)
{
    console_line(line.toStdString());
}

QSettings user_settings()
{
    return QSettings(QStringLiteral("dialcraft"), QStringLiteral("dialcraft"));
}

// The first documents folder; having none is a programming error of the platform setup.
QString configuration_file_path()
{
    const QStringList folders = QStandardPaths::standardLocations(QStandardPaths::DocumentsLocation);
    if (folders.isEmpty())
        fatal_error(index_out_of_range_message);
    return folders.first() + QStringLiteral("/configuration.json");
}

// A loaded table covers at least knobs 0 to 99.
void pad_to_300_slots(Configuration& config)
{
    if (config.settings.size() >= 300)
        return;
    while (config.settings.size() < 300)
        config.settings.append(blank_slot);
    print(QStringLiteral("Expanded configuration.settings to 300 elements"));
}

QString settings_status_text(QSettings::Status status)
{
    switch (status) {
    case QSettings::AccessError: return QStringLiteral("the settings file could not be written");
    case QSettings::FormatError: return QStringLiteral("the settings file is malformed");
    case QSettings::NoError: break;
    }
    return QStringLiteral("unknown settings error");
}

}  // namespace

void saveCustomInfo()
{
    // Encoding strings cannot fail; what can fail is writing the settings file.
    const QByteArray bytes = encode_configuration(configuration);
    QSettings settings = user_settings();
    const QVariant previous = settings.value(configuration_key);
    settings.setValue(configuration_key, bytes);
    settings.sync();
    if (settings.status() == QSettings::NoError)
        return;
    // The file was replaced atomically or not at all; put the previous value
    // back in memory too, so this process keeps reading what is on disk.
    if (previous.isValid())
        settings.setValue(configuration_key, previous);
    else
        settings.remove(configuration_key);
    print(QStringLiteral("Error saving configuration: ") + settings_status_text(settings.status()));
}

void loadCustomInfo()
{
    const QVariant stored = user_settings().value(configuration_key);
    // Only binary data counts; a value of any other kind is as good as absent.
    if (stored.typeId() != QMetaType::QByteArray) {
        configuration = Configuration{initialSettings()};
        return;
    }
    QString error;
    std::optional<Configuration> decoded = decode_configuration(stored.toByteArray(), &error);
    if (!decoded) {
        print(QStringLiteral("Error loading configuration: ") + error);
        configuration = Configuration{initialSettings()};
        return;
    }
    configuration = std::move(*decoded);
    pad_to_300_slots(configuration);
}

void saveConfiguration(const Configuration& config)
{
    const QString path = configuration_file_path();
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly)) {
        print(QStringLiteral("Error saving configuration: ") + file.errorString());
        return;
    }
    const QByteArray bytes = encode_configuration(config);
    if (file.write(bytes) != bytes.size() || !file.commit()) {
        print(QStringLiteral("Error saving configuration: ") + file.errorString());
        return;
    }
    print(QStringLiteral("Configuration saved to ") + QUrl::fromLocalFile(path).toString(QUrl::FullyEncoded));
}

void loadConfiguration()
{
    QFile file(configuration_file_path());
    if (!file.open(QIODevice::ReadOnly)) {
        print(QStringLiteral("No configuration found or failed to decode"));
        return;
    }
    const QByteArray bytes = file.readAll();
    std::optional<Configuration> decoded =
        file.error() == QFileDevice::NoError ? decode_configuration(bytes) : std::nullopt;
    if (!decoded) {
        print(QStringLiteral("No configuration found or failed to decode"));
        return;
    }
    loadedConfig = std::move(*decoded);
    print(QStringLiteral("Configuration loaded successfully"));
}
