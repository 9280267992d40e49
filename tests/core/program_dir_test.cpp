// Where the program keeps its files: beside itself when it may write there,
// otherwise in the user's folder, with the working database copied in once.
#include <gtest/gtest.h>

#include <fstream>

#include "import/program_dir.h"
#include "store_test_support.h"

namespace vantrel::install {
namespace {

namespace fs = std::filesystem;
using storetest::TempDir;

void Touch(const fs::path& file, const std::string& text = "db") {
    fs::create_directories(file.parent_path());
    std::ofstream(file) << text;
}

TEST(ProgramFolders, BesideTheProgramOrInTheUsersFolder) {
    TempDir t;
    Touch(t / "build/bin/Tessimo.mdb");
    Touch(t / "usr/bin/vantrel");
    Touch(t / "usr/share/vantrel/Tessimo.mdb", "empty");
    const std::string home = t / "home";

    const ProgramFolders build = ResolveProgramFolders(t / "build/bin", "", home);
    EXPECT_EQ(build.programDir, t / "build/bin");
    EXPECT_EQ(build.dataDir, t / "build/bin");

    const ProgramFolders installed = ResolveProgramFolders(t / "usr/bin", "", home);
    EXPECT_EQ(installed.error, "");
    EXPECT_EQ(installed.programDir, home + "/.local/share/Vantrel");
    EXPECT_EQ(installed.dataDir, t / "usr/share/vantrel");
    std::string copied;
    std::ifstream(installed.programDir + "/Tessimo.mdb") >> copied;
    EXPECT_EQ(copied, "empty");
    Touch(installed.programDir + "/Tessimo.mdb", "used");  // a later start keeps the user's copy
    ResolveProgramFolders(t / "usr/bin", "", home);
    std::ifstream(installed.programDir + "/Tessimo.mdb") >> copied;
    EXPECT_EQ(copied, "used");

    EXPECT_EQ(ResolveProgramFolders(t / "usr/bin", t / "xdg", home).programDir, t / "xdg/Vantrel");
    EXPECT_EQ(ResolveProgramFolders(t / "usr/bin", "relative", home).programDir, installed.programDir);

    fs::create_directories(t / "broken/share/vantrel/Tessimo.mdb");  // not a file: the copy fails
    EXPECT_EQ(ResolveProgramFolders(t / "broken/bin", "", t / "home3").error.rfind(
                  "The working database could not be copied from " + t / "broken/share/vantrel/Tessimo.mdb", 0),
              0u);
    Touch(t / "file");
    EXPECT_EQ(ResolveProgramFolders(t / "usr/bin", "", t / "file").error,
              "The folder " + t / "file/.local/share/Vantrel" + " could not be made: Not a directory.");
}

}  // namespace
}  // namespace vantrel::install
