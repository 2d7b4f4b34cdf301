#include "model/ledger_store.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLockFile>

#include <cstdio>
#include <functional>
#include <optional>

#include "model/guarded_file.h"
#include "model/ledger_json.h"
#include "model/stored_configuration.h"

namespace dialcraft {

namespace {

// How long a change waits for another instance to finish its own; a change
// takes a few milliseconds, so only a hung holder makes this run out.
constexpr int lock_wait_ms = 10000;

LedgerClock ledger_clock;
LedgerNoticeSink notice_sink;

QDateTime now_utc()
{
    // Whole seconds: the file keeps no more, and an entry read back should
    // equal the one recorded.
    const QDateTime now = ledger_clock ? ledger_clock().toUTC() : QDateTime::currentDateTimeUtc();
    return now.addMSecs(-now.time().msec());
}

void notice(const QString& line)
{
    const std::string text = line.toStdString() + "\n";
    if (notice_sink) {
        notice_sink(text);
    } else {
        std::fputs(text.c_str(), stderr);
        std::fflush(stderr);
    }
}

QString lock_file_path()
{
    return ledger_file_path() + QStringLiteral(".lock");
}

enum class FileState { absent, read, unreadable };

// The ledger file's contents, decoded; `reason` says why it could not be.
FileState read_file(ControllerLedger* ledger, QString* reason)
{
    QFile file(ledger_file_path());
    if (!file.exists())
        return FileState::absent;
    if (!file.open(QIODevice::ReadOnly)) {
        *reason = file.errorString();
        return FileState::unreadable;
    }
    const QByteArray bytes = file.readAll();
    if (file.error() != QFileDevice::NoError) {
        *reason = file.errorString();
        return FileState::unreadable;
    }
    std::optional<ControllerLedger> decoded = decode_ledger(bytes, reason);
    if (!decoded)
        return FileState::unreadable;
    *ledger = std::move(*decoded);
    return FileState::read;
}

// Renames the unreadable ledger out of the way, keeping its bytes, and says
// where it went. Call with the lock held.
void set_aside(const QString& reason)
{
    const QString path = ledger_file_path();
    QString why;
    const QString aside = move_file_aside(path, QStringLiteral("unreadable"), &why);
    if (!aside.isEmpty()) {
        notice(QStringLiteral("dialcraft: 无法读取的控制器记录已移至(unreadable ledger moved to) ") + aside + " (" +
               reason + ")");
        return;
    }
    notice(QStringLiteral("dialcraft: 无法读取控制器记录, 也无法移开(the ledger cannot be read nor moved aside) ") +
           path + " (" + reason + ")");
}

bool write_file(const ControllerLedger& ledger, QString* reason)
{
    return write_file_whole(ledger_file_path(), encode_ledger(ledger), reason);
}

}  // namespace

QString ledger_file_path()
{
    return QFileInfo(settings_file_path()).absolutePath() + QStringLiteral("/ledger.json");
}

ControllerLedger read_ledger()
{
    ControllerLedger ledger;
    QString reason;
    if (read_file(&ledger, &reason) != FileState::unreadable)
        return ledger;
    // Writers replace the file in one step, so reading needs no lock; moving
    // it aside does, and if another instance holds the lock right now the
    // file is left for the next reader rather than waiting at start-up.
    QDir().mkpath(QFileInfo(ledger_file_path()).absolutePath());
    QLockFile lock(lock_file_path());
    if (lock.tryLock(0)) {
        ControllerLedger again;
        if (read_file(&again, &reason) == FileState::unreadable)
            set_aside(reason);
        else
            ledger = std::move(again);
    } else {
        notice(QStringLiteral("dialcraft: 无法读取控制器记录(the ledger cannot be read) ") + ledger_file_path() + " (" +
               reason + ")");
    }
    return ledger;
}

namespace {

// Changes the ledger under its lock: reads the file again, lets `change`
// alter it and writes it back when `change` says it altered something.
bool change_ledger(const std::function<bool(ControllerLedger&)>& change)
{
    const QString path = ledger_file_path();
    QDir().mkpath(QFileInfo(path).absolutePath());
    QLockFile lock(lock_file_path());
    if (!lock.tryLock(lock_wait_ms)) {
        notice(QStringLiteral("dialcraft: 控制器记录被锁住, 未记录(the ledger is locked; nothing recorded): ") +
               lock_file_path());
        return false;
    }
    ControllerLedger ledger;
    QString reason;
    if (read_file(&ledger, &reason) == FileState::unreadable)
        set_aside(reason);
    if (!change(ledger))
        return false;
    if (!write_file(ledger, &reason)) {
        notice(QStringLiteral("dialcraft: 控制器记录无法写入, 保留原来的(the ledger could not be written; the previous "
                              "one is kept) ") +
               path + " (" + reason + ")");
        return false;
    }
    return true;
}

}  // namespace

bool record_in_ledger(const QString& serial, int knob, const QString& type, int channel, int controller)
{
    return change_ledger([&](ControllerLedger& ledger) {
        ledger.controllers[serial][knob] = HeldSetting{type, channel, controller, now_utc()};
        return true;
    });
}

bool record_verification_in_ledger(const QString& serial, int knob, const QString& type, int channel, int controller)
{
    return change_ledger([&](ControllerLedger& ledger) {
        const auto knobs = ledger.controllers.find(serial);
        if (knobs == ledger.controllers.end())
            return false;
        const auto held = knobs->second.find(knob);
        if (held == knobs->second.end() || held->second.type != type || held->second.channel != channel ||
            held->second.controller != controller)
            return false;
        held->second.verified = now_utc();
        return true;
    });
}

LedgerClock set_ledger_clock(LedgerClock clock)
{
    std::swap(clock, ledger_clock);
    return clock;
}

LedgerNoticeSink set_ledger_notice_sink(LedgerNoticeSink sink)
{
    std::swap(sink, notice_sink);
    return sink;
}

}  // namespace dialcraft
