#pragma once
// main() of the window benchmarks: a settings folder of their own (never the
// user's store), the offscreen platform and software rendering unless others
// are chosen, the application set up as the program sets it up, then the
// benchmarks.
#include <QGuiApplication>
#include <QSettings>
#include <QTemporaryDir>
#include <benchmark/benchmark.h>

#include "ui/shell/app_shell.h"

inline int run_offscreen_benchmarks(int argc, char** argv)
{
    QTemporaryDir settingsFolder;
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, settingsFolder.path());
    QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, settingsFolder.path());
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    if (qEnvironmentVariableIsEmpty("QT_QUICK_BACKEND"))
        qputenv("QT_QUICK_BACKEND", "software");
    QGuiApplication app(argc, argv);
    dialcraft::configure_application(app);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
