#pragma once
// Reading a local file named by a file URL, by the bytes of its name.
#include <QByteArray>
#include <QString>
#include <QUrl>

namespace dialcraft {

// The local path of a file URL as the file system's bytes. File names on
// Linux are bytes: one that is not valid UTF-8 is kept in the URL as percent
// escapes, and QUrl::toLocalFile would decode those as UTF-8 into replacement
// characters, naming another file. Here the escapes become the bytes again.
QByteArray local_path_bytes(const QUrl& url);

// Reads the whole file at `path` (bytes as the file system takes them).
// False with the system's description of the failure in `error`.
bool read_whole_file(const QByteArray& path, QByteArray* contents, QString* error);

}  // namespace dialcraft
