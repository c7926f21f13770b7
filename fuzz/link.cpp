// The link protocol from both of its ends: a client that gets any bytes for answers, and a server that gets
// any bytes for questions.

#include <string>
#include <string_view>

#include "databook_bytes.h"
#include "platform/fault.h"
#include "platform/link/line_protocol.h"
#include "platform/link/line_server.h"
#include "platform/link/protocol_carrier.h"

namespace {

using namespace zenvora;

/// Says what it was given and then closes.
class Tape final : public link::Channel {
  public:
    explicit Tape(std::string_view bytes) : bytes_(bytes) {}
    End Write(std::string_view, link::Deadline) override { return End::Done; }
    End Read(std::string& bytes, link::Deadline) override {
        if (bytes_.empty()) return End::Gone;
        const std::size_t piece = 1 + bytes_.size() / 3;
        bytes += bytes_.substr(0, piece);
        bytes_.remove_prefix(piece);
        return End::Done;
    }

  private:
    std::string_view bytes_;
};

/// Gives back what it is told.
class Echo final : public link::Carrier {
  public:
    void Open(const std::string&, const std::string& topic) override {
        if (topic.empty()) throw Fault(fault::kNoAnswer, topic);
    }
    std::string Request(const std::string& item) override { return item; }
    void Poke(const std::string& item, const std::string& text) override {
        if (item == text) throw Fault(fault::kInvalidProperty, text);
    }
    void Close() noexcept override {}
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    fuzz::Tolerate([&] {
        link::ProtocolCarrier carrier([&] { return std::make_unique<Tape>(bytes); }, {});
        carrier.Open("KRN", "Query");
        static_cast<void>(carrier.Request("ActiveReports"));
        carrier.Poke("a", "b");
    });

    Echo echo;
    link::LineBuffer lines;
    if (!lines.Append(bytes)) return 0;
    while (const auto line = lines.Next()) {
        // Every question gets one answer that the client understands, under its own number.
        std::string answer = link::AnswerLine(echo, *line);
        answer.pop_back();
        const auto reply = link::DecodeReply(answer);
        const auto query = link::DecodeQuery(*line);
        if (!reply || reply->number != (query ? query->number : 0)) __builtin_trap();
        if (const auto fields = link::DecodeLine(*line)) {
            std::string again = link::EncodeLine(*fields);
            again.pop_back();
            if (link::DecodeLine(again) != fields) __builtin_trap();
        }
    }
    return 0;
}
