#include "cli/open_databook.h"

#include "cli/failure.h"
#include "databook/selection.h"

namespace zenvora::cli {

std::unique_ptr<ado::Adodc> OpenDatabook(common::Session& session, const std::string& path, Access access) {
    auto control = ControlOf(session, path, access);
    control->RecordSource = "SELECT " + std::string(databook::kMainFieldList) + " FROM " + session.table +
                            " " + std::string(databook::kKeyOrder);
    try {
        control->Refresh();
    } catch (const Fault& fault) {
        if (fault.number == fault::kNoSuchTable) {
            throw Failure{Exit::FileTrouble, path + " is no Databook: it has no table " + session.table +
                                                 ". Name the Databook that you made or imported."};
        }
        if (fault.number == fault::kItemNotFound) {
            throw Failure{Exit::FileTrouble,
                          path + " lacks a column that a Databook has: " + fault.description};
        }
        throw;
    }
    return control;
}

std::unique_ptr<ado::Adodc> ControlOf(common::Session& session, const std::string& path, Access access) {
    auto control = std::make_unique<ado::Adodc>(session.databooks, session.clock, AlwaysTo(path));
    control->Connectionstring = ConnectionText(access);
    return control;
}

ado::PathMapper AlwaysTo(const std::string& path) {
    return [path](std::string_view) { return HostPath(path); };
}

std::string ConnectionText(Access access) {
    return std::string("Provider=Microsoft.Jet.OLEDB.4.0;Data Source=Databook;Mode=") +
           (access == Access::Read ? "Read" : "ReadWrite");
}

std::filesystem::path HostPath(const std::string& path) {
    return std::filesystem::path(std::u8string(path.begin(), path.end()));
}

}  // namespace zenvora::cli
