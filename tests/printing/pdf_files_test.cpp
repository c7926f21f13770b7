#include "printing/pdf_files.h"

#include <gtest/gtest.h>

#include "analysis/databook_fixture.h"
#include "support/recording_page.h"

namespace zenvora::printing {
namespace {

using analysis::Flag;
using testing_support::PageRecord;

class AuditPdf : public analysis::DatabookTest {
  protected:
    [[nodiscard]] AuditReport Report() {
        return {.session = session,
                .adoDatabook = adoDatabook,
                .effectiveDate = analysis::Effective(),
                .databookName = "LISTINGS.MDB"};
    }

    PageRecord record;
    page::PdfMaker makePdf = testing_support::RecordingPdfMaker(record);
};

TEST_F(AuditPdf, IsTheReportUnderItsTitle) {
    Add("L1", {{"ADDRESS", std::string("12 Oak St")}, {"SELECTED", Flag("1")}});
    const AuditCounts counts = WriteAuditPdf(Report(), makePdf, folder / "A.pdf");
    EXPECT_EQ(folder.Read("A.pdf"), "%PDF-1.4 Market Conditions Audit Report");
    EXPECT_EQ(counts.listings, 1);
    EXPECT_EQ(counts.pages, 1);
    EXPECT_EQ(record.ended, 1);
    EXPECT_EQ(record.orientation, page::kLandscape);
}

TEST_F(AuditPdf, AFailureLeavesTheOldFile) {
    folder.Write("A.pdf", "%PDF-1.4 old");
    record.failAfter = 3;
    EXPECT_THROW(WriteAuditPdf(Report(), makePdf, folder / "A.pdf"), Fault);
    EXPECT_EQ(folder.Read("A.pdf"), "%PDF-1.4 old");
    EXPECT_FALSE(std::filesystem::exists(folder / "A.pdf.bak"));
}

TEST_F(AuditPdf, NeverTakesThePlaceOfTheDatabook) {
    const std::string before = folder.Read("LISTINGS.mdb");
    try {
        WriteAuditPdf(Report(), makePdf, folder / "LISTINGS.mdb");
        FAIL() << "the Databook was replaced";
    } catch (const Fault& fault) {
        EXPECT_EQ(fault.number, fault::kFileExists);
        EXPECT_EQ(fault.place.file, (folder / "LISTINGS.mdb").string());
    }
    EXPECT_EQ(folder.Read("LISTINGS.mdb"), before);
    EXPECT_TRUE(record.texts.empty()) << "it is refused before anything is printed";
}

TEST_F(AuditPdf, AFolderThatIsNotThereIsAFault) {
    EXPECT_THROW(WriteAuditPdf(Report(), makePdf, folder / "none" / "A.pdf"), Fault);
}

TEST_F(AuditPdf, TheMenuEntryOffersTheNameOfTheDatabook) {
    desktop.ExpectFile((folder / "A.pdf").string());
    SaveAuditPdf(Report(), makePdf, folder.Path().string());
    EXPECT_TRUE(std::filesystem::exists(folder / "A.pdf"));
    ASSERT_EQ(desktop.dialogs.size(), 1U);
    EXPECT_EQ(desktop.dialogs[0].title, "Audit Report as PDF");
    EXPECT_EQ(desktop.dialogs[0].fileName, "LISTINGS Audit Report.pdf");
    EXPECT_EQ(desktop.dialogs[0].defaultExtension, "pdf");
    EXPECT_TRUE(desktop.messages.empty());
}

TEST_F(AuditPdf, TheMenuEntryTellsWhatWentWrong) {
    const std::string path = (folder / "A.pdf").string();
    record.failAfter = 3;
    desktop.ExpectFile(path);
    desktop.ExpectAny();
    SaveAuditPdf(Report(), makePdf, folder.Path().string());
    ASSERT_EQ(desktop.messages.size(), 1U);
    EXPECT_EQ(desktop.messages[0].text.find("The file " + path + " was not written.\n"), 0U);
    EXPECT_FALSE(std::filesystem::exists(folder / "A.pdf"));
}

}  // namespace
}  // namespace zenvora::printing
