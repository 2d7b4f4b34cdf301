#pragma once
// A settings file that QSettings cannot parse (a line without '=', stray
// bytes, a file that is not a settings file at all). Such a file is not a
// failed write: the folder is writable, so the save writes a fresh file and
// keeps the unreadable one beside it, bytes unchanged.
#include <QString>

namespace dialcraft {

// Whether the settings file `file` cannot be parsed. Every group of it is
// parsed now, so that the verdict comes before anything is written. Only
// this file counts, not the system-wide files QSettings falls back on.
bool settings_file_unreadable(const QString& file);

// Puts `fresh` (a complete settings file in the same folder) in the place of
// the unreadable `file`, which stays beside it as
// `<file>.unreadable-<yyyyMMdd-HHmmss>` (with a counter when that is taken).
// Returns that name, or an empty string with the reason in `error`; then
// `file` is as it was.
QString replace_unreadable_file(const QString& file, const QString& fresh, QString* error);

// The name an unreadable `file` is kept under beside its fresh one:
// `<file>.unreadable-<yyyyMMdd-HHmmss>`, with "-<attempt>" from the second
// attempt on, for when that name is taken.
QString unreadable_aside_name(const QString& file, int attempt);

}  // namespace dialcraft
