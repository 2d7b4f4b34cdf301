#include "model/edit_journal.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLockFile>
#include <QStandardPaths>

#include <algorithm>
#include <cstdio>

#include "model/guarded_file.h"
#include "model/slot_mapping.h"

namespace dialcraft {

namespace {

QString chosen_state_folder;

const QString journal_suffix = QStringLiteral(".journal");
const QString lock_suffix = QStringLiteral(".lock");

void notice(const QString& line)
{
    const std::string text = line.toStdString() + "\n";
    std::fputs(text.c_str(), stderr);
    std::fflush(stderr);
}

// The names of the windows' files in `folder`, sorted. Matched by hand
// rather than by a name filter: a filter is a wildcard pattern, whose regular
// expression engine the window would otherwise load and compile at start,
// for this scan alone.
QStringList window_files(const QDir& folder)
{
    QStringList names = folder.entryList(QDir::Files | QDir::Hidden, QDir::Name);
    names.removeIf([](const QString& name) { return !name.startsWith(QLatin1String("window-")); });
    return names;
}

// Those of `names` that end in `suffix`.
QStringList ending_in(QStringList names, const QString& suffix)
{
    names.removeIf([&suffix](const QString& name) { return !name.endsWith(suffix); });
    return names;
}

QString lock_path_of(const QString& journal)
{
    return journal.left(journal.size() - journal_suffix.size()) + lock_suffix;
}

// A lock of ours that counts only a live holder: however old, a lock of a
// running window is its own.
std::unique_ptr<QLockFile> lock_of(const QString& path)
{
    auto lock = std::make_unique<QLockFile>(path);
    lock->setStaleLockTime(0);
    return lock;
}

// The locks of windows that were killed before they had an edit to keep:
// nothing else would ever remove them. A lock beside a journal is left to the
// journal's claim; a live window's lock cannot be taken, so it stays.
void remove_abandoned_locks(const QDir& folder, const QStringList& locks, const QStringList& journals)
{
    for (const QString& name : locks) {
        const QString journal = name.left(name.size() - lock_suffix.size()) + journal_suffix;
        if (journals.contains(journal))
            continue;
        std::unique_ptr<QLockFile> lock = lock_of(folder.filePath(name));
        if (lock->tryLock(0))
            lock->unlock();
    }
}

}  // namespace

QString state_folder()
{
    if (!chosen_state_folder.isEmpty())
        return chosen_state_folder;
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + QStringLiteral("/dialcraft");
}

void set_state_folder(const QString& folder)
{
    chosen_state_folder = folder;
}

QByteArray encode_journal(const QList<JournalEdit>& edits, const QDateTime& written)
{
    QJsonArray list;
    for (const JournalEdit& edit : edits)
        list.append(QJsonObject{{QStringLiteral("knob"), edit.knob},
                                {QStringLiteral("type"), edit.type},
                                {QStringLiteral("channel"), edit.channel},
                                {QStringLiteral("controller"), edit.controller}});
    const QJsonObject root{{QStringLiteral("version"), 1},
                           {QStringLiteral("written"), written.toUTC().toString(Qt::ISODate)},
                           {QStringLiteral("edits"), list}};
    return QJsonDocument(root).toJson(QJsonDocument::Indented);
}

std::optional<QList<JournalEdit>> decode_journal(const QByteArray& bytes, QString* reason)
{
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(bytes, &error);
    if (error.error != QJsonParseError::NoError) {
        *reason = error.errorString();
        return std::nullopt;
    }
    const QJsonObject root = document.object();
    if (!document.isObject() || root.value(QStringLiteral("version")).toInt() != 1 ||
        !root.value(QStringLiteral("edits")).isArray()) {
        *reason = QStringLiteral("not a journal of version 1");
        return std::nullopt;
    }
    QList<JournalEdit> edits;
    for (const QJsonValue& value : root.value(QStringLiteral("edits")).toArray()) {
        const QJsonObject entry = value.toObject();
        const QJsonValue knob = entry.value(QStringLiteral("knob"));
        const int index = knob.toInt(-1);
        if (!knob.isDouble() || index < 0 || index >= mapped_knob_count ||
            !entry.value(QStringLiteral("type")).isString() || !entry.value(QStringLiteral("channel")).isString() ||
            !entry.value(QStringLiteral("controller")).isString()) {
            *reason = QStringLiteral("an entry that is not a knob of 0 to 26 with its three fields");
            return std::nullopt;
        }
        edits.append({index, entry.value(QStringLiteral("type")).toString(),
                      entry.value(QStringLiteral("channel")).toString(),
                      entry.value(QStringLiteral("controller")).toString()});
    }
    return edits;
}

WindowJournal::WindowJournal()
{
    QDir().mkpath(state_folder());
    const QString stem = state_folder() + QStringLiteral("/window-") +
                         QString::number(QCoreApplication::applicationPid()) + QLatin1Char('-') +
                         QString::number(QDateTime::currentMSecsSinceEpoch());
    for (int attempt = 0;; ++attempt) {
        const QString stem_n = attempt == 0 ? stem : stem + QLatin1Char('-') + QString::number(attempt);
        if (QFileInfo::exists(stem_n + journal_suffix) || QFileInfo::exists(stem_n + lock_suffix))
            continue;
        path_ = stem_n + journal_suffix;
        break;
    }
    lock_ = lock_of(lock_path_of(path_));
    // Without it (a folder that cannot be written) the journal cannot be
    // written either; the window goes on, only without this safety net.
    (void)lock_->tryLock(0);
}

WindowJournal::~WindowJournal() = default;

bool WindowJournal::write(const QList<JournalEdit>& edits, QString* reason)
{
    if (edits.isEmpty()) {
        QFile::remove(path_);
        return true;
    }
    return write_file_whole(path_, encode_journal(edits, QDateTime::currentDateTimeUtc()), reason);
}

void WindowJournal::finish()
{
    QFile::remove(path_);
    lock_->unlock();
}

std::vector<OrphanJournal> claim_orphan_journals()
{
    std::vector<OrphanJournal> found;
    const QDir folder(state_folder());
    const QStringList files = window_files(folder);
    const QStringList names = ending_in(files, journal_suffix);
    remove_abandoned_locks(folder, ending_in(files, lock_suffix), names);
    for (const QString& name : names) {
        const QString path = folder.filePath(name);
        std::shared_ptr<QLockFile> lock = lock_of(lock_path_of(path));
        if (!lock->tryLock(0))
            continue;  // its window runs, or another start has it
        QFile file(path);
        QString reason;
        std::optional<QList<JournalEdit>> edits;
        if (file.open(QIODevice::ReadOnly)) {
            const QByteArray bytes = file.readAll();
            edits = decode_journal(bytes, &reason);
        } else {
            reason = file.errorString();
        }
        file.close();
        if (!edits) {
            QString why;
            const QString aside = move_file_aside(path, QStringLiteral("unreadable"), &why);
            notice(QStringLiteral("dialcraft: 无法读取的未保存修改记录已移至(unreadable journal of unsaved edits moved "
                                  "to) ") +
                   (aside.isEmpty() ? path : aside) + " (" + reason + ")");
            continue;
        }
        if (edits->isEmpty()) {
            QFile::remove(path);
            continue;
        }
        found.push_back({path, QFileInfo(path).lastModified(), std::move(*edits), std::move(lock)});
    }
    std::stable_sort(found.begin(), found.end(),
                     [](const OrphanJournal& a, const OrphanJournal& b) { return a.written < b.written; });
    return found;
}

void remove_orphan(OrphanJournal& orphan)
{
    QFile::remove(orphan.path);
    orphan.lock.reset();
}

QString dismiss_orphan(OrphanJournal& orphan)
{
    QString reason;
    QString aside = move_file_aside(orphan.path, QStringLiteral("dismissed"), &reason);
    orphan.lock.reset();
    return aside.isEmpty() ? orphan.path : aside;
}

bool window_is_open()
{
    const QDir folder(state_folder());
    const QStringList names = ending_in(window_files(folder), lock_suffix);
    for (const QString& name : names) {
        const std::unique_ptr<QLockFile> lock = lock_of(folder.filePath(name));
        if (lock->tryLock(0))
            continue;  // left by a window that is gone; unlocking removes it
        if (lock->error() == QLockFile::LockFailedError)
            return true;
    }
    return false;
}

}  // namespace dialcraft
