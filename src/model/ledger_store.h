#pragma once
// The ledger between runs: "ledger.json" in the folder of the settings file
// (on Linux ~/.config/dialcraft/ledger.json), a file of its own so the stored
// knob table keeps its exact bytes. Every change is made under a lock file
// beside it ("ledger.json.lock"; a lock left by a process that died is taken
// over), re-reading the file first so that the window and dialcraft-cli never
// undo each other's entries, and written whole through a temporary file, so a
// failed write leaves the previous ledger in place.
#include <QDateTime>
#include <QString>

#include <functional>
#include <string_view>

#include "model/controller_ledger.h"

namespace dialcraft {

// Where the ledger lives.
QString ledger_file_path();

// The ledger as stored; empty when there is none yet. A file that cannot be
// read is renamed to "ledger.json.unreadable-<yyyyMMdd-HHmmss>" with one line
// on standard error naming it, and the ledger starts empty: an unreadable
// ledger never stops the program.
ControllerLedger read_ledger();

// Records that knob `knob` of controller `serial` now holds `type`, `channel`
// and `controller`, with the current time of the ledger's clock. Returns
// whether the ledger file now says so; on failure one line on standard error
// tells why and the previous ledger stays as it was.
bool record_in_ledger(const QString& serial, int knob, const QString& type, int channel, int controller);
// Marks knob `knob` of controller `serial` as seen sending its setting, now,
// when the ledger holds exactly that setting for it (a later programming may
// have replaced it meanwhile; then nothing is marked). Returns whether it was
// marked and written.
bool record_verification_in_ledger(const QString& serial, int knob, const QString& type, int channel, int controller);

// The clock that stamps entries: the wall clock in UTC unless a test sets
// another. Returns the previous one; an empty function restores the wall clock.
using LedgerClock = std::function<QDateTime()>;
LedgerClock set_ledger_clock(LedgerClock clock);

// Where the ledger's lines for the user go (one whole line with its line
// feed per call): standard error unless replaced, as the command-line tool
// does to keep them with its own error output. Returns the previous sink; an
// empty function restores standard error.
using LedgerNoticeSink = std::function<void(std::string_view line)>;
LedgerNoticeSink set_ledger_notice_sink(LedgerNoticeSink sink);

}  // namespace dialcraft
