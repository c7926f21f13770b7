#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/link/carrier.h"

/// A stand-in for the appraisal program: its open reports, their forms and fields are a text file;
/// samples/KRN.txt is one, and tells what may stand in it.
namespace zenvora::standin {

enum class Act {
    Answer,  ///< as asked
    Refuse,
    Busy,
    Hang,  ///< never answers
    Die,   ///< ends without a word
};

struct Outcome {
    Act act = Act::Answer;
    std::string text{};
};

/// The reports in their file, which may be edited meanwhile: Read takes what has changed.
class Reports {
  public:
    /// Reads the file. Fault 53: it cannot be read; 20002: a line of it is wrong, with the line.
    explicit Reports(std::filesystem::path file);
    /// Reads the file again if somebody else has written it, and drops what was not saved then. Faults: as
    /// above.
    void Read();

    /// True for "Query" and for the name of a report, without regard to case.
    [[nodiscard]] bool HasTopic(std::string_view topic) const;
    [[nodiscard]] Outcome Request(std::string_view topic, const std::string& item);
    [[nodiscard]] Outcome Poke(std::string_view topic, const std::string& item, const std::string& text);
    /// Writes what was poked since the last time into the file. Faults: 75 (it cannot be written).
    void Save();

  private:
    struct Line {
        std::string report;  ///< empty above the first report
        std::string key;     ///< empty for comments, blank lines and headings
        std::string value;
        std::string raw;
    };
    [[nodiscard]] const Line* Find(std::string_view report, std::string_view key) const;
    [[nodiscard]] Act Misbehaviour(std::string_view report, std::string_view item) const;
    [[nodiscard]] std::string ActiveReports() const;
    [[nodiscard]] bool HasForm(std::string_view report, std::string_view form) const;
    void Set(std::string_view report, const std::string& key, const std::string& value);

    std::filesystem::path file_;
    std::filesystem::file_time_type written_{};  ///< of the file as it was read or saved
    bool changed_ = false;
    std::vector<Line> lines_;
    std::vector<std::string> reports_;  ///< the current one first
};

/// The reports behind the exchange, in this process.
class StandinCarrier final : public link::Carrier {
  public:
    /// `misbehave` is called to hang or to die. It may return, for tests; a hang then is fault 286 and a
    /// death fault 293.
    StandinCarrier(std::filesystem::path file, std::function<void(Act)> misbehave)
        : reports_(std::move(file)), misbehave_(std::move(misbehave)) {}

    void Open(const std::string& service, const std::string& topic) override;
    std::string Request(const std::string& item) override;
    void Poke(const std::string& item, const std::string& text) override;
    void Close() noexcept override { isOpen_ = false; }

  private:
    std::string Finish(const Outcome& outcome, int refusal);

    Reports reports_;
    std::function<void(Act)> misbehave_;
    bool isOpen_ = false;
    std::string topic_;
};

}  // namespace zenvora::standin
