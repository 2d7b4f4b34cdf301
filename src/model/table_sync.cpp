#include "model/table_sync.h"

#include <QFileInfo>
#include <QTimer>

#include <cstdio>

#include "model/configuration.h"
#include "model/file_watch.h"
#include "model/global_state.h"
#include "model/guarded_file.h"
#include "model/knob_record.h"
#include "model/stored_configuration.h"
#include "model/table_lock.h"
#include "model/table_merge.h"

namespace dialcraft {

namespace {

// A write of the store comes as several reports (a temporary file created,
// written, renamed); they are looked at together, well within a second.
constexpr int check_delay_ms = 100;
// The journal is at most this far behind the panels; it is not pushed back
// by further edits, so steady typing still gets journaled.
constexpr int journal_delay_ms = 300;
// The live merge's conflict file waits this long for a writer at most: the
// window must not hang on a lock.
constexpr int live_lock_wait_ms = 2000;

void notice(const QString& line)
{
    const std::string text = line.toStdString() + "\n";
    std::fputs(text.c_str(), stderr);
    std::fflush(stderr);
}

QString knob_numbers(const QList<int>& knobs)
{
    QStringList numbers;
    for (int knob : knobs)
        numbers << QString::number(knob);
    return numbers.join(QStringLiteral(", "));
}

}  // namespace

TableSync::TableSync(GlobalState& state)
    : QObject(&state), state_(state), checkTimer_(new QTimer(this)), journalTimer_(new QTimer(this))
{
    checkTimer_->setSingleShot(true);
    checkTimer_->setInterval(check_delay_ms);
    connect(checkTimer_, &QTimer::timeout, this, &TableSync::checkStore);
    journalTimer_->setSingleShot(true);
    journalTimer_->setInterval(journal_delay_ms);
    connect(journalTimer_, &QTimer::timeout, this, &TableSync::writeJournalNow);
}

TableSync::~TableSync() = default;

TableSync* TableSync::of(GlobalState& state)
{
    if (auto* existing = state.findChild<TableSync*>(QString(), Qt::FindDirectChildrenOnly))
        return existing;
    return new TableSync(state);
}

QStringList TableSync::panelKnob(int knob) const
{
    const CreateSetupAreaViewData* record = state_.record(knob);
    if (!record)
        return {};
    return {record->message_type_menu_string(), record->message_channel_menu_string(),
            record->message_controller_number_code_string()};
}

QList<int> TableSync::editedKnobs() const
{
    QList<int> knobs;
    for (int knob = 0; knob < mapped_knob_count; ++knob)
        if (!shown_[size_t(knob)] || *shown_[size_t(knob)] != panelKnob(knob))
            knobs.append(knob);
    return knobs;
}

QString TableSync::journalPath() const
{
    return journal_ ? journal_->path() : QString();
}

// The window's table as its close would store it: `configuration` with the
// panels of knobs 0 to 26 in their slots (copied here without the close's
// printed lines).
QStringList TableSync::mineTable() const
{
    QStringList mine = configuration.settings;
    for (int knob = 0; knob < mapped_knob_count; ++knob) {
        const QStringList values = panelKnob(knob);
        for (qsizetype i = 0; i < 3; ++i)
            if (qsizetype(knob) * 3 + i < mine.size())
                mine[qsizetype(knob) * 3 + i] = values[i];
    }
    return mine;
}

void TableSync::start()
{
    if (started_)
        return;
    started_ = true;
    base_ = configuration.settings;
    for (int knob = 0; knob < mapped_knob_count; ++knob)
        shown_[size_t(knob)] = panelKnob(knob);

    orphans_ = claim_orphan_journals();
    journal_ = std::make_unique<WindowJournal>();
    followRecords();
    connect(&state_, &GlobalState::SetupAreaDataChanged, this, &TableSync::followRecords);

    watch_ = new FileWatch(settings_file_path(), this);
    connect(watch_, &FileWatch::changed, checkTimer_, qOverload<>(&QTimer::start));
    if (!orphans_.empty())
        emit restoreOfferedChanged();
}

void TableSync::followRecords()
{
    for (const QMetaObject::Connection& connection : recordConnections_)
        disconnect(connection);
    recordConnections_.clear();
    for (int knob = 0; knob < mapped_knob_count; ++knob) {
        CreateSetupAreaViewData* record = state_.record(knob);
        if (!record)
            continue;
        recordConnections_ << connect(record, &CreateSetupAreaViewData::message_type_menu_stringChanged, this,
                                      &TableSync::scheduleJournal)
                           << connect(record, &CreateSetupAreaViewData::message_channel_menu_stringChanged, this,
                                      &TableSync::scheduleJournal)
                           << connect(record, &CreateSetupAreaViewData::message_controller_number_code_stringChanged,
                                      this, &TableSync::scheduleJournal);
    }
}

void TableSync::scheduleJournal()
{
    if (started_ && !finished_ && !journalTimer_->isActive())
        journalTimer_->start();
}

void TableSync::writeJournalNow()
{
    journalTimer_->stop();
    if (!journal_)
        return;
    QList<JournalEdit> edits;
    for (int knob : editedKnobs()) {
        const QStringList values = panelKnob(knob);
        edits.append({knob, values[0], values[1], values[2]});
    }
    QString reason;
    const bool written = journal_->write(edits, &reason);
    // Said once: a state folder that cannot be written stays so.
    if (written || journalFailureTold_)
        return;
    journalFailureTold_ = true;
    notice(QStringLiteral("dialcraft: 未保存的修改无法记下(the unsaved edits could not be journaled) ") +
           journal_->path() + " (" + reason + ")");
}

void TableSync::setHeld(bool held)
{
    if (held_ == held)
        return;
    held_ = held;
    if (!held_)
        checkTimer_->start();
}

void TableSync::checkStore()
{
    if (!started_ || finished_ || held_)
        return;
    const std::optional<QStringList> theirs = read_stored_table();
    // A store without a readable table is no other program's table: the
    // window keeps its own and its close stores it.
    if (!theirs || *theirs == base_)
        return;
    applyMerge(*theirs, false);
}

void TableSync::applyMerge(const QStringList& theirs, bool atClose)
{
    const QList<int> edited = editedKnobs();
    const QSet<int> editedSet(edited.begin(), edited.end());
    const QStringList mine = atClose ? configuration.settings : mineTable();
    const TableMerge merge = merge_tables(base_, theirs, mine, editedSet);
    configuration.settings = merge.table;
    base_ = theirs;

    if (!atClose) {
        for (int knob : merge.taken) {
            if (knob >= mapped_knob_count)
                continue;
            // The panels' own copy, which checks each value and prints no line.
            SetupAreaData_index_config_to_UI(state_, knob, SlotMappingView::CreateConfigAreaView);
            shown_[size_t(knob)] = panelKnob(knob);
        }
        for (int knob : edited) {
            if (merge.conflicts.contains(knob))
                shown_[size_t(knob)].reset();
            else if (knob_slots(theirs, knob) == panelKnob(knob))
                shown_[size_t(knob)] = panelKnob(knob);  // both sides agree
        }
    }
    const QString file = merge.conflicts.isEmpty() ? QString() : keepTheirs(theirs, merge.conflicts);
    if (!atClose) {
        // Only the knobs the window shows are worth naming.
        QList<int> shownTaken;
        for (int knob : merge.taken)
            if (knob < mapped_knob_count)
                shownTaken.append(knob);
        emit tableTaken(shownTaken, !edited.isEmpty(), merge.conflicts, file);
    }
}

QString TableSync::keepTheirs(const QStringList& theirs, const QList<int>& knobs)
{
    const QString folder = QFileInfo(settings_file_path()).absolutePath();
    const QString file = free_stamped_name(folder + QStringLiteral("/conflict"), QStringLiteral(".txt"));
    QString reason;
    bool written = false;
    {
        // Under the table's lock, like every other file written beside the store.
        TableLock lock(live_lock_wait_ms);
        written = write_file_whole(file, kept_values_text(theirs, knobs).toUtf8(), &reason);
    }
    if (!written) {
        notice(QStringLiteral("dialcraft: 两边都改了旋钮(both sides changed knobs) ") + knob_numbers(knobs) +
               QStringLiteral("; 本窗口的值保留, 其他程序的值无法存入文件(the window's values are kept; the other "
                              "program's values could not be written to) ") +
               file + " (" + reason + ")");
        return {};
    }
    notice(QStringLiteral("dialcraft: 两边都改了旋钮(both sides changed knobs) ") + knob_numbers(knobs) +
           QStringLiteral("; 本窗口的值保留, 其他程序的值存入(the window's values are kept, the other program's "
                          "values are in) ") +
           file);
    return file;
}

bool TableSync::saveMerged()
{
    if (!started_ || finished_)
        return saveCustomInfoChecked();
    finished_ = true;
    checkTimer_->stop();
    bool saved = false;
    {
        TableLock lock;
        if (!lock.held() && !lock.folderReadOnly())
            notice(QStringLiteral("dialcraft: 旋钮表的锁未能取得, 照样保存(the table's lock could not be taken; "
                                  "saving all the same): ") +
                   lock.failure());
        const std::optional<QStringList> theirs = read_stored_table();
        if (theirs && *theirs != base_)
            applyMerge(*theirs, true);
        saved = saveCustomInfoChecked();
    }
    if (journal_) {
        if (saved) {
            journalTimer_->stop();
            journal_->finish();
        } else {
            // Nothing stored: the journal keeps the edits for the next start.
            writeJournalNow();
        }
        journal_.reset();
    }
    return saved;
}

void TableSync::restoreEdits()
{
    int restored = 0;
    for (OrphanJournal& orphan : orphans_) {
        for (const JournalEdit& edit : orphan.edits) {
            CreateSetupAreaViewData* record = state_.record(edit.knob);
            if (!record)
                continue;
            record->set_message_type_menu_string(edit.type);
            record->set_message_channel_menu_string(edit.channel);
            record->set_message_controller_number_code_string(edit.controller);
            ++restored;
        }
    }
    // Journaled as this window's own before the old journals go.
    writeJournalNow();
    for (OrphanJournal& orphan : orphans_)
        remove_orphan(orphan);
    orphans_.clear();
    emit restoreOfferedChanged();
    emit editsRestored(restored);
}

void TableSync::dismissEdits()
{
    QStringList files;
    for (OrphanJournal& orphan : orphans_)
        files << dismiss_orphan(orphan);
    orphans_.clear();
    emit restoreOfferedChanged();
    emit editsDismissed(files);
}

}  // namespace dialcraft
