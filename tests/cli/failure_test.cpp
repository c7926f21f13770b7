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

TEST(FileFaults, WhatTheEngineDoesNotDoIsOneOfTheFileWhenItNamesIt) {
    Place place;
    place.file = "B.mdb";
    EXPECT_TRUE(IsFileFault({fault::kUnsupported, "encoded", place}));
    place.file.clear();
    place.column = "CENTRALKEY";
    EXPECT_FALSE(IsFileFault({fault::kUnsupported, "a character that cannot be sorted", place}));
}

}  // namespace
}  // namespace zenvora::cli
