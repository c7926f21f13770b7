#include "platform/link/protocol_carrier.h"

#include "platform/fault.h"

namespace zenvora::link {

ProtocolCarrier::ProtocolCarrier(OpenChannel openChannel, TimeLimits limits, IsOfUse isOfUse)
    : openChannel_(std::move(openChannel)), limits_(limits), isOfUse_(std::move(isOfUse)) {}

ProtocolCarrier::~ProtocolCarrier() {
    Close();
}

Deadline ProtocolCarrier::NewDeadline() const {
    return std::chrono::steady_clock::now() + limits_.answer + limits_.grace;
}

void ProtocolCarrier::GiveUp(int fault, const char* why) {
    channel_.reset();
    inConversation_ = false;
    throw Fault(fault, why);
}

void ProtocolCarrier::Connect(Deadline deadline) {
    channel_ = openChannel_();
    received_ = {};
    if (!channel_) throw Fault(fault::kNoAnswer, "The appraisal program does not run.");
    // What comes first must be the ready line: else something else sits at the other end.
    std::string ready;
    try {
        ready = NextLine(deadline);
    } catch (const Fault& fault) {
        GiveUp(fault.number == fault::kLinkTimeOut ? fault::kLinkTimeOut : fault::kNoAnswer,
               "The helper that speaks to the appraisal program did not start.");
    }
    if (ready + "\n" != kReadyLine)
        GiveUp(fault::kLinkFailed,
               "The helper that speaks to the appraisal program is of another version than this program. "
               "Install both anew.");
}

void ProtocolCarrier::Open(const std::string& service, const std::string& topic) {
    Close();
    const Deadline deadline = NewDeadline();
    if (channel_ && isOfUse_ && !isOfUse_()) channel_.reset();
    const bool isOld = channel_ != nullptr;
    if (!isOld) Connect(deadline);
    try {
        Ask(Verb::Open, {service, topic}, deadline);
    } catch (const Fault& fault) {
        // A peer that ended since the last conversation has lost nothing of this one.
        if (!isOld || channel_ || fault.number != fault::kNoConversation) throw;
        Connect(deadline);
        Ask(Verb::Open, {service, topic}, deadline);
    }
    inConversation_ = true;
}

std::string ProtocolCarrier::Request(const std::string& item) {
    if (!inConversation_) throw Fault(fault::kNoConversation, "No conversation is open.");
    return Ask(Verb::Request, {item}, NewDeadline());
}

void ProtocolCarrier::Poke(const std::string& item, const std::string& text) {
    if (!inConversation_) throw Fault(fault::kNoConversation, "No conversation is open.");
    Ask(Verb::Poke, {item, text}, NewDeadline());
}

bool ProtocolCarrier::Fits(const std::string& text) {
    return channel_ == nullptr || Ask(Verb::Fits, {text}, NewDeadline()) != "0";
}

void ProtocolCarrier::Close() noexcept {
    if (!inConversation_) return;
    inConversation_ = false;
    try {
        Send(Verb::Close, {}, NewDeadline());
    } catch (...) {
        channel_.reset();
    }
}

void ProtocolCarrier::Send(Verb verb, std::vector<std::string> arguments, Deadline deadline) {
    const std::string line = EncodeQuery({++number_, verb, std::move(arguments)});
    switch (channel_->Write(line, deadline)) {
        case Channel::End::Done:
            return;
        case Channel::End::TimeOut:
            GiveUp(fault::kLinkTimeOut, "The appraisal program did not answer in time.");
        case Channel::End::Gone:
            GiveUp(fault::kNoConversation, "The conversation with the appraisal program broke off.");
    }
}

std::string ProtocolCarrier::Ask(Verb verb, std::vector<std::string> arguments, Deadline deadline) {
    Send(verb, std::move(arguments), deadline);
    for (;;) {
        const std::string line = NextLine(deadline);
        if (!line.empty() && line.front() == kEventMark) continue;
        auto reply = DecodeReply(line);
        // 0 is what a peer answers to a line that it does not understand.
        if (!reply || reply->number == 0 || reply->number > number_)
            GiveUp(fault::kLinkFailed, "The helper that speaks to the appraisal program answered nonsense.");
        if (reply->number < number_) continue;  // of a CLOSE, which is not waited for
        if (reply->fault == 0) return std::move(reply->text);
        if (reply->fault == fault::kLinkTimeOut || reply->fault == fault::kNoConversation) {
            channel_.reset();
            inConversation_ = false;
        }
        throw Fault(reply->fault, reply->description.empty() ? "The appraisal program did not do as asked."
                                                             : reply->description);
    }
}

std::string ProtocolCarrier::NextLine(Deadline deadline) {
    for (;;) {
        if (auto line = received_.Next()) return *line;
        // Asked here too, because a peer that never stops sending would never be waited for.
        if (std::chrono::steady_clock::now() >= deadline)
            GiveUp(fault::kLinkTimeOut, "The appraisal program did not answer in time.");
        std::string bytes;
        switch (channel_->Read(bytes, deadline)) {
            case Channel::End::Done:
                if (received_.Append(bytes)) continue;
                GiveUp(fault::kLinkFailed,
                       "The helper that speaks to the appraisal program answered nonsense.");
            case Channel::End::TimeOut:
                GiveUp(fault::kLinkTimeOut, "The appraisal program did not answer in time.");
            case Channel::End::Gone:
                GiveUp(fault::kNoConversation, "The conversation with the appraisal program broke off.");
        }
    }
}

}  // namespace zenvora::link
