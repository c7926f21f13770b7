#pragma once

#include <gtest/gtest.h>
#include <map>
#include <string>
#include <vector>

#include "cli/program.h"
#include "platform/link/carrier.h"
#include "support/temp_folder.h"

namespace zenvora::cli {

/// What a command line left behind.
struct RunResult {
    Exit status = Exit::Done;
    std::string out;
    std::string err;

    /// The last line of `err`, without its line end.
    [[nodiscard]] std::string LastLine() const;
};

/// A folder of its own for each test, and the program run in it with string streams. The clock stands at
/// 06/30/2010.
class CliTest : public testing::Test {
  protected:
    /// Without `makePdf` the program is one that was built without printing.
    [[nodiscard]] static RunResult Run(const std::vector<std::string>& arguments,
                                       link::Carrier& link = link::NoCarrier(),
                                       const page::PdfMaker& makePdf = {});
    /// Runs and expects status 0; returns standard output.
    static std::string MustRun(const std::vector<std::string>& arguments);

    /// A path in the test's folder.
    [[nodiscard]] std::string At(const std::string& name) const;
    /// Writes a file there and returns its path.
    std::string Write(const std::string& name, const std::string& bytes) const;
    [[nodiscard]] static std::string Read(const std::string& path);
    /// Every file of the folder with its bytes: to see that a refused command changed nothing.
    [[nodiscard]] std::map<std::string, std::string> Everything() const;

    /// A new, empty Databook.
    [[nodiscard]] std::string NewDatabook(const std::string& name = "BOOK.mdb") const;
    /// A Databook of six records whose figures as of 06/30/2010 are easy to work out by hand; see the source.
    [[nodiscard]] std::string SixRecords(const std::string& name = "BOOK.mdb") const;
    /// Bytes that are no Databook, long enough for several pages.
    [[nodiscard]] static std::string NoDatabook();

  private:
    testing_support::TempFolder folder_;
};

}  // namespace zenvora::cli
