#pragma once
// The wording of the window's status line and of the set-all summary: Chinese
// first, English in parentheses. None of it is ever printed.
#include <QList>
#include <QString>
#include <QStringList>
#include <QUrl>

#include <cstdint>

#include "ui/press/set_press.h"

namespace dialcraft {

// Knob numbers as a short list with runs joined: {0, 1, 2, 5, 7, 8} gives
// "0-2, 5, 7, 8" (a run of two stays two numbers).
QString knob_list_text(const QList<int>& knobs);

// Which controllers of the family the service shows; `serials` in its order.
// Which controllers of the family are connected; with none, whether that is
// because the ALSA sequencer itself is missing.
QString presence_text(const QStringList& serials);

// What one press really did.
QString press_status_text(const SetPressOutcome& outcome);
// What a screen reader hears for a warning: "警告(Warning): " and the text.
QString warning_spoken_text(const QString& text);

// How many messages a whole set-all run got accepted and where.
QString set_all_sent_text(int accepted, int refused, const QStringList& destinations);
// The knobs of a set-all run whose messages were not all accepted.
QString set_all_not_sent_text(const QList<int>& knobs);
// Progress while the run goes on: `done` of `total` knobs, `knob` the last.
QString set_all_progress_text(int done, int total, int knob);

struct SetAllTally {
    int succeeded = 0;
    int skipped = 0;
    // Left out of an "only changed" run: the controller holds them already.
    int held = 0;
    int notRun = 0;  // left when the run was stopped
    bool stopped = false;
    // Presses that got as far as sending while the service did not accept
    // all of their messages: never counted as succeeded, whatever the text
    // area says.
    QList<SetPressOutcome> notSent;
    // Each failed press with its fullText, in run order.
    QList<SetPressOutcome> failed;
};
// The summary that stands in fullText after a set-all run. Each failed knob
// gets a line with its number and the first line of its message.
QString set_all_summary(const SetAllTally& tally);

// Verification by turning a knob after its programming.
// "请转动 5 号旋钮以验证(turn knob 5 to verify)"
QString verify_invite_text(int knob);
// "5 号旋钮 已验证(verified)"
QString verified_text(int knob);
// "5 号旋钮 仍发送旧设置(still sends the old setting)"
QString old_setting_text(int knob);
// "5 号旋钮 60 秒内没有收到, 未验证(not verified: nothing within 60 s)"
QString verify_timeout_text(int knob);
// After a set-all run: "转动每个旋钮以验证(turn each knob to verify): 已验证(verified) 3 / 待验证(to go) 24",
// with ", 超时(timed out) N" once knobs ran out of time.
QString verify_batch_text(int verified, int toGo, int timedOut);
// The monitor's counts: "收到(received) 120, 未匹配(unmatched) 3"
QString monitor_counts_text(uint64_t received, uint64_t unmatched);

// Export: the working knobs whose fields are empty and will shift on import.
QString export_gap_warning(const QList<int>& knobs);
QString saved_text(const QUrl& url);
QString not_saved_text(const QString& reason);
// Import: how many slots were read from which file, how many empty lines
// were dropped (each moved every later slot up), and that the panels still
// show the values from before.
QString read_text(const QUrl& url, qsizetype slotCount, qsizetype droppedLines);
// The offer that stands after an import until it is taken or the next import.
extern const QString import_offer_text;
extern const QString show_imported_button_text;
extern const QString imported_values_shown_text;
QString not_read_text(const QString& location);

// Another program changed the stored table: taken into the panels (`taken`
// the knobs that came from it), or merged with the window's own edits.
QString table_taken_text(const QList<int>& taken, bool merged);
// Knobs changed on both sides: the window's values stay; the other side's
// are in `file` (empty: it could not be written).
QString conflicts_kept_text(const QList<int>& knobs, const QString& file);
// The offer after an unclean end, and what became of it.
extern const QString restore_offer_text;
QString edits_restored_text(int knobs);
QString edits_dismissed_text(const QStringList& files);

}  // namespace dialcraft
