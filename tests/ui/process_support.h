#pragma once
// Runs the window (ui_window_process), dialcraft-cli and dialcraft as
// processes of their own over one private home: settings in
// <root>/config/dialcraft, the program's state in <root>/data/dialcraft.
#include <QByteArray>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QSettings>
#include <QStringList>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>

// A private home for the processes of one test.
class ProcessHome {
public:
    ProcessHome()
    {
        QDir(dir_.path()).mkpath(QStringLiteral("runtime"));
        QFile::setPermissions(dir_.filePath(QStringLiteral("runtime")),
                              QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        QDir(dir_.path()).mkpath(QStringLiteral("config"));
        QDir(dir_.path()).mkpath(QStringLiteral("data"));
        QDir(dir_.path()).mkpath(QStringLiteral("home"));
    }

    QString path(const QString& relative) const { return dir_.filePath(relative); }
    QString settingsFile() const { return path(QStringLiteral("config/dialcraft/dialcraft.conf")); }
    QString stateFolder() const { return path(QStringLiteral("data/dialcraft")); }
    QProcessEnvironment environment() const
    {
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert(QStringLiteral("HOME"), path(QStringLiteral("home")));
        env.insert(QStringLiteral("XDG_CONFIG_HOME"), path(QStringLiteral("config")));
        env.insert(QStringLiteral("XDG_DATA_HOME"), path(QStringLiteral("data")));
        env.insert(QStringLiteral("XDG_RUNTIME_DIR"), path(QStringLiteral("runtime")));
        env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
        env.insert(QStringLiteral("QT_QUICK_BACKEND"), QStringLiteral("software"));
        env.insert(QStringLiteral("DIALCRAFT_SEQ_DEVICE"), QStringLiteral("/dev/null"));
        return env;
    }
    QByteArray stored() const
    {
        return QSettings(settingsFile(), QSettings::IniFormat).value(QStringLiteral("configurationKey")).toByteArray();
    }
    QStringList stateFiles() const { return QDir(stateFolder()).entryList(QDir::Files | QDir::Hidden, QDir::Name); }

private:
    QTemporaryDir dir_;
};

// The window as a process, driven through its commands.
class WindowProcess {
public:
    explicit WindowProcess(const ProcessHome& home)
    {
        process_.setProcessEnvironment(home.environment());
        process_.setWorkingDirectory(home.path(QStringLiteral("home")));
        process_.start(QStringLiteral(DIALCRAFT_WINDOW_PROCESS), {});
    }
    ~WindowProcess()
    {
        if (process_.state() != QProcess::NotRunning) {
            process_.kill();
            process_.waitForFinished(5000);
        }
    }

    // The next answer line (without "window-process: "), waiting up to 30 s.
    QString nextAnswer()
    {
        QElapsedTimer clock;
        clock.start();
        for (;;) {
            errors_ += process_.readAllStandardError();
            const qsizetype end = errors_.indexOf('\n', read_);
            if (end >= 0) {
                const QByteArray line = errors_.mid(read_, end - read_);
                read_ = end + 1;
                if (line.startsWith("window-process: "))
                    return QString::fromUtf8(line.mid(16));
                continue;
            }
            if (process_.state() == QProcess::NotRunning || clock.elapsed() > 30000)
                return QStringLiteral("<no answer>");
            process_.waitForReadyRead(100);
        }
    }
    bool ready() { return nextAnswer() == QLatin1String("ready"); }
    QString ask(const QString& command)
    {
        process_.write(command.toUtf8() + '\n');
        return nextAnswer();
    }
    void signal(int number) const { ::kill(pid_t(process_.processId()), number); }
    bool finish(int ms = 30000) { return process_.waitForFinished(ms); }
    QProcess& process() { return process_; }
    QStringList outputLines()
    {
        output_ += process_.readAllStandardOutput();
        QStringList lines = QString::fromUtf8(output_).split(u'\n');
        if (!lines.isEmpty() && lines.last().isEmpty())
            lines.removeLast();
        return lines;
    }
    QByteArray errors()
    {
        errors_ += process_.readAllStandardError();
        return errors_;
    }

private:
    QProcess process_;
    QByteArray output_;
    QByteArray errors_;
    qsizetype read_ = 0;
};

struct CliResult {
    int status = -1;
    QByteArray out;
    QByteArray err;
};

inline CliResult run_cli_process(const ProcessHome& home, const QStringList& arguments)
{
    QProcess cli;
    cli.setProcessEnvironment(home.environment());
    cli.start(QStringLiteral(DIALCRAFT_CLI), arguments);
    CliResult result;
    if (!cli.waitForFinished(30000))
        return result;
    result.status = cli.exitStatus() == QProcess::NormalExit ? cli.exitCode() : -1;
    result.out = cli.readAllStandardOutput();
    result.err = cli.readAllStandardError();
    return result;
}

// The lines the window prints at start with an empty or a stored table and
// no controller, and at its close.
inline QStringList knob_lines()
{
    QStringList lines;
    for (int i = 0; i <= 26; ++i)
        lines << QStringLiteral("Accessing configuration.settings at index: %1").arg(i);
    return lines;
}
inline QStringList start_lines(bool stored)
{
    QStringList lines{QStringLiteral("set_device_name 4acbcc27 \r"), QStringLiteral("middle_value b \r"),
                      QStringLiteral("Generated device_name: 4ACBCC27"), QStringLiteral("MIDIGetNumberOfSources 0 \r"),
                      QStringLiteral("midi init failed \r")};
    if (stored)
        lines << QStringLiteral("Expanded configuration.settings to 300 elements");
    return lines + knob_lines();
}
inline QStringList shut_down_lines()
{
    return QStringList{QStringLiteral("midi_exit\r")} + knob_lines();
}

// The compact JSON of a table whose strings need no escaping.
inline QByteArray stored_json(const QStringList& table)
{
    QByteArray json = "{\"settings\":[";
    for (qsizetype i = 0; i < table.size(); ++i)
        json += (i > 0 ? ",\"" : "\"") + table[i].toUtf8() + '"';
    return json + "]}";
}

// The table a window stores for `knobs` set in its panels, every other
// working panel as it shows a blank stored knob, and `rest` slots after them.
inline QStringList window_table(const QList<std::pair<int, QStringList>>& knobs, qsizetype rest)
{
    QStringList table;
    for (int knob = 0; knob <= 26; ++knob)
        table << QStringLiteral("选择消息类型") << QString() << QStringLiteral("127");
    for (const auto& [knob, values] : knobs)
        for (qsizetype i = 0; i < 3; ++i)
            table[knob * 3 + i] = values[i];
    for (qsizetype i = 0; i < rest; ++i)
        table << QString(20, QLatin1Char(' '));
    return table;
}

// A file of 300 lines that `dialcraft-cli import` reads by position: the
// given knobs set, every other slot blank.
inline QByteArray knob_file(const QList<std::pair<int, QStringList>>& knobs)
{
    QStringList lines(300, QString(20, QLatin1Char(' ')));
    for (const auto& [knob, values] : knobs)
        for (qsizetype i = 0; i < 3; ++i)
            lines[knob * 3 + i] = values[i];
    return lines.join(u'\n').toUtf8();
}
