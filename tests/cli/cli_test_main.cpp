#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QStandardPaths>

// The command-line tests run inside one QCoreApplication with Qt's test-mode
// paths, so the settings store never touches the real user's files.
int main(int argc, char** argv)
{
    ::testing::InitGoogleTest(&argc, argv);
    QStandardPaths::setTestModeEnabled(true);
    // A sequencer device that is always there, so that a simulated service
    // that cannot be opened reads as "cannot open", not as a missing
    // sequencer, on machines without /dev/snd/seq; tests of the missing
    // sequencer point it elsewhere.
    qputenv("DIALCRAFT_SEQ_DEVICE", "/dev/null");
    QCoreApplication app(argc, argv);
    return RUN_ALL_TESTS();
}
