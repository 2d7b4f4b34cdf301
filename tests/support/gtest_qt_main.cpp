#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QStandardPaths>

// Every unit test runs inside one QCoreApplication with Qt's test-mode paths,
// so settings and documents never touch the real user's files.
int main(int argc, char** argv)
{
    ::testing::InitGoogleTest(&argc, argv);
    QStandardPaths::setTestModeEnabled(true);
    QCoreApplication::setOrganizationName("dialcraft");
    QCoreApplication::setApplicationName("dialcraft");
    QCoreApplication app(argc, argv);
    return RUN_ALL_TESTS();
}
