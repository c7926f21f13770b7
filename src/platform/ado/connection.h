#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "platform/ado/pool.h"
#include "platform/jet/database.h"
#include "platform/shell/clock.h"

namespace zenvora::ado {

/// Turns the data source of a connection string into a host path (drive letters, backslashes). The default
/// takes the text as a host path.
using PathMapper = std::function<std::filesystem::path(std::string_view)>;

/// A connection for statements that change a Databook.
///
/// Statement forms, keywords without regard to case, one trailing ";" allowed:
///   INSERT INTO table [(column, ...)] VALUES (literal, ...)
///   ALTER TABLE table ADD [COLUMN] column type
///   ALTER TABLE table ALTER [COLUMN] column SET DEFAULT literal   (a date may stand bare: 01/01/1900)
/// Literals: "text" and 'text' (the same quote doubled is NOT an escape: it ends the text and refuses the
/// statement inside a double-quoted one; inside a single-quoted one two quotes stand for one), numbers, Null,
/// #m/d/yyyy#. Column names may stand in [brackets]. A column not named takes its default, else Null.
class Connection {
  public:
    Connection(DatabasePool& pool, const shell::Clock& clock, PathMapper mapper = {});
    ~Connection();

    /// Opens the Databook. Faults: as jet::Database::Open.
    void Open(std::string_view connectionString);
    /// Runs one statement; returns the number of records it changed. Faults: 3134 (none of the forms, a
    /// column named twice, as many values as columns not given), 3078, 3265 (no such column), 3380 (the
    /// column exists), 13 (a text that does not go into its column: no date, no number), 6 (a number beyond
    /// its column), 3163, 3022, 3058, ... A refused statement leaves the Databook as it was.
    long Execute(std::string_view statement);
    /// Statements between BeginBatch and EndBatch are made durable together: at EndBatch, and on the way at
    /// the latest every second. A refused statement does not undo those before it.
    void BeginBatch();
    void EndBatch();
    void Close();
    [[nodiscard]] bool IsOpen() const;
    [[nodiscard]] jet::Database& Database();

  private:
    struct State;
    std::unique_ptr<State> state_;
};

}  // namespace zenvora::ado
