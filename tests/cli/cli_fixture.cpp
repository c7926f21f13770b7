#include "cli_fixture.h"

#include <fstream>
#include <sstream>

namespace zenvora::cli {

namespace fs = std::filesystem;

std::string RunResult::LastLine() const {
    if (err.empty()) return "";
    const auto end = err.size() - (err.back() == '\n' ? 1 : 0);
    const auto start = err.rfind('\n', end == 0 ? 0 : end - 1);
    return start == std::string::npos ? err.substr(0, end) : err.substr(start + 1, end - start - 1);
}

RunResult CliTest::Run(const std::vector<std::string>& arguments, link::Carrier& link,
                       const page::PdfMaker& makePdf) {
    std::istringstream in;
    std::ostringstream out;
    std::ostringstream err;
    const shell::FixedClock clock(*text::DayNumber(2010, 6, 30));
    ado::DatabasePool databooks;
    RunResult result;
    result.status = RunProgram(arguments, {{in, out, err}, clock, databooks, false, link, makePdf});
    result.out = out.str();
    result.err = err.str();
    return result;
}

std::string CliTest::MustRun(const std::vector<std::string>& arguments) {
    const auto result = Run(arguments);
    EXPECT_EQ(result.status, Exit::Done) << result.err;
    return result.out;
}

std::string CliTest::At(const std::string& name) const {
    return (folder_ / name).string();
}

std::string CliTest::Write(const std::string& name, const std::string& bytes) const {
    return folder_.Write(name, bytes).string();
}

std::string CliTest::Read(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

std::map<std::string, std::string> CliTest::Everything() const {
    std::map<std::string, std::string> files;
    for (const auto& entry : fs::recursive_directory_iterator(folder_.Path())) {
        files[entry.path().string()] = entry.is_regular_file() ? Read(entry.path().string()) : "";
    }
    return files;
}

std::string CliTest::NewDatabook(const std::string& name) const {
    MustRun({"new", At(name)});
    return At(name);
}

std::string CliTest::SixRecords(const std::string& name) const {
    const auto book = NewDatabook(name);
    const std::string insert =
        "INSERT INTO COMPS (CENTRALKEY, ADDRESS, CITY, ORIGLISTDATE, ORIGLISTPRICE, SALEDATE, SELLINGPR, "
        "SELECTED) VALUES ";
    for (const char* values : {
             // Listed in the last period: 30 days on market, for it counts both its first and its last day.
             "('12 OAK ST', '12 Oak St', 'Troy', #6/1/2010#, 259900, #1/1/1900#, 0, '1')",
             // Sold in the last period, 60 days after its listing.
             "('14 OAK ST', '14 Oak St', 'Troy', #4/11/2010#, 250000, #6/10/2010#, 240000, '1')",
             // Sold in the middle period, 106 days after its listing; a listing of the first one, 59 days
             // old.
             "('16 OAK ST', '16 Oak St', 'Troy', #11/1/2009#, 200000, #2/15/2010#, 190000, '1')",
             // Sold on the very first day that counts, the day of its listing.
             "('18 OAK ST', '18 Oak St', 'Troy', #6/30/2009#, 150000, #6/30/2009#, 150000, '3')",
             // Sold a day too early.
             "('20 OAK ST', '20 Oak St', 'Troy', #1/1/2009#, 100000, #6/29/2009#, 99000, '1')",
             // A listing that the user has excluded.
             "('22 OAK ST', '22 Oak St', 'Troy', #5/1/2010#, 300000, #1/1/1900#, 0, '2')",
         }) {
        MustRun({"sql", book, insert + values});
    }
    return book;
}

std::string CliTest::NoDatabook() {
    std::string bytes;
    for (int i = 0; i < 4000; ++i)
        bytes += "Street,City,Price\r\n";
    return bytes;
}

}  // namespace zenvora::cli
