#pragma once

#include <string>
#include <vector>

#include "platform/controls/desktop.h"

namespace zenvora::analysis {

/// Takes every message down and presses its first button.
class RecordingDesktop final : public controls::Desktop {
  public:
    std::vector<controls::MessageBox> messages;
    long lastDone = -1;
    long lastTotal = -1;
    int progressCalls = 0;

    controls::Answer Show(const controls::MessageBox& message) override {
        messages.push_back(message);
        return controls::Answer::Ok;
    }
    std::string Choose(const controls::FileDialog&) override { return {}; }
    void SetHourglass(bool) override {}
    void Progress(long done, long total) override {
        lastDone = done;
        lastTotal = total;
        ++progressCalls;
    }
};

}  // namespace zenvora::analysis
