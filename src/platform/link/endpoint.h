#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "platform/link/carrier.h"

namespace zenvora::link {

/// The client's end of the exchange: topic, item and value as texts, and a mode that begins and ends the
/// conversation.
class Endpoint {
  public:
    static constexpr int kClosed = 0;
    static constexpr int kManual = 2;

    explicit Endpoint(Carrier& carrier) : carrier_(carrier) {}
    ~Endpoint();
    Endpoint(const Endpoint&) = delete;
    Endpoint& operator=(const Endpoint&) = delete;

    [[nodiscard]] int LinkMode() const noexcept { return mode_; }
    /// 0 ends the conversation. 2 begins one about the topic, after the end of the one that is up; the mode
    /// stays 0 when that fails. Faults: 380 (another mode; a topic that is not "service|topic"; one that is
    /// too long), 282, 285, 286.
    void SetLinkMode(int mode);

    /// "service|topic". Takes effect with the next SetLinkMode(2).
    [[nodiscard]] const std::string& LinkTopic() const noexcept { return topic_; }
    void SetLinkTopic(std::string topic);
    [[nodiscard]] const std::string& LinkItem() const noexcept { return item_; }
    void SetLinkItem(std::string item);

    /// The value fetched, or the value to be sent.
    [[nodiscard]] const std::string& Text() const noexcept { return text_; }
    void SetText(std::string text);

    /// Fetches the item's value into Text, which stays as it was after a fault. Faults: 380 (an item name
    /// that is too long), 285, 286, 293 (the mode is 0, or the other program has gone).
    void LinkRequest();
    /// Sends Text to the item. Faults: 380 (refused; an item name that is too long), 285, 286, 293.
    void LinkPoke();

    /// Told of each step as a text, before it is taken: "mode 2", "topic KRN|Query", "item UserID",
    /// "request", "text 4", "poke". There is one listener, a later one replaces it.
    using Listener = std::function<void(std::string_view step)>;
    void OnStep(Listener listener) { listener_ = std::move(listener); }

    [[nodiscard]] Carrier& GetCarrier() const noexcept { return carrier_; }
    /// What the last fault said, empty before the first one: for those who pass faults over.
    [[nodiscard]] const std::string& LastFault() const noexcept { return lastFault_; }

  private:
    void Tell(std::string_view step, std::string_view value = {});
    void BeginConversation();
    template <class Step>
    auto Noting(Step step);

    Carrier& carrier_;
    int mode_ = kClosed;
    std::string topic_;
    std::string item_;
    std::string text_;
    std::string lastFault_;
    Listener listener_;
};

}  // namespace zenvora::link
