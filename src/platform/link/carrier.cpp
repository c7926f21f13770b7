#include "platform/link/carrier.h"

#include "platform/fault.h"

namespace zenvora::link {

Carrier& NoCarrier() {
    struct Nobody final : Carrier {
        void Open(const std::string&, const std::string&) override {
            throw Fault(fault::kNoAnswer, "This program has no way to the appraisal program.");
        }
        std::string Request(const std::string&) override { throw NoneOpen(); }
        void Poke(const std::string&, const std::string&) override { throw NoneOpen(); }
        void Close() noexcept override {}
        static Fault NoneOpen() { return {fault::kNoConversation, "No conversation is open."}; }
    };
    static Nobody nobody;
    return nobody;
}

}  // namespace zenvora::link
