#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "platform/fault.h"
#include "platform/link/carrier.h"

namespace zenvora::testing_support {

/// An appraisal program on paper: answers from a table, and writes down what it was asked.
class RecordingCarrier final : public link::Carrier {
  public:
    /// By "service|topic" and item: what a request gives. A topic that is not named here is not answered, and
    /// an item that is not is refused.
    std::map<std::string, std::map<std::string, std::string>> values;
    /// Faults by step as it stands in `steps` ("poke 1004MC|16|2"), or by its verb alone ("poke"). A number
    /// is raised instead of the step.
    std::map<std::string, int> faults;
    /// "open KRN|Query", "request ActiveReports", "poke 1004MC|16|1", "close".
    std::vector<std::string> steps;
    /// Item and value of each poke that was accepted.
    std::vector<std::pair<std::string, std::string>> pokes;
    /// Characters that the other side lacks.
    std::string missingCharacters;

    void Open(const std::string& service, const std::string& topic) override {
        Take("open", service + "|" + topic);
        const auto known = values.find(service + "|" + topic);
        if (known == values.end()) throw Fault(fault::kNoAnswer, "nobody answers");
        topic_ = known->first;
    }
    std::string Request(const std::string& item) override {
        Take("request", item);
        const auto& items = values[topic_];
        const auto known = items.find(item);
        if (known == items.end()) throw Fault(fault::kLinkFailed, "refused");
        return known->second;
    }
    void Poke(const std::string& item, const std::string& text) override {
        Take("poke", item);
        pokes.emplace_back(item, text);
    }
    void Close() noexcept override { steps.emplace_back("close"); }
    bool Fits(const std::string& text) override {
        return missingCharacters.empty() || text.find(missingCharacters) == std::string::npos;
    }

  private:
    void Take(const std::string& verb, const std::string& what) {
        steps.push_back(verb + " " + what);
        auto fault = faults.find(steps.back());
        if (fault == faults.end()) fault = faults.find(verb);
        if (fault != faults.end()) throw Fault(fault->second, "fault " + std::to_string(fault->second));
    }

    std::string topic_;
};

}  // namespace zenvora::testing_support
