#include "platform/files/host_fault.h"

#include <cerrno>
#include <gtest/gtest.h>

namespace zenvora::files {
namespace {

struct Cause {
    const char* name;
    int error;
    int number;
};
class HostFaults : public testing::TestWithParam<Cause> {};

TEST_P(HostFaults, HaveTheNumbersOfTheRulesAndSayWhatToDo) {
    const Fault fault = HostFault(GetParam().error, "write to", "/data/LISTINGS.mdb");
    EXPECT_EQ(fault.number, GetParam().number);
    EXPECT_EQ(fault.place.file, "/data/LISTINGS.mdb");
    EXPECT_EQ(fault.description.rfind("Cannot write to \"/data/LISTINGS.mdb\": ", 0), 0U)
        << fault.description;
    // A cause, then an advice.
    EXPECT_NE(fault.description.find(". "), std::string::npos) << fault.description;
    EXPECT_EQ(fault.description.back(), '.');
}

INSTANTIATE_TEST_SUITE_P(Errors, HostFaults,
                         testing::Values(Cause{"Denied", EACCES, 75}, Cause{"NotAllowed", EPERM, 75},
                                         Cause{"ReadOnlyDisk", EROFS, 75}, Cause{"Directory", EISDIR, 75},
                                         Cause{"LongName", ENAMETOOLONG, 75}, Cause{"Links", ELOOP, 75},
                                         Cause{"FileInPath", ENOTDIR, 76}, Cause{"NoFolder", ENOENT, 76},
                                         Cause{"Exists", EEXIST, 58}, Cause{"Busy", EBUSY, 70},
                                         Cause{"Full", ENOSPC, 61}, Cause{"Quota", EDQUOT, 61},
                                         Cause{"TooBig", EFBIG, 61}, Cause{"NoDevice", ENODEV, 68},
                                         Cause{"Device", EIO, 57}, Cause{"Other", EMFILE, 57}),
                         [](const auto& info) { return info.param.name; });

TEST(HostFault, TellsAMissingFileFromAMissingFolder) {
    EXPECT_EQ(HostFault(ENOENT, "open", "/no-such-file").number, 53);
    EXPECT_EQ(HostFault(ENOENT, "open", "no-such-file").number, 53);
    EXPECT_EQ(HostFault(ENOENT, "open", "/no-such-folder/file").number, 76);
}

}  // namespace
}  // namespace zenvora::files
