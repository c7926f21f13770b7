#include "analysis/kept_position.h"

#include "platform/fault.h"

namespace zenvora::analysis {

KeptPosition::KeptPosition(ado::Recordset& records) : records_(records) {
    if (!records.Bof() && !records.Eof()) bookmark_ = records.GetBookmark();
}

KeptPosition::~KeptPosition() {
    if (!bookmark_) return;
    try {
        records_.SetBookmark(*bookmark_);
    } catch (const Fault&) {
        // The record went away during the walk: there is no position to come back to.
        bookmark_.reset();
    }
}

}  // namespace zenvora::analysis
