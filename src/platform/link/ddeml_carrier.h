#pragma once

#include <chrono>
#include <memory>

#include "platform/link/carrier.h"

namespace zenvora::link {

/// The exchange through the system's own library, in this process: for Windows, and for the helper beside KRN
/// under Wine. The thread that makes it uses it, and must see to its window messages. Beginning a
/// conversation does not heed the limit: it takes as long as any window of the system takes to answer.
class DdemlCarrier final : public Carrier {
  public:
    /// `limit` is that of one request or poke; texts are bytes in the Windows code page `codePage`. Faults:
    /// 285 (the library cannot be used).
    DdemlCarrier(std::chrono::milliseconds limit, int codePage);
    ~DdemlCarrier() override;
    DdemlCarrier(const DdemlCarrier&) = delete;
    DdemlCarrier& operator=(const DdemlCarrier&) = delete;

    void Open(const std::string& service, const std::string& topic) override;
    std::string Request(const std::string& item) override;
    void Poke(const std::string& item, const std::string& text) override;
    void Close() noexcept override;
    bool Fits(const std::string& text) override;

  private:
    struct State;
    std::unique_ptr<State> state_;
};

}  // namespace zenvora::link
