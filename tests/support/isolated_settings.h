#pragma once
// Points the user's settings store at a fresh temporary folder for one test,
// so that test processes running side by side never share the store.
#include <gtest/gtest.h>

#include <QSettings>
#include <QStandardPaths>
#include <QTemporaryDir>

class IsolatedSettings {
public:
    IsolatedSettings()
    {
        EXPECT_TRUE(QStandardPaths::isTestModeEnabled());
        EXPECT_TRUE(dir_.isValid());
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, dir_.path());
    }
    ~IsolatedSettings()
    {
        // Back to the default user location (test mode keeps it away from real files).
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope,
                           QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation));
    }
    IsolatedSettings(const IsolatedSettings&) = delete;
    IsolatedSettings& operator=(const IsolatedSettings&) = delete;

    QString path() const { return dir_.path(); }

private:
    QTemporaryDir dir_;
};
