#include "databook/selection.h"

#include "common/primitives.h"
#include "platform/text/utf8.h"

namespace zenvora::databook {
namespace {

constexpr std::string_view kProvider = "Provider=Microsoft.Jet.OLEDB.4.0;Data Source=";

}  // namespace

void AdoConnect(ado::Adodc& control, std::string_view directory, std::string_view file) {
    control.Connectionstring = std::string(kProvider) + common::CkRSlash(directory) + std::string(file) +
                               ";Mode=ReadWrite|Share Deny None;Persist Security Info=False;";
}

void AdoSelect(ado::Adodc& control, std::string_view table, std::string_view fields, std::string_view tail) {
    const std::string list = common::UpTrim(fields);
    control.RecordSource = "SELECT " + (list.empty() ? "*" : list) + " FROM " + std::string(table) +
                           (tail.empty() ? "" : " " + std::string(tail));
    control.Refresh();
}

void AdoConnectSelect(ado::Adodc& control, std::string_view directory, std::string_view file,
                      std::string_view table, std::string_view fields, std::string_view tail) {
    AdoConnect(control, directory, file);
    AdoSelect(control, table, fields, tail);
}

std::string OneShotConnectionString(std::string_view path) {
    return std::string(kProvider) + text::Trim(path) + ";Mode=ReadWrite;Persist Security Info=False";
}

bool DoIllegalSqlCharsExist(std::string_view text) {
    return text.find_first_of("'*") != std::string_view::npos;
}

std::string DoubleUp(std::string_view text, char character) {
    return common::ReplaceChar(text, std::string(1, character), std::string(2, character));
}

std::string SqlDoubleUp(std::string_view text) {
    return DoIllegalSqlCharsExist(text) ? DoubleUp(DoubleUp(text, '\''), '*') : std::string(text);
}

std::string KeyCriterion(std::string_view key) {
    return "CENTRALKEY='" + SqlDoubleUp(key) + "'";
}

}  // namespace zenvora::databook
