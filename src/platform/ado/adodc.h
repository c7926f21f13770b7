#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include "platform/ado/connection.h"
#include "platform/ado/recordset.h"

namespace zenvora::ado {

/// The data control: a connection string, a SELECT text and the Recordset that Refresh makes of them.
///
/// Statement form: SELECT * | column, ... FROM table [WHERE column = literal] [ORDER BY column [DESC]]. Text
/// compares without regard to case; text keys order in the General order of the file format, Null first.
class Adodc {
  public:
    Adodc(DatabasePool& pool, const shell::Clock& clock, PathMapper mapper = {});
    ~Adodc();

    std::string Connectionstring;
    std::string RecordSource;

    /// Opens a new Recordset and drops the old one. The old one stays when this faults. Faults: as
    /// jet::Database::Open; 3134, 3078, 3265.
    void Refresh();
    /// Fault 91 before the first Refresh.
    [[nodiscard]] ado::Recordset& Recordset();
    [[nodiscard]] bool HasRecordset() const;
    /// Lets go of the Databook.
    void Close();
    /// Raised by one whenever the Recordset is another one, so that views know to bind anew.
    [[nodiscard]] unsigned Generation() const;

    /// The host path of the Databook that Connectionstring names. Fault 53: it names none.
    [[nodiscard]] std::filesystem::path HostPath() const;
    /// For connections of their own to the same Databooks.
    [[nodiscard]] const PathMapper& Mapper() const;

    /// The year that completes a date text without one, and expands nothing else.
    [[nodiscard]] const shell::Clock& Clock() const;

  private:
    struct State;
    std::unique_ptr<State> state_;
};

}  // namespace zenvora::ado
