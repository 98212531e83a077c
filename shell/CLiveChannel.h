// How the live program and the programs that drive it meet. An acquisition program finds the running live
// instance, hands it a record for each defect that its operator marks, and gets the graded result back as
// a text, minutes later perhaps. A second live instance finds the first and asks it to come to the front.
// There is one live instance a user.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

// Stands for the sender's window for as long as the sender stays connected. Never reused.
using LiveSender = std::uint64_t;

class CLiveChannel {
public:
    // The layout is the concern of whoever reads it.
    static constexpr std::size_t RecordBytes = 1256;

    enum class Claimed {
        Yes,
        TakenByOther,  // another live instance runs, or is just coming up
        NotPossible,   // no instance can be reached on this machine; Problem() tells why
    };

    CLiveChannel() = default;
    virtual ~CLiveChannel() = default;
    CLiveChannel(const CLiveChannel&) = delete;
    CLiveChannel& operator=(const CLiveChannel&) = delete;

    // Brings the running instance to the front. False if none runs.
    virtual bool RaiseRunning() = 0;

    // From now on this process is the live instance.
    virtual Claimed Claim() = 0;
    virtual std::string Problem() const = 0;
    // Answers that were given are sent out first.
    virtual void Release() = 0;

    // What comes in is told on the thread of the windows. The bytes of a record hold during the call only. Whether
    // it was taken: only then is that acknowledged to the sender.
    std::function<bool(std::string_view record, LiveSender sender)> OnRecord;
    std::function<void()> OnRaise;

    // `text` is in the code page. False if the sender has gone.
    virtual bool Answer(LiveSender sender, std::string_view text) = 0;
};
