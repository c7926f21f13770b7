#pragma once

#include <string>
#include <string_view>

/// The exchange with another program: conversations about a topic of a service, in which texts are asked for
/// and sent.
namespace zenvora::link {

/// Longest name of a service, topic or item, in characters; the exchange has no longer ones.
inline constexpr std::size_t kLongestName = 255;

/// What brings the exchange to the other program. One conversation at a time, one thread. No call blocks
/// beyond the carrier's time limit.
class Carrier {
  public:
    virtual ~Carrier() = default;

    /// Begins a conversation; one that is open ends first. Faults: 282 (nobody answers to that service and
    /// topic), 285 (the way there is broken), 286 (time limit).
    virtual void Open(const std::string& service, const std::string& topic) = 0;

    /// The value of an item. Faults: 285 (refused, or busy), 286 (time limit), 293 (no conversation is open,
    /// or the other program has gone).
    [[nodiscard]] virtual std::string Request(const std::string& item) = 0;

    /// Sends a value to an item; returns once the other program has accepted it. Faults: 380 (refused), 285
    /// (busy), 286 and 293: whether the value has arrived, or will yet, is unknown.
    virtual void Poke(const std::string& item, const std::string& text) = 0;

    /// Ends the conversation; none open: nothing happens.
    virtual void Close() noexcept = 0;

    /// True when the other program's character set holds every character of the text. What it lacks arrives
    /// as "?". Faults: as Poke.
    [[nodiscard]] virtual bool Fits(const std::string& text) {
        static_cast<void>(text);
        return true;
    }
};

/// A program that has nobody to talk to: every conversation is fault 282.
[[nodiscard]] Carrier& NoCarrier();

}  // namespace zenvora::link
