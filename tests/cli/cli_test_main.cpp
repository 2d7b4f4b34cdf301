#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QStandardPaths>

// The command-line tests run inside one QCoreApplication with Qt's test-mode
// paths, so the settings store never touches the real user's files.
int main(int argc, char** argv)
{
    ::testing::InitGoogleTest(&argc, argv);
    QStandardPaths::setTestModeEnabled(true);
    QCoreApplication app(argc, argv);
    return RUN_ALL_TESTS();
}
