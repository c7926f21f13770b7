#include "cli/failure.h"

#include <gtest/gtest.h>

namespace zenvora::cli {
namespace {

TEST(FileFaults, AreThoseOfTheFileAndNotOfWhatWasAskedOfIt) {
    for (const int number :
         {fault::kFileNotFound, fault::kPathAccess, fault::kPathNotFound, fault::kDiskFull, fault::kDamaged,
          fault::kNotADatabook, fault::kPassword, fault::kInUse, fault::kReadOnly}) {
        EXPECT_TRUE(IsFileFault({number, ""})) << number;
    }
    for (const int number : {fault::kSyntax, fault::kDuplicateKey, fault::kTypeMismatch, fault::kNoSuchTable,
                             fault::kItemNotFound, fault::kTooLong}) {
        EXPECT_FALSE(IsFileFault({number, ""})) << number;
    }
}

}  // namespace
}  // namespace zenvora::cli
