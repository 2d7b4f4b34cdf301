// dialcraft-cli export and import: the stored knob table to and from a text
// file, by the window's own export and import steps; export --controller
// writes what the ledger says a controller holds in the same format.
#include <QFileInfo>
#include <QUrl>

#include <ostream>

#include "cli/apply_file.h"
#include "cli/cli.h"
#include "cli/cli_arguments.h"
#include "cli/cli_commands.h"
#include "cli/cli_console.h"
#include "cli/stored_records.h"
#include "cli/text_file.h"
#include "model/config_file_transfer.h"
#include "model/configuration.h"
#include "model/edit_journal.h"
#include "model/global_state.h"
#include "model/ledger_store.h"
#include "model/slot_mapping.h"
#include "model/stored_configuration.h"
#include "model/table_lock.h"

namespace dialcraft {

namespace {

// The slot table of what the ledger says `serial` holds: knobs it never
// wrote stay blank slots, which the window's import reads without shifting
// and apply skips. False when the ledger holds nothing for it.
bool load_held_table(const QString& serial)
{
    const ControllerLedger ledger = read_ledger();
    configuration = Configuration{initialSettings()};
    bool any = false;
    for (int knob = 0; knob < mapped_knob_count; ++knob) {
        const HeldSetting* held = ledger.held(serial, knob);
        if (!held)
            continue;
        configuration.settings[knob * 3] = held->type;
        configuration.settings[knob * 3 + 1] = QString::number(held->channel);
        configuration.settings[knob * 3 + 2] = QString::number(held->controller);
        any = true;
    }
    return any;
}

}  // namespace

int run_export(const CliContext& context)
{
    const std::string& path = context.request.operands[0];
    const QString file = QFileInfo(QString::fromStdString(path)).absoluteFilePath();

    GlobalState state;
    ConfigFileTransfer transfer;
    if (context.request.controller) {
        if (!load_held_table(QString::fromStdString(*context.request.controller))) {
            context.console.error_text("dialcraft-cli export: 控制器记录里没有 " + *context.request.controller +
                                       "(the ledger holds nothing for " + *context.request.controller + ")\n");
            return cli_failed;
        }
        transfer.updateDocument();
    } else {
        // The window after start-up, then its export button and save dialog.
        load_stored_records(state);
        transfer.setGlobalState(&state);
        transfer.prepareExport();
    }
    QString failure;
    if (!transfer.writeDocument(QUrl::fromLocalFile(file), &failure)) {
        context.console.error_text("dialcraft-cli export: FILE \"" + path +
                                   "\" 无法写入(cannot be written): " + failure.toStdString() + "\n");
        return cli_failed;
    }
    context.out << "已导出(exported) " << configuration.settings.size() << " 行(lines) -> " << file.toStdString()
                << "\n";
    context.out.flush();
    return cli_success;
}

int run_import(const CliContext& context)
{
    const std::string& path = context.request.operands[0];
    const QString text = read_text_file(path);

    // By position, like apply: an empty line is an empty slot, so the file
    // of an export comes back as the table it was written from. (The window's
    // import drops empty lines, and every knob after one shifts.)
    configuration.settings = positional_table(read_positional_lines(text, context.console, "import"));
    bool stored = false;
    {
        // The whole table is replaced, so there is nothing to merge; the lock
        // keeps a window's save at close from crossing this write.
        const TableLock lock;
        if (!lock.held() && !lock.folderReadOnly())
            context.console.error_text("dialcraft-cli import: " + lock.failure().toStdString() + "\n");
        stored = saveCustomInfoChecked();
    }
    if (!stored) {
        context.console.error_text("dialcraft-cli import: 无法存储旋钮表(the knob table could not be stored)\n");
        return cli_failed;
    }
    if (window_is_open())
        context.console.error_text(
            "dialcraft-cli import: dialcraft 窗口开着, 它会接过这个表(a dialcraft window is "
            "open and will take the table)\n");
    context.out << "已导入(imported) " << QFileInfo(QString::fromStdString(path)).absoluteFilePath().toStdString()
                << " -> 存储的旋钮表(stored table), " << configuration.settings.size() << " 个槽(slots)\n";
    context.out.flush();
    return cli_success;
}

}  // namespace dialcraft
