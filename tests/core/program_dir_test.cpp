// Where the program keeps its files: beside itself when it may write there,
// otherwise in the user's folder, with the working database copied in once.
#include <gtest/gtest.h>

#include <fstream>

#include "import/program_dir.h"
#include "store_test_support.h"

namespace vantrel::install {
namespace {

namespace fs = std::filesystem;

std::string Put(const std::string& file, const std::string& text = "empty") {
    fs::create_directories(fs::path(file).parent_path());
    std::ofstream(file) << text;
    return file;
}

std::string Read(const std::string& file) {
    std::string text;
    std::ifstream(file) >> text;
    return text;
}

TEST(ProgramFolders, BesideTheProgramOrInTheUsersFolder) {
    storetest::TempDir t;
    Put(t / "build/bin/Tessimo.mdb");
    Put(t / "usr/share/vantrel/Tessimo.mdb");
    const std::string home = t / "home", user = home + "/.local/share/Vantrel";
    const auto resolve = [&](const std::string& exe, const std::string& xdg, const std::string& h) {
        const ProgramFolders f = ResolveProgramFolders(t / exe, xdg, h);
        return f.programDir + "|" + f.dataDir + "|" + f.error;
    };
    EXPECT_EQ(resolve("build/bin", "", home), t / "build/bin|" + t / "build/bin|");
    EXPECT_EQ(resolve("usr/bin", "", home), user + "|" + t / "usr/share/vantrel|");
    EXPECT_EQ(Read(user + "/Tessimo.mdb"), "empty");
    Put(user + "/Tessimo.mdb", "used");
    EXPECT_EQ(resolve("usr/bin", "relative", home), user + "|" + t / "usr/share/vantrel|");
    EXPECT_EQ(Read(user + "/Tessimo.mdb"), "used") << "the user's copy stays";
    EXPECT_EQ(resolve("usr/bin", t / "xdg", home), t / "xdg/Vantrel|" + t / "usr/share/vantrel|");

    EXPECT_EQ(resolve("usr/bin", "", Put(t / "file")),
              t / "file/.local/share/Vantrel|" + t / "usr/share/vantrel|The folder " + t / "file/.local/share/Vantrel" +
                  " could not be made: Not a directory.");
    fs::create_directories(t / "broken/share/vantrel/Tessimo.mdb");  // not a file: the copy fails
    EXPECT_NE(resolve("broken/bin", "", t / "h2").find("|The working database could not be copied from " +
                                                       t / "broken/share/vantrel/Tessimo.mdb to "),
              std::string::npos);
}

}  // namespace
}  // namespace vantrel::install
