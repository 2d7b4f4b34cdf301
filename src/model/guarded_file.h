#pragma once
// The files of our own that sit beside the user's data (the ledger, the
// table's conflict files, the journal of unsaved edits): written whole
// through a temporary file that replaces the old one in one step, so a reader
// or a crash never sees half a file, and an unreadable one moved out of the
// way under a name that keeps its bytes.
#include <QByteArray>
#include <QString>

namespace dialcraft {

// Writes `bytes` as the whole of `path` (creating its folder), or leaves the
// previous file as it was and returns false with the reason.
bool write_file_whole(const QString& path, const QByteArray& bytes, QString* reason);

// Renames `path` to "<path>.<label>-<yyyyMMdd-HHmmss>" (with "-2", "-3", ...
// when that is taken) and returns the new name; empty when it could not be
// moved, with the reason.
QString move_file_aside(const QString& path, const QString& label, QString* reason);

// A name "<stem>-<yyyyMMdd-HHmmss><suffix>" (with "-2", "-3", ... before the
// suffix when taken) that no file has yet.
QString free_stamped_name(const QString& stem, const QString& suffix);

}  // namespace dialcraft
