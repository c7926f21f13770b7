#include "common/fault_text.h"

#include <gtest/gtest.h>
#include <utility>

namespace zenvora::common {
namespace {

Place PlaceOf(std::string file, long line = 0, long page = -1) {
    Place place;
    place.file = std::move(file);
    place.line = line;
    place.page = page;
    return place;
}

TEST(FaultLines, NameTheFileAndThePlaceInIt) {
    EXPECT_EQ(
        FaultLine({fault::kDamaged, "A row starts outside of the page.", PlaceOf("A.mdb", 0, 0)}, "B.mdb"),
        "A.mdb, page 0: A row starts outside of the page. (error 3049)");
    EXPECT_EQ(FaultLine({fault::kSourceFormat, "Too many fields.", PlaceOf("A.CSV", 7)}, ""),
              "A.CSV, line 7: Too many fields. (error 20002)");
}

TEST(FaultLines, FallBackOnTheFileInWork) {
    EXPECT_EQ(FaultLine({fault::kSyntax, "This is no statement."}, "A.mdb"),
              "A.mdb: This is no statement. (error 3134)");
}

TEST(FaultLines, DoNotNameAFileTwice) {
    EXPECT_EQ(FaultLine({fault::kFileNotFound, "A.mdb is not there.", PlaceOf("A.mdb")}, "A.mdb"),
              "A.mdb is not there. (error 53)");
}

TEST(FaultLines, DoNotNameAPageTwiceAndEndInAPeriod) {
    EXPECT_EQ(FaultLine({fault::kDamaged, "page 7: a row lies outside of its place. Work on a copy",
                         PlaceOf("A.mdb", 0, 7)},
                        ""),
              "A.mdb: page 7: a row lies outside of its place. Work on a copy. (error 3049)");
}

TEST(FaultLines, NameAPageThatTheDescriptionOnlySeemsToName) {
    EXPECT_EQ(FaultLine({fault::kDamaged, "It points to page 12.", PlaceOf("A.mdb", 0, 1)}, ""),
              "A.mdb, page 1: It points to page 12. (error 3049)");
}

TEST(FaultLines, AreOneLine) {
    EXPECT_EQ(FaultLine({fault::kDeviceIo, "First.\r\nSecond.", PlaceOf("A.mdb")}, ""),
              "A.mdb: First.  Second. (error 57)");
}

}  // namespace
}  // namespace zenvora::common
