#include "databook/template.h"

#include <string>

#include "databook/upgrade_copy.h"
#include "platform/fault.h"
#include "platform/files/host_path.h"
#include "platform/files/whole_file.h"
#include "platform/jet/database.h"

namespace zenvora::databook {
namespace {

constexpr std::string_view kTable = "COMPS";
constexpr int kAddressWidth = 50;
constexpr int kOldColumnWidth = 20;

jet::NewColumn Text(std::string_view name, int characters) {
    jet::NewColumn column;
    column.name = name;
    column.type = jet::ColumnType::Text;
    column.characters = characters;
    column.properties.allowZeroLength = true;
    return column;
}

/// The key: the store keeps it unique, and neither Null nor empty.
jet::NewColumn Key(std::string_view name) {
    jet::NewColumn column = Text(name, kAddressWidth);
    column.properties.required = true;
    column.properties.allowZeroLength = false;
    return column;
}

jet::NewColumn Flag(std::string_view name, int characters) {
    jet::NewColumn column = Text(name, characters);
    column.fixedLength = true;
    return column;
}

jet::NewColumn Number(std::string_view name) {
    jet::NewColumn column;
    column.name = name;
    column.type = jet::ColumnType::Double;
    return column;
}

jet::NewColumn Date(std::string_view name) {
    jet::NewColumn column;
    column.name = name;
    column.type = jet::ColumnType::DateTime;
    return column;
}

jet::NewColumn WithDefault(jet::NewColumn column, std::string_view expression) {
    column.properties.defaultValue = expression;
    return column;
}

jet::NewTable CompsTable() {
    constexpr std::string_view kNoPrice = "0";
    // As a date: without its marks another program would read a division.
    constexpr std::string_view kNoDate = "#1/1/1900#";
    jet::NewTable table;
    table.name = kTable;
    table.columns = {
        Key("CENTRALKEY"),
        Text("ADDRESS", kAddressWidth),
        Text("ADDRESS2", kAddressWidth),
        Text("CITY", 30),
        Text("ST", 2),
        Text("ZIP", 10),
        Text("NEIGHBORHD", 50),
        Number("SELLINGPR"),
        Number("PRICEFLD"),
        Date("SALEDATE"),
        Date("SALEFLD"),
        WithDefault(Number("ORIGLISTPRICE"), kNoPrice),
        WithDefault(Date("ORIGLISTDATE"), kNoDate),
        WithDefault(Number("LASTLISTPRICE"), kNoPrice),
        WithDefault(Date("LASTLISTDATE"), kNoDate),
        WithDefault(Date("CONTRACTDATE"), kNoDate),
        WithDefault(Date("LISTCANCELDATE"), kNoDate),
        WithDefault(Flag("SELECTED", 1), "\"3\""),
        Flag("LISTINGDOM", 4),
        Text("OTHERAREA2", kOldColumnWidth),
        Text("OtherArea1", kOldColumnWidth),
        Text("ContrKDate", kOldColumnWidth),
        Text("ERCFinal", kOldColumnWidth),
        // No screen shows it: it lets a source with days on market load.
        Number("DAYSONMARKET"),
    };
    jet::NewIndex key;
    key.name = "PrimaryKey";
    key.columns = {"CENTRALKEY"};
    key.unique = true;
    key.required = true;
    key.primaryKey = true;
    table.indexes = {std::move(key)};
    return table;
}

/// Lets the engine look at a Databook that will be replaced: a change that a crash broke off is undone first,
/// so that the copy that is kept is whole. Fault 3045: another program has it open for writing.
void Settle(common::Session& session, const std::filesystem::path& databook) {
    try {
        static_cast<void>(session.databooks.Open(databook, jet::Database::Access::ReadWrite));
    } catch (const Fault& fault) {
        // What the engine cannot work with, damaged or no Databook at all, is kept as it is.
        if (fault.number == fault::kInUse) throw;
    }
}

}  // namespace

void CreateTemplate(const std::filesystem::path& path, text::Date now) {
    const std::unique_ptr<jet::Database> database = jet::Database::Create(path, now);
    try {
        database->CreateTable(CompsTable(), now);
    } catch (...) {
        files::SystemDisk().Remove(path);
        throw;
    }
}

void CopyNewData(common::Session& session, const std::filesystem::path& newData,
                 const std::filesystem::path& destination) {
    if (!files::FileExists(newData)) {
        throw Fault{fault::kFileNotFound,
                    "The template for new Databooks is missing or empty. Install the program again.",
                    Place{newData.string()}};
    }
    const bool replaces = files::FileExists(destination);
    if (replaces) Settle(session, destination);
    files::CopyWholeFile(newData, destination, replaces ? files::Replaced::KeptAsBak : files::Replaced::Gone);
    // An upgrade of the old file that was broken off is no matter of the new one.
    if (const UpgradeCopy upgrade(destination); upgrade.IsUnfinished()) upgrade.End();
    // Whoever connects from here on is to meet the new file, though data controls may still hold the old one.
    session.databooks.Forget(destination);
}

}  // namespace zenvora::databook
