#pragma once
// Counts, for as long as it lives, the messages the MIDI service accepted
// from the link and where they went, so the window and the command-line tool
// can say what a press really did, whatever result the link reported.
#include <string>
#include <vector>

#include "midi/host_selection.h"

namespace dialcraft {

class SendTally final : public MidiSendObserver {
public:
    // Starts observing the link's sends; the previous observer is put back
    // when the tally goes. Use on the thread that sends.
    SendTally();
    ~SendTally() override;
    SendTally(const SendTally&) = delete;
    SendTally& operator=(const SendTally&) = delete;

    // Sends the service answered with success.
    int accepted() const { return accepted_; }
    // Sends the service refused.
    int refused() const { return refused_; }
    // The names of the destinations that accepted at least one message, in
    // the order of their first message.
    const std::vector<std::string>& destinations() const { return destinations_; }

    void sent(MidiObjectRef destination, const uint8_t* bytes, size_t length, MidiStatus status) override;

private:
    MidiSendObserver* previous_;
    int accepted_ = 0;
    int refused_ = 0;
    std::vector<MidiObjectRef> refs_;
    std::vector<std::string> destinations_;
};

}  // namespace dialcraft
