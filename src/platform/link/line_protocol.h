#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// The exchange as lines of text, between this program and a helper that speaks for it elsewhere. The whole
/// protocol is told in docs/link-protocol.md.
namespace zenvora::link {

/// A line longer than this is no line of the protocol: its sender is at fault.
inline constexpr std::size_t kLongestLine = 16U << 20U;

/// Fields as one line with its line end: separated by tabs; backslash, line feed, carriage return and tab
/// inside of a field are escaped. Bytes that are no UTF-8 become U+FFFD.
[[nodiscard]] std::string EncodeLine(const std::vector<std::string>& fields);
/// The fields of a line without its line end; nothing for a line with an unknown escape, a lone backslash at
/// the end of a field, or bytes that are no UTF-8. A line has at least one field, which may be empty.
[[nodiscard]] std::optional<std::vector<std::string>> DecodeLine(std::string_view line);

enum class Verb { Open, Request, Poke, Close, Fits };

/// What the client asks: "7 POKE item text" and so on. `arguments` are as many as the verb takes.
struct Query {
    std::uint64_t number = 0;
    Verb verb = Verb::Close;
    std::vector<std::string> arguments{};
};

[[nodiscard]] std::string EncodeQuery(const Query& query);
/// Nothing for a line that is no query.
[[nodiscard]] std::optional<Query> DecodeQuery(std::string_view line);

/// What comes back for a query: a text (empty where the verb asks for none), or a fault.
struct Reply {
    std::uint64_t number = 0;
    int fault = 0;              ///< number of the fault, 0 for none
    std::string text{};         ///< value of a request; "1" or "0" to Fits
    std::string description{};  ///< of the fault
};

[[nodiscard]] std::string EncodeReply(const Reply& reply);
/// Nothing for a line that is no reply.
[[nodiscard]] std::optional<Reply> DecodeReply(std::string_view line);

/// The first line of every helper, with the version of the protocol.
inline constexpr std::string_view kReadyLine = "*READY\t1\n";
/// Lines that begin so are events, which nobody asked for.
inline constexpr char kEventMark = '*';

/// Cuts a stream of bytes into lines.
class LineBuffer {
  public:
    /// False: the line grows beyond kLongestLine, and no more is taken.
    [[nodiscard]] bool Append(std::string_view bytes);
    /// The next whole line without its "\n" (and without a "\r" before it), or nothing.
    [[nodiscard]] std::optional<std::string> Next();

  private:
    std::string bytes_;
    std::size_t searched_ = 0;  ///< no line end before this place
    std::size_t start_ = 0;     ///< what is before it has been given out
};

}  // namespace zenvora::link
