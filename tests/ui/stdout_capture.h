#pragma once
// Captures what the program writes to standard output while it is alive, so
// tests can compare the printed lines exactly. Finish before any QCOMPARE:
// the test log itself goes to standard output too.
#include <QByteArray>
#include <QStringList>

class StdoutCapture {
public:
    StdoutCapture();
    ~StdoutCapture();
    StdoutCapture(const StdoutCapture&) = delete;
    StdoutCapture& operator=(const StdoutCapture&) = delete;

    // Restores standard output and returns everything written meanwhile.
    QByteArray finish();
    // As finish(), split at line feeds; a final line feed ends the last line.
    QStringList finishLines();

private:
    int savedFd_ = -1;
    int captureFd_ = -1;
    QByteArray captured_;
};
