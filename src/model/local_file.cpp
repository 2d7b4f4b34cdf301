#include "model/local_file.h"

#include <QFile>

#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

namespace dialcraft {

QByteArray local_path_bytes(const QUrl& url)
{
    const QByteArray path = QByteArray::fromPercentEncoding(url.path(QUrl::FullyEncoded).toLatin1());
    // A host names a network share, written //host/path as QUrl::toLocalFile does.
    if (!url.host().isEmpty())
        return "//" + url.host(QUrl::FullyEncoded).toLatin1() + path;
    return path;
}

bool read_whole_file(const QByteArray& path, QByteArray* contents, QString* error)
{
    // Opened by its bytes: QFile takes names as text and would re-encode them.
    const int descriptor = ::open(path.constData(), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0) {
        *error = qt_error_string(errno);
        return false;
    }
    QFile file;
    if (!file.open(descriptor, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle)) {
        *error = file.errorString();
        ::close(descriptor);
        return false;
    }
    *contents = file.readAll();
    if (file.error() != QFileDevice::NoError) {
        *error = file.errorString();
        return false;
    }
    return true;
}

}  // namespace dialcraft
