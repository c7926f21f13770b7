#include "platform/link/krn_process.h"

#include <algorithm>
#include <filesystem>
#include <gtest/gtest.h>
#include <string>

#include "platform/fault.h"
#include "platform/link/wine_carrier.h"
#include "support/temp_folder.h"

namespace zenvora::link {
namespace {

/// A made-up /proc.
class KrnProcessTest : public testing::Test {
  protected:
    KrnProcessTest() { folder.Write("home/.wine/drive_c/x", ""); }
    void Add(int pid, const std::string& name, const std::string& environment, char state = 'S') {
        const std::string process = "proc/" + std::to_string(pid) + "/";
        folder.Write(process + "comm", name + "\n");
        folder.Write(process + "stat", std::to_string(pid) + " (" + name + ") " + state + " 1 1");
        folder.Write(process + "environ", environment);
        std::filesystem::remove(Root() / std::to_string(pid) / "exe");
        std::filesystem::create_symlink("/opt/wine/bin/wine64-preloader",
                                        Root() / std::to_string(pid) / "exe");
    }
    [[nodiscard]] std::filesystem::path Root() const { return folder / "proc"; }
    [[nodiscard]] std::filesystem::path Home() const { return folder / "home"; }
    [[nodiscard]] std::string Prefix(const std::string& name) {
        folder.Write(name + "/drive_c/x", "");
        return (folder / name).string();
    }

