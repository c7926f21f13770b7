#include "platform/link/line_server.h"

#include "platform/fault.h"
#include "platform/link/line_protocol.h"

namespace zenvora::link {
namespace {

std::string Do(Carrier& carrier, const Query& query) {
    switch (query.verb) {
        case Verb::Open:
            carrier.Open(query.arguments[0], query.arguments[1]);
            return {};
        case Verb::Request:
            return carrier.Request(query.arguments[0]);
        case Verb::Poke:
            carrier.Poke(query.arguments[0], query.arguments[1]);
            return {};
        case Verb::Close:
            carrier.Close();
            return {};
        case Verb::Fits:
            return carrier.Fits(query.arguments[0]) ? "1" : "0";
    }
    return {};
}

}  // namespace

std::string AnswerLine(Carrier& carrier, std::string_view line) {
    const auto query = DecodeQuery(line);
    if (!query)
        return EncodeReply({0, fault::kLinkFailed, {}, "This line is no query of the link protocol."});
    try {
        return EncodeReply({query->number, 0, Do(carrier, *query), {}});
    } catch (const Fault& fault) {
        return EncodeReply(
            {query->number, fault.number > 0 ? fault.number : fault::kLinkFailed, {}, fault.description});
    } catch (const std::exception& error) {
        return EncodeReply({query->number, fault::kLinkFailed, {}, error.what()});
    }
}

}  // namespace zenvora::link
