#pragma once
// The ledger file's text. An object with "version" 1 and "controllers", which
// maps each serial to its knobs in ascending order:
//   {"controllers":{"4AC1CC27":[{"channel":2,"controller":74,"knob":5,
//     "type":"Control Change","written":"2026-11-23T18:30:00Z"}]},"version":1}
// written with two-blank indentation and a final line feed, so a person can
// read it. Times are ISO 8601 in UTC.
#include <QByteArray>
#include <QString>

#include <optional>

#include "model/controller_ledger.h"

namespace dialcraft {

QByteArray encode_ledger(const ControllerLedger& ledger);
// The ledger the bytes hold, or nothing with the reason in `error` when they
// are not a ledger this program wrote (bad JSON, a serial outside the family,
// a value out of range, an unreadable time).
std::optional<ControllerLedger> decode_ledger(const QByteArray& bytes, QString* error = nullptr);

}  // namespace dialcraft
