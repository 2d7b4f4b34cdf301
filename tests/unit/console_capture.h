#pragma once
// Captures what the code under test prints, as text and as a list of lines.
#include <gtest/gtest.h>

#include <QString>
#include <QStringList>

#include <string>

class ConsoleCapture {
public:
    ConsoleCapture() { testing::internal::CaptureStdout(); }
    ~ConsoleCapture()
    {
        if (!taken_)
            testing::internal::GetCapturedStdout();
    }
    ConsoleCapture(const ConsoleCapture&) = delete;
    ConsoleCapture& operator=(const ConsoleCapture&) = delete;

    // Everything printed since construction; ends the capture.
    std::string text()
    {
        taken_ = true;
        return testing::internal::GetCapturedStdout();
    }
    // The printed lines without their line feeds; ends the capture.
    QStringList lines()
    {
        QString all = QString::fromStdString(text());
        if (all.isEmpty())
            return {};
        if (all.endsWith(u'\n'))
            all.chop(1);
        return all.split(u'\n');
    }

private:
    bool taken_ = false;
};
