#pragma once
// Keeps one window's table and the stored table together while other
// programs (dialcraft-cli, another window) write the store:
// - it notices their writes within a second (the settings file and its
//   folder watched) and takes the new table into the panels when the window
//   has no edits of its own since it last loaded or took the table; with
//   edits, it merges knob by knob (table_merge.h);
// - at the window's close it reads the store again under the table's lock,
//   merges what changed meanwhile and saves, all under the lock;
// - it journals the edits not yet saved (edit_journal.h) and, after a window
//   that ended uncleanly, offers them back.
// Knobs kept from both sides go to a file in the export format beside the
// settings file, named on standard error. Nothing here prints on standard
// output. One per GlobalState, created on first use as the state's child.
#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>

#include <array>
#include <memory>
#include <optional>
#include <vector>

#include "model/edit_journal.h"
#include "model/slot_mapping.h"

class QTimer;

namespace dialcraft {

class FileWatch;
class GlobalState;

class TableSync : public QObject {
    Q_OBJECT
    // A journal of a window that ended without its shut-down waits to be
    // restored or dismissed.
    Q_PROPERTY(bool restoreOffered READ restoreOffered NOTIFY restoreOfferedChanged)

public:
    static TableSync* of(GlobalState& state);
    ~TableSync() override;

    // After the start-up hook filled the panels from `configuration`: that
    // table becomes the base, the store is followed from now on, edits are
    // journaled and the journals of windows that are gone are looked for.
    void start();
    // The close's save, after knobs 0 to 26 were copied into
    // `configuration`: under the table's lock, the store is read again, a
    // change by another program merged in, and the table saved with
    // saveCustomInfo's own lines. A successful save removes the journal.
    // Returns whether the table was stored.
    bool saveMerged();
    // Looks at the store now; the watch calls it shortly after each change.
    void checkStore();
    // Writes the journal now rather than after the short wait.
    void writeJournalNow();
    // While held (a set-all run going through the panels), another
    // program's table waits; it is looked at again once released.
    void setHeld(bool held);

    bool restoreOffered() const { return !orphans_.empty(); }
    // The offered edits into the panels (they become this window's edits).
    Q_INVOKABLE void restoreEdits();
    // The offer declined; the journals are kept aside as files.
    Q_INVOKABLE void dismissEdits();

    // Knobs 0 to 26 whose panels differ from the table last loaded or taken.
    QList<int> editedKnobs() const;
    QString journalPath() const;

signals:
    void restoreOfferedChanged();
    // Another program's table was taken: `taken` are the knobs that came
    // from it; `kept` tells whether this window's own edits were kept
    // beside them (a merge) or there were none. `conflicts`: knobs both
    // sides changed, whose window values stay while the other side's went
    // to `file` (empty when it could not be written).
    void tableTaken(const QList<int>& taken, bool kept, const QList<int>& conflicts, const QString& file);
    void editsRestored(int knobs);
    void editsDismissed(const QStringList& files);

private:
    explicit TableSync(GlobalState& state);

    QStringList panelKnob(int knob) const;
    QStringList mineTable() const;
    void applyMerge(const QStringList& theirs, bool atClose);
    QString keepTheirs(const QStringList& theirs, const QList<int>& knobs);
    void followRecords();
    void scheduleJournal();

    GlobalState& state_;
    bool started_ = false;
    bool finished_ = false;
    bool journalFailureTold_ = false;
    bool held_ = false;
    // The table last loaded or taken, and what each panel showed of it right
    // after (nothing: the panel's value is known to differ, a kept conflict).
    QStringList base_;
    std::array<std::optional<QStringList>, mapped_knob_count> shown_;
    FileWatch* watch_ = nullptr;
    QTimer* checkTimer_;
    QTimer* journalTimer_;
    std::unique_ptr<WindowJournal> journal_;
    std::vector<OrphanJournal> orphans_;
    QList<QMetaObject::Connection> recordConnections_;
};

}  // namespace dialcraft
