#include "stdout_capture.h"

#include <cstdio>
#include <cstdlib>
#include <unistd.h>

StdoutCapture::StdoutCapture()
{
    std::fflush(stdout);
    char path[] = "/tmp/dialcraft-stdout-XXXXXX";
    captureFd_ = ::mkstemp(path);
    if (captureFd_ < 0) {
        std::perror("mkstemp");
        std::abort();
    }
    ::unlink(path);
    savedFd_ = ::dup(STDOUT_FILENO);
    if (savedFd_ < 0 || ::dup2(captureFd_, STDOUT_FILENO) < 0) {
        std::perror("dup");
        std::abort();
    }
}

StdoutCapture::~StdoutCapture()
{
    finish();
}

QByteArray StdoutCapture::finish()
{
    if (savedFd_ < 0)
        return captured_;
    std::fflush(stdout);
    ::dup2(savedFd_, STDOUT_FILENO);
    ::close(savedFd_);
    savedFd_ = -1;
    ::lseek(captureFd_, 0, SEEK_SET);
    char buffer[4096];
    ssize_t n;
    while ((n = ::read(captureFd_, buffer, sizeof buffer)) > 0)
        captured_.append(buffer, n);
    ::close(captureFd_);
    captureFd_ = -1;
    return captured_;
}

QStringList StdoutCapture::finishLines()
{
    QString text = QString::fromUtf8(finish());
    if (text.endsWith(QLatin1Char('\n')))
        text.chop(1);
    return text.isEmpty() ? QStringList{} : text.split(QLatin1Char('\n'));
}
