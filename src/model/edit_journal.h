#pragma once
// The journal of a window's edits not yet saved, so a crash, a SIGKILL or a
// power loss costs nothing: one small file per running window in the
// program's own state folder (never the settings store), rewritten whole
// shortly after each edit. Each window holds a lock beside its journal while
// it runs; a journal whose lock is free belongs to a window that ended
// without its shut-down, and the next start offers its edits back. The locks
// also tell dialcraft-cli that a window is open.
#include <QByteArray>
#include <QDateTime>
#include <QList>
#include <QString>

#include <memory>
#include <optional>
#include <vector>

class QLockFile;

namespace dialcraft {

// ~/.local/share/dialcraft (the user's data folder), unless a test set another.
QString state_folder();
// For tests: another state folder; an empty one restores the default.
void set_state_folder(const QString& folder);

// One knob as the window's panel holds it, as typed.
struct JournalEdit {
    int knob = 0;
    QString type;
    QString channel;
    QString controller;

    friend bool operator==(const JournalEdit&, const JournalEdit&) = default;
};

// Indented JSON: {"edits": [{"channel", "controller", "knob", "type"}, ...],
// "version": 1, "written": "<UTC time>"}.
QByteArray encode_journal(const QList<JournalEdit>& edits, const QDateTime& written);
// Refuses anything else, and knobs outside 0 to 26.
std::optional<QList<JournalEdit>> decode_journal(const QByteArray& bytes, QString* reason);

// The journal of one running window: "window-<pid>-<start ms>.journal" and its
// lock "window-<pid>-<start ms>.lock", held from construction on.
class WindowJournal {
public:
    WindowJournal();
    // Lets the lock go and leaves the journal file, as an unclean end would:
    // a save that failed keeps the edits for the next start.
    ~WindowJournal();
    WindowJournal(const WindowJournal&) = delete;
    WindowJournal& operator=(const WindowJournal&) = delete;

    QString path() const { return path_; }
    // Rewrites the journal with `edits`; none removes it. False with the
    // reason when the file could not be written (the previous one stays).
    bool write(const QList<JournalEdit>& edits, QString* reason);
    // A clean end: the journal and its lock are removed.
    void finish();

private:
    QString path_;
    std::unique_ptr<QLockFile> lock_;
};

// A journal left by a window that ended without its shut-down, claimed by
// this process (its lock held) so that no other start offers it too.
struct OrphanJournal {
    QString path;
    QDateTime written;
    QList<JournalEdit> edits;
    std::shared_ptr<QLockFile> lock;
};

// The journals of windows that are gone, oldest first. A journal that cannot
// be read is moved aside ("<name>.unreadable-<time>") with one line on
// standard error; one without edits is removed.
std::vector<OrphanJournal> claim_orphan_journals();
// Done with an orphan: removed (its edits restored) or kept aside as
// "<name>.dismissed-<time>", whose name is returned.
void remove_orphan(OrphanJournal& orphan);
QString dismiss_orphan(OrphanJournal& orphan);

// Whether a window is running now, by the locks its journal holds.
bool window_is_open();

}  // namespace dialcraft
