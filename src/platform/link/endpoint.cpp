#include "platform/link/endpoint.h"

#include "platform/fault.h"
#include "platform/text/number.h"
#include "platform/text/utf8.h"

namespace zenvora::link {
namespace {

void CheckLength(const std::string& name) {
    if (text::Length(name) > kLongestName)
        throw Fault(fault::kInvalidProperty,
                    "\"" + text::Left(name, 40) +
                        "...\" is too long for a name of the exchange, which holds " +
                        text::IntegerText(kLongestName) + " characters.");
}

}  // namespace

Endpoint::~Endpoint() {
    if (mode_ != kClosed) carrier_.Close();
}

/// Runs a step and keeps what its fault says.
template <class Step>
auto Endpoint::Noting(Step step) {
    try {
        return step();
    } catch (const Fault& fault) {
        lastFault_ = fault.description;
        throw;
    }
}

void Endpoint::Tell(std::string_view step, std::string_view value) {
    if (listener_) listener_(std::string(step) + std::string(value));
}

void Endpoint::SetLinkMode(int mode) {
    Tell("mode ", text::IntegerText(mode));
    Noting([&] {
        if (mode != kClosed && mode != kManual)
            throw Fault(fault::kInvalidProperty,
                        "There is no link mode " + text::IntegerText(mode) + ", only 0 and 2.");
        if (mode_ != kClosed) carrier_.Close();
        mode_ = kClosed;
        if (mode == kManual) BeginConversation();
    });
}

void Endpoint::BeginConversation() {
    const std::size_t bar = topic_.find('|');
    if (bar == std::string::npos || bar == 0)
        throw Fault(fault::kInvalidProperty, "\"" + topic_ + "\" is no topic: it names no service.");
    const std::string service = topic_.substr(0, bar);
    const std::string topic = topic_.substr(bar + 1);
    CheckLength(service);
    CheckLength(topic);
    // The exchange takes an empty topic for "any". Values must not end up in whatever report answers first.
    if (topic.empty()) throw Fault(fault::kNoAnswer, "No report is named, so there is nobody to talk to.");
    carrier_.Open(service, topic);
    mode_ = kManual;
}

void Endpoint::SetLinkTopic(std::string topic) {
    Tell("topic ", topic);
    topic_ = std::move(topic);
}

void Endpoint::SetLinkItem(std::string item) {
    Tell("item ", item);
    item_ = std::move(item);
}

void Endpoint::SetText(std::string text) {
    Tell("text ", text);
    text_ = std::move(text);
}

void Endpoint::LinkRequest() {
    Tell("request");
    Noting([&] {
        CheckLength(item_);
        if (mode_ == kClosed) throw Fault(fault::kNoConversation, "No conversation is open.");
        text_ = carrier_.Request(item_);
    });
}

void Endpoint::LinkPoke() {
    Tell("poke");
    Noting([&] {
        CheckLength(item_);
        if (mode_ == kClosed) throw Fault(fault::kNoConversation, "No conversation is open.");
        carrier_.Poke(item_, text_);
    });
}

}  // namespace zenvora::link
