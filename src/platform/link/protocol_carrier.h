#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>

#include "platform/link/carrier.h"
#include "platform/link/channel.h"
#include "platform/link/line_protocol.h"

namespace zenvora::link {

/// How long an answer may take.
struct TimeLimits {
    /// Known to the helper, which gives up first and says so.
    std::chrono::milliseconds answer{5000};
    /// Added to it: a helper that has not even said that it gave up hangs itself, and is let go.
    std::chrono::milliseconds grace{1000};
};

/// The exchange over the line protocol.
///
/// The channel is opened with the first conversation and kept. It is given up, and the next conversation
/// opens a new one, after a time limit and when the other program went away in the middle: what a helper
/// keeps of such a conversation is never freed, and a late answer must not be taken for the next one.
class ProtocolCarrier final : public Carrier {
  public:
    /// Makes a channel to a peer that will say the ready line; null when there is none.
    using OpenChannel = std::function<std::unique_ptr<Channel>()>;
    /// True while the channel is of use: for a helper, while the program that it serves is there.
    using IsOfUse = std::function<bool()>;

    ProtocolCarrier(OpenChannel openChannel, TimeLimits limits, IsOfUse isOfUse = {});
    ~ProtocolCarrier() override;

    void Open(const std::string& service, const std::string& topic) override;
    std::string Request(const std::string& item) override;
    void Poke(const std::string& item, const std::string& text) override;
    void Close() noexcept override;
    bool Fits(const std::string& text) override;

  private:
    void Connect(Deadline deadline);
    std::string Ask(Verb verb, std::vector<std::string> arguments, Deadline deadline);
    void Send(Verb verb, std::vector<std::string> arguments, Deadline deadline);
    std::string NextLine(Deadline deadline);
    [[nodiscard]] Deadline NewDeadline() const;
    [[noreturn]] void GiveUp(int fault, const char* why);

    OpenChannel openChannel_;
    TimeLimits limits_;
    IsOfUse isOfUse_;
    std::unique_ptr<Channel> channel_;
    LineBuffer received_;
    std::uint64_t number_ = 0;
    bool inConversation_ = false;
};

}  // namespace zenvora::link
