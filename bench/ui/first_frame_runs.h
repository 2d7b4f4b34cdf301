#pragma once
// Starting one of the start-up benchmark's programs (window_first_frame,
// bare_window) anew, offscreen with the software renderer, and reading what
// it printed at its first frame (first_frame_report.h).
#include <QProcess>

#include <chrono>
#include <filesystem>
#include <optional>

namespace dialcraft::bench {

inline QString program_beside_this_one(const char* name)
{
    const std::filesystem::path self = std::filesystem::read_symlink("/proc/self/exe");
    return QString::fromStdString((self.parent_path() / name).string());
}

struct FirstFrameRun {
    long long started_ns;  // steady clock, just before the start
    QByteArray errors;     // its standard error, the first-frame line in it
};

// The run, or nothing when the program did not end normally within 30 s.
inline std::optional<FirstFrameRun> run_to_first_frame(const QString& program, const QProcessEnvironment& extra = {})
{
    QProcess child;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    environment.insert(QStringLiteral("QT_QUICK_BACKEND"), QStringLiteral("software"));
    environment.insert(extra);
    child.setProcessEnvironment(environment);
    child.setStandardOutputFile(QProcess::nullDevice());
    const long long started = std::chrono::nanoseconds(std::chrono::steady_clock::now().time_since_epoch()).count();
    child.start(program, {});
    if (!child.waitForFinished(30000) || child.exitStatus() != QProcess::NormalExit || child.exitCode() != 0)
        return std::nullopt;
    return FirstFrameRun{started, child.readAllStandardError()};
}

}  // namespace dialcraft::bench
