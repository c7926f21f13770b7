#pragma once

#include "platform/fault.h"

namespace zenvora::testing_support {

/// The number of the fault that a call raises, 0 for none.
template <class Call>
int FaultOf(const Call& call) {
    try {
        call();
    } catch (const Fault& fault) {
        return fault.number;
    }
    return 0;
}

}  // namespace zenvora::testing_support
