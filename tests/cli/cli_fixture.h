#pragma once
// Runs dialcraft-cli in the test process against a simulated MIDI service and
// a private settings store, catching standard output, standard error and
// anything that reaches the console.
#include <gtest/gtest.h>

#include <QByteArray>
#include <QFile>
#include <QSettings>
#include <QStringList>
#include <QTemporaryDir>

#include <chrono>
#include <cstdint>
#include <sstream>
#include <string>
#include <vector>

#include "cli/cli.h"
#include "console_capture.h"
#include "isolated_settings.h"
#include "midi/sim/sim_midi_host.h"
#include "model/configuration.h"
#include "model/stored_configuration.h"
#include "programming_messages.h"

using namespace dialcraft;

struct CliRun {
    int status = -1;
    std::string out;
    std::string err;
    std::string console;  // what reached the console (standard output) besides `out`
};

using Messages = std::vector<std::vector<uint8_t>>;

class CliTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(dir_.isValid());
        configuration = Configuration{initialSettings()};
    }

    CliRun run(const std::vector<std::string>& args, bool err_is_terminal = false)
    {
        std::ostringstream out;
        std::ostringstream err;
        ConsoleCapture console;
        CliRun result;
        result.status = run_cli(args, sim, out, err, err_is_terminal);
        result.console = console.finish();
        result.out = out.str();
        result.err = err.str();
        return result;
    }

    // A controller as the service shows it; returns its destination's id.
    int plug(const std::string& serial)
    {
        sim.add_device(serial, "Maker", serial);
        sim.add_source(serial + " MIDI 1");
        return sim.add_destination(serial + " MIDI 1");
    }

    // The programming sequence of one knob, as the wire carries it.
    static Messages frame(uint8_t knob, uint8_t type_channel, uint8_t controller)
    {
        return programming_messages(knob, type_channel, controller);
    }

    // The bytes sent, in order; each packet also checked to go to `destination`.
    Messages sent_to(const std::string& destination) const
    {
        Messages bytes;
        for (const SimMidiHost::Packet& packet : sim.sent()) {
            EXPECT_EQ(packet.destination, destination);
            bytes.push_back(packet.bytes);
        }
        return bytes;
    }

    // Every packet at least 8 ms after the one before.
    void expect_paced() const
    {
        const auto packets = sim.sent();
        for (size_t i = 1; i < packets.size(); ++i)
            EXPECT_GE(packets[i].at - packets[i - 1].at, std::chrono::milliseconds(8)) << "packet " << i;
    }

    void store(const QStringList& settings)
    {
        ConsoleCapture quiet;
        configuration.settings = settings;
        saveCustomInfo();
        configuration = Configuration{initialSettings()};
    }
    static QByteArray stored()
    {
        return QSettings(QStringLiteral("dialcraft"), QStringLiteral("dialcraft"))
            .value(QStringLiteral("configurationKey"))
            .toByteArray();
    }

    std::string file(const std::string& name) const
    {
        return dir_.filePath(QString::fromStdString(name)).toStdString();
    }
    std::string write_file(const std::string& name, const QByteArray& bytes) const
    {
        QFile out(QString::fromStdString(file(name)));
        EXPECT_TRUE(out.open(QIODevice::WriteOnly));
        out.write(bytes);
        return file(name);
    }
    QByteArray read_file(const std::string& name) const
    {
        QFile in(QString::fromStdString(file(name)));
        EXPECT_TRUE(in.open(QIODevice::ReadOnly));
        return in.readAll();
    }

    // The lines of a file with the given knobs set, every other slot of knobs
    // 0 to 29 blank, so no line is empty and nothing shifts.
    static QByteArray knob_file(const std::vector<std::pair<int, QStringList>>& knobs)
    {
        QStringList slot_texts = initialSettings();
        for (const auto& [knob, values] : knobs)
            for (qsizetype i = 0; i < 3; ++i)
                slot_texts[knob * 3 + i] = values[i];
        return slot_texts.join(u'\n').toUtf8();
    }

    IsolatedSettings settings_;
    QTemporaryDir dir_;
    SimMidiHost sim;
};
