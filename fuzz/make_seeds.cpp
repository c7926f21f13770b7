// make_seeds FOLDER: writes what the fuzzers start from, one folder for each kind of file.

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

#include "databook_bytes.h"
#include "platform/fault.h"

namespace {

namespace fs = std::filesystem;
using namespace zenvora;

jet::NewColumn ColumnOf(const char* name, jet::ColumnType type, int characters = 0) {
    jet::NewColumn column;
    column.name = name;
    column.type = type;
    column.characters = characters;
    return column;
}

/// Every type, a text key, an index in descending order that leaves out Nulls.
jet::NewTable AllTypes() {
    using T = jet::ColumnType;
    jet::NewTable table;
    table.name = "AllTypes";
    table.columns = {
        ColumnOf("Street", T::Text, 50), ColumnOf("Yes", T::Boolean),  ColumnOf("Small", T::Byte),
        ColumnOf("Short", T::Integer),   ColumnOf("Whole", T::Long),   ColumnOf("Amount", T::Currency),
        ColumnOf("Rough", T::Single),    ColumnOf("Price", T::Double), ColumnOf("Listed", T::DateTime),
        ColumnOf("Note", T::Memo),       ColumnOf("Picture", T::Ole),  ColumnOf("Exact", T::Numeric),
        ColumnOf("Flag", T::Text, 2),    ColumnOf("Number", T::Long)};
    table.columns[12].fixedLength = true;
    table.columns[13].autoNumber = true;
    table.columns[3].properties.defaultValue = "7";
    jet::NewIndex key{"PrimaryKey", {"Street"}, {}, true, false, false, true};
    jet::NewIndex dates{"Dates", {"Listed", "Street"}, {true, false}, false, true, false, false};
    table.indexes = {key, dates};
    return table;
}

std::vector<jet::Value> RowOf(int number, std::size_t noteLength) {
    return {"Oak " + std::to_string(number),
            number % 2 == 0,
            number % 200,
            number,
            number * 3,
            jet::Currency{number * 10000},
            1.5F,
            2.5,
            number % 3 == 0 ? jet::Value{jet::Null{}} : jet::Value{jet::DateTime{40000.0 + number}},
            std::string(noteLength, 'n'),
            jet::Bytes(static_cast<std::size_t>(number % 90), std::byte{1}),
            3.0,
            "x",
            jet::Null{}};
}

/// A Databook of some rows, `changed` so that it has moved and deleted ones.
void MakeDatabook(const fs::path& path, int rows, bool changed) {
    testing_support::MemoryDisk disk;
    {
        const auto databook = jet::Database::Create(fuzz::kDatabook, 46000, disk);
        databook->Begin();
        jet::Table& table = databook->CreateTable(AllTypes(), 46000);
        std::vector<jet::RowId> ids;
        for (int i = 0; i < rows; ++i) {
            static constexpr std::size_t kLengths[] = {0, 10, 60, 700, 5000};
            // Many rows are for the index; long values would only make the file larger.
            const std::size_t length = kLengths[static_cast<std::size_t>(i) % std::size(kLengths)];
            ids.push_back(table.Insert(RowOf(i, rows > 50 ? 0 : length)));
        }
        for (std::size_t i = 0; changed && i < ids.size(); ++i) {
            if (i % 5 == 1) table.Delete(ids[i]);
            if (i % 5 == 2) {
                auto longer = RowOf(static_cast<int>(i) + 10000, 30);
                longer[0] = "A much longer street name, number " + std::to_string(i);
                table.Update(ids[i], longer);
            }
        }
        databook->Commit();
    }
    disk.Export(fuzz::kDatabook, path);
}

void WriteSeed(const fs::path& path, std::string_view bytes) {
    std::ofstream(path, std::ios::binary).write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fputs("usage: fuzz_seeds FOLDER\n", stderr);
        return 2;
    }
    const fs::path folder = argv[1];
    for (const char* kind : {"jet", "delimited", "xml", "map", "sql", "ini", "link", "rich_text"})
        fs::create_directories(folder / kind);
    try {
        MakeDatabook(folder / "jet/empty_table.mdb", 0, false);
        MakeDatabook(folder / "jet/few_rows.mdb", 12, true);
        MakeDatabook(folder / "jet/two_levels.mdb", 220, true);
    } catch (const Fault& fault) {
        std::fprintf(stderr, "fuzz_seeds: %s\n", fault.description.c_str());
        return 1;
    }
    WriteSeed(folder / "delimited/comma.csv",
              "Street,City,Price\r\n\"12 Oak, Rear\",Troy,250000\r\n14 Oak,,\r\n");
    WriteSeed(folder / "delimited/tab.txt", "Street\tCity\n12 \"Oak\" St\tTroy\n");
    WriteSeed(folder / "delimited/pipe.txt", "a|b;c~d|\n\"x\"|y||\n");
    WriteSeed(folder / "xml/two_records.xml",
              "<LIST>\n<REC>\n<ADDRESS>12 Oak</ADDRESS>\n<CITY>Troy</CITY>\n</REC>\n<REC>\n<ADDRESS>14 "
              "Oak</ADDRESS>\n"
              "<CITY></CITY>\n</REC>\n</LIST>\n");
    WriteSeed(folder / "map/plain.map",
              "Street <-> Address\r\n\"City <-> City\"\r\nPrice<->Selling Price\r\n");
    WriteSeed(folder / "sql/select.sql", "SELECT A, [B C] FROM COMPS WHERE A = 'x''y' ORDER BY A DESC");
    WriteSeed(folder / "sql/insert.sql", "INSERT INTO COMPS (A, B) VALUES ('x', -1.5e3), (Null, #1/2/2010#)");
    WriteSeed(folder / "sql/add.sql", "ALTER TABLE COMPS ADD COLUMN X CHAR(4)");
    WriteSeed(folder / "sql/default.sql", "ALTER TABLE COMPS ALTER COLUMN X SET DEFAULT '1'");
    // The names of the key that is set, and the file.
    using namespace std::string_view_literals;
    WriteSeed(folder / "ini/settings.ini",
              "CONFIG\0ADDZEROES\0; mine\r\n[Config]\r\nAddZeroes = \"1\"\r\n\r\n[B]\r\nK=\r\n"sv);
    WriteSeed(folder / "ini/list.ini", "L\0ITEM\0[L]\nITEM01=a\nITEM02=b\nITEM04=d\nno key\n=\n"sv);
    WriteSeed(folder / "ini/old.ini", "A\0K\0[A]\r\nK=\xE9\r\n"sv);
    WriteSeed(folder / "ini/wide.ini", "A\0K\0\xFF\xFE[\0A\0]\0\n\0K\0=\0"sv);
    WriteSeed(folder / "link/replies.txt",
              "*READY\t1\n1\tOK\t\n2\tOK\tSmith,\n3\tERR\t380\tThe item was refused.\n");
    WriteSeed(folder / "link/queries.txt",
              "1\tOPEN\tKRN\tQuery\n2\tREQUEST\ta\\tb\n3\tPOKE\ta\tc\\r\\n\n4\tCLOSE\n5\tFITS\t\xC5\xBB\n");
    WriteSeed(
        folder / "rich_text/looks.rtf",
        "{\\rtf1\\ansi{\\fonttbl{\\f0 Arial;}}{\\colortbl;\\red255\\green0\\blue0;}\\uc1"
        "\\qc\\sb60\\sa20\\b One\\b0\\par\\pard\\li360\\fi-220\\bullet{\\i two}{\\ul\\cf1\\fs40 3}\\par"
        "caf\\'e9 \\u8364?\\u-10179?\\u-8704?\\line\\tab{\\*\\x y}{\\v no}\\bin3 }}}\\~\\ulnone\\plain}");
    WriteSeed(folder / "rich_text/plain.txt", "no rich text\r\nat all\n");
    return 0;
}