    testing_support::TempFolder folder;
};

bool Holds(const KrnProcess& krn, const std::string& variable) {
    return std::find(krn.environment.begin(), krn.environment.end(), variable) != krn.environment.end();
}

TEST_F(KrnProcessTest, IsFoundWithoutRegardToCase) {
    folder.Write("proc/self/comm", "KRN.EXE\n");
    Add(11, "bash", "");
    Add(12, "krn.exe", std::string("DISPLAY=:7\0LC_ALL=de_DE\0SECRET=1\0", 34));
    const auto krn = FindKrn(Root(), Home());
    ASSERT_TRUE(krn);
    EXPECT_EQ(krn->pid, 12);
    EXPECT_EQ(krn->loader, "/opt/wine/bin/wine64");
    EXPECT_EQ(krn->prefix, Home() / ".wine");
    EXPECT_FALSE(krn->is32Bit);
    EXPECT_TRUE(Holds(*krn, "DISPLAY=:7"));
    EXPECT_TRUE(Holds(*krn, "LC_ALL=de_DE"));
    EXPECT_TRUE(Holds(*krn, "WINEPREFIX=" + (Home() / ".wine").string()));
    EXPECT_FALSE(Holds(*krn, "SECRET=1"));
}

TEST_F(KrnProcessTest, NamesThatOnlyResembleItAreNotIt) {
    Add(12, "KRN.EXE.bak", "");
    Add(13, "MYKRN.EXE", "");
    Add(14, "KRN", "");
    EXPECT_FALSE(FindKrn(Root(), Home()));
    EXPECT_FALSE(FindKrn(folder / "nowhere", Home()));
}

TEST_F(KrnProcessTest, AProcessThatEndsWhileItIsLookedAtIsPassedOver) {
    // It can be opened, and no more be read: so can a folder.
    std::filesystem::create_directories(Root() / "11/comm");
    EXPECT_FALSE(FindKrn(Root(), Home()));
    Add(12, "KRN.EXE", "");
    std::filesystem::remove(Root() / "12/environ");
    std::filesystem::create_directory(Root() / "12/environ");
    const auto krn = FindKrn(Root(), Home());
    ASSERT_TRUE(krn);
    EXPECT_EQ(krn->prefix, Home() / ".wine");
    std::filesystem::remove(Root() / "12/comm");
    std::filesystem::create_directory(Root() / "12/comm");
    EXPECT_FALSE(IsStillThere(*krn, Root()));
}

TEST_F(KrnProcessTest, AZombieIsNotIt) {
    Add(12, "KRN.EXE", "", 'Z');
    EXPECT_FALSE(FindKrn(Root(), Home()));
    Add(13, "KRN.EXE", "");
    const auto krn = FindKrn(Root(), Home());
    ASSERT_TRUE(krn);
    EXPECT_EQ(krn->pid, 13);
    EXPECT_TRUE(IsStillThere(*krn, Root()));
    Add(13, "KRN.EXE", "", 'Z');
    EXPECT_FALSE(IsStillThere(*krn, Root()));
    Add(13, "bash", "");
    EXPECT_FALSE(IsStillThere(*krn, Root())) << "its number went to another program";
}

TEST_F(KrnProcessTest, ItsPrefixIsTheOneOfItsEnvironment) {
    const std::string prefix = Prefix("other");
    Add(12, "KRN.EXE", "WINEPREFIX=" + prefix);
    const auto krn = FindKrn(Root(), Home());
    ASSERT_TRUE(krn);
    EXPECT_EQ(krn->prefix, prefix);
}

TEST_F(KrnProcessTest, APrefixWithoutDriveIsPassedOver) {
    Add(12, "KRN.EXE", "WINEPREFIX=" + (folder / "gone").string());
    EXPECT_FALSE(FindKrn(Root(), Home()));
}

TEST_F(KrnProcessTest, ThirtyTwoBitPrefixesSayIt) {
    const std::string prefix = Prefix("old");
    folder.Write("old/system.reg", "WINE REGISTRY Version 2\n;; All keys\n\n#arch=win32\n");
    Add(12, "KRN.EXE", "WINEPREFIX=" + prefix);
    EXPECT_TRUE(FindKrn(Root(), Home())->is32Bit);
    folder.Write("old/system.reg", "WINE REGISTRY Version 2\n;; All keys\n\n#arch=win64\n");
    EXPECT_FALSE(FindKrn(Root(), Home())->is32Bit);
}

TEST_F(KrnProcessTest, WithoutItNoHelperIsStarted) {
    folder.Write("zenvora-dde.exe", "#!/bin/sh\n");
    const auto carrier =
        MakeWineCarrier({.helperFolder = folder.Path(), .home = Home(), .procRoot = Root(), .limits = {}});
    try {
        carrier->Open("KRN", "Query");
        FAIL() << "somebody answered";
    } catch (const Fault& fault) {
        EXPECT_EQ(fault.number, 282);
    }
}

TEST_F(KrnProcessTest, AMissingHelperIsNamed) {
    Add(12, "KRN.EXE", "");
    const auto carrier =
        MakeWineCarrier({.helperFolder = folder.Path(), .home = Home(), .procRoot = Root(), .limits = {}});
    try {
        carrier->Open("KRN", "Query");
        FAIL() << "somebody answered";
    } catch (const Fault& fault) {
        EXPECT_EQ(fault.number, 285) << "not passed over as nobody's answer is";
        EXPECT_NE(fault.description.find("zenvora-dde.exe"), std::string::npos);
    }
}

TEST_F(KrnProcessTest, TheHelperIsStartedByItsLoaderWithItsLimits) {
    // The loader is a script that speaks the protocol, and writes down how it was started.
    const auto loader = folder.Write("loader",
                                     "#!/bin/sh\n"
                                     "printf '%s\\n' \"$@\" \"$WINEPREFIX\" \"$DISPLAY\" >'" +
                                         (folder / "started").string() +
                                         "'\n"
                                         "printf '*READY\\t1\\n'\n"
                                         "read line\n"
                                         "printf '1\\tOK\\t\\n'\n"
                                         "cat >/dev/null\n");
    std::filesystem::permissions(loader, std::filesystem::perms::owner_all);
    folder.Write("zenvora-dde.exe", "");
    Add(12, "KRN.EXE", std::string("DISPLAY=:7\0PATH=/usr/bin:/bin\0", 30));
    std::filesystem::remove(Root() / "12/exe");
    std::filesystem::create_symlink(loader.string() + "-preloader", Root() / "12/exe");
    const auto carrier = MakeWineCarrier({.helperFolder = folder.Path(),
                                          .home = Home(),
                                          .procRoot = Root(),
                                          .codePage = 1250,
                                          .limits = {std::chrono::milliseconds(4000), {}}});
    carrier->Open("KRN", "Query");
    EXPECT_EQ(folder.Read("started"), (folder / "zenvora-dde.exe").string() +
                                          "\n--limit\n4000\n--codepage\n1250\n" +
                                          (Home() / ".wine").string() + "\n:7\n");
}

}  // namespace
}  // namespace zenvora::link
