#pragma once

#include "common/session.h"
#include "platform/ado/recordset.h"

/// Copying the records of one Databook into another, key by key.
namespace zenvora::importing {

/// What happens to a record whose key the destination holds already.
enum class ExistingRecords { Overwrite, Skip, Ask };

struct MergeCounts {
    long added = 0;
    long overwritten = 0;
    long skipped = 0;
};

/// Copies every record of `source` into `destination`, and adds what became of them to `counts`.
///
/// A record is looked for by its CENTRALKEY, without regard to case. What is not there is added. What is
/// there is overwritten field by field, Null values of the source left out, or left alone; Ask has the user
/// say so for each. Records are written in batches, so that a key that the source holds twice exists the
/// second time.
///
/// A fault ends the merge; it has the record of the source as its place (from 1). What was written before it
/// stays, and `counts` say how far the merge came. Faults: 3265 a field of the source that the destination
/// lacks, when it holds a value; those of Recordset::SetValue and Update.
void MergeRecords(common::Session& session, ado::Recordset& source, ado::Recordset& destination,
                  ExistingRecords existing, MergeCounts& counts);

/// "2 records added, 1 overwritten, 0 skipped"
[[nodiscard]] std::string CountsText(const MergeCounts& counts);

}  // namespace zenvora::importing
