#include "model/stored_configuration.h"

#include <QDir>
#include <QFile>
#include <QSaveFile>
#include <QSettings>
#include <QStandardPaths>
#include <QTemporaryFile>
#include <QUrl>
#include <QVariant>

#include "base/fatal_error.h"
#include "model/configuration_json.h"
#include "model/print_line.h"
#include "model/unreadable_settings.h"

namespace dialcraft {

namespace {

const QString configuration_key = QStringLiteral("configurationKey");

QString last_failure;

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

QString settings_status_text(QSettings::Status status)
{
    switch (status) {
    case QSettings::AccessError: return QStringLiteral("the settings file could not be written");
    case QSettings::FormatError: return QStringLiteral("the settings file is malformed");
    case QSettings::NoError: break;
    }
    return QStringLiteral("unknown settings error");
}

// QSettings reports a failure to lock or create the settings file, but on a
// write error part-way through (a full disk, a file size limit) it can still
// replace the file with a truncated copy and report success. So after syncing,
// the file must hold the value's whole line: at least as long as the value,
// ended by the closing parenthesis of the binary value and a line feed.
bool settings_file_holds_value(const QString& file_name, qsizetype value_size)
{
    QFile file(file_name);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    const QByteArray contents = file.readAll();
    const QByteArray key = configuration_key.toLatin1() + '=';
    qsizetype start = contents.startsWith(key) ? 0 : contents.indexOf('\n' + key);
    if (start < 0)
        return false;
    if (contents[start] == '\n')
        ++start;
    const qsizetype end = contents.indexOf('\n', start);
    if (end < 0)
        return false;
    const QByteArrayView line(contents.constData() + start, end - start);
    return line.size() >= key.size() + value_size && (line.endsWith(")") || line.endsWith(")\""));
}

// Stores `bytes` under the key and syncs; returns why that failed, or empty.
QString write_value(QSettings& settings, const QByteArray& bytes)
{
    settings.setValue(configuration_key, bytes);
    settings.sync();
    // A format error here means the file changed into something unparsable
    // since it was checked; QSettings still writes the whole file, so only
    // the written value decides.
    if (settings.status() == QSettings::AccessError)
        return settings_status_text(settings.status());
    if (!settings_file_holds_value(settings.fileName(), bytes.size()))
        return QStringLiteral("the settings file was written incompletely");
    return {};
}

// Writes `bytes` under the key into a fresh settings file beside the
// unreadable `file` and puts it in its place. Returns why that failed, or
// empty with the unreadable file's new name in `aside`. On failure `file` is
// left as it was and the fresh file is gone.
QString save_in_fresh_file(const QString& file, const QByteArray& bytes, QString* aside)
{
    QTemporaryFile reserved(file + QStringLiteral(".new-XXXXXX"));
    reserved.setAutoRemove(false);
    if (!reserved.open())
        return settings_status_text(QSettings::AccessError);
    const QString fresh = reserved.fileName();
    reserved.close();
    QFile::setPermissions(fresh, QFile::permissions(file));
    QString failure;
    {
        QSettings settings(fresh, QSettings::IniFormat);
        failure = write_value(settings, bytes);
    }
    if (failure.isEmpty()) {
        QString error;
        *aside = replace_unreadable_file(file, fresh, &error);
        if (aside->isEmpty())
            failure = QStringLiteral("the settings file is malformed and could not be replaced: ") + error;
    }
    if (!failure.isEmpty())
        QFile::remove(fresh);
    return failure;
}

}  // namespace

QString settings_file_path()
{
    return user_settings().fileName();
}

void saveCustomInfo()
{
    saveCustomInfoChecked();
}

bool saveCustomInfoChecked()
{
    // Encoding strings cannot fail; what can fail is writing the settings file.
    const QByteArray bytes = encode_configuration(configuration);
    QSettings settings = user_settings();
    QString& failure = last_failure;
    if (settings_file_unreadable(settings.fileName())) {
        QString aside;
        failure = save_in_fresh_file(settings.fileName(), bytes, &aside);
        if (failure.isEmpty())
            print_line(QStringLiteral("无法读取的设置文件已移至(Unreadable settings file moved to): ") + aside);
        else
            print_line(QStringLiteral("Error saving configuration: ") + failure);
        return failure.isEmpty();
    }
    const QVariant previous = settings.value(configuration_key);
    failure = write_value(settings, bytes);
    if (failure.isEmpty())
        return true;
    // Put the previous value back, in memory and on disk, so that a failed
    // save never costs the table stored by an earlier one.
    if (previous.isValid())
        settings.setValue(configuration_key, previous);
    else
        settings.remove(configuration_key);
    settings.sync();
    print_line(QStringLiteral("Error saving configuration: ") + failure);
    return false;
}

QString last_save_failure()
{
    return last_failure;
}

void loadCustomInfo()
{
    QSettings settings = user_settings();
    // Noted for the save at close, which then puts a fresh file in its place.
    (void)settings_file_unreadable(settings.fileName());
    const QVariant stored = settings.value(configuration_key);
    // Only binary data counts; a value of any other kind is as good as absent.
    if (stored.typeId() != QMetaType::QByteArray) {
        configuration = Configuration{initialSettings()};
        return;
    }
    QString error;
    std::optional<Configuration> decoded = decode_configuration(stored.toByteArray(), &error);
    if (!decoded) {
        print_line(QStringLiteral("Error loading configuration: ") + error);
        configuration = Configuration{initialSettings()};
        return;
    }
    configuration = std::move(*decoded);
    pad_to_300_slots(configuration.settings);
}

std::optional<QStringList> read_stored_table()
{
    // Read from a copy: QSettings keeps what it parsed of a file for the whole
    // process and parses it again only when its size or its time in
    // milliseconds changed, which two writes of another program can leave
    // alike. A copy under a fresh name is always parsed.
    QFile file(user_settings().fileName());
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    const QByteArray bytes = file.readAll();
    QTemporaryFile copy(QDir::tempPath() + QStringLiteral("/dialcraft-store-XXXXXX.conf"));
    if (file.error() != QFileDevice::NoError || !copy.open() || copy.write(bytes) != bytes.size() || !copy.flush())
        return std::nullopt;
    copy.close();
    QSettings settings(copy.fileName(), QSettings::IniFormat);
    const QVariant stored = settings.value(configuration_key);
    if (settings.status() != QSettings::NoError || stored.typeId() != QMetaType::QByteArray)
        return std::nullopt;
    std::optional<Configuration> decoded = decode_configuration(stored.toByteArray());
    if (!decoded)
        return std::nullopt;
    QStringList table = std::move(decoded->settings);
    while (table.size() < 300)
        table.append(blank_slot);
    return table;
}

void saveConfiguration(const Configuration& config)
{
    const QString path = configuration_file_path();
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly)) {
        print_line(QStringLiteral("Error saving configuration: ") + file.errorString());
        return;
    }
    const QByteArray bytes = encode_configuration(config);
    if (file.write(bytes) != bytes.size() || !file.commit()) {
        print_line(QStringLiteral("Error saving configuration: ") + file.errorString());
        return;
    }
    print_line(QStringLiteral("Configuration saved to ") + QUrl::fromLocalFile(path).toString(QUrl::FullyEncoded));
}

void loadConfiguration()
{
    QFile file(configuration_file_path());
    if (!file.open(QIODevice::ReadOnly)) {
        print_line(QStringLiteral("No configuration found or failed to decode"));
        return;
    }
    const QByteArray bytes = file.readAll();
    std::optional<Configuration> decoded = file.error() == QFileDevice::NoError ? decode_configuration(bytes)
                                                                                : std::nullopt;
    if (!decoded) {
        print_line(QStringLiteral("No configuration found or failed to decode"));
        return;
    }
    loadedConfig = std::move(*decoded);
    print_line(QStringLiteral("Configuration loaded successfully"));
}

}  // namespace dialcraft
