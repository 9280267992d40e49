#include "import/program_dir.h"

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <system_error>

namespace vantrel::install {
namespace fs = std::filesystem;
namespace {

bool Writable(const fs::path& dir) { return ::access(dir.c_str(), W_OK) == 0; }

std::string Env(const char* name) {
    const char* value = std::getenv(name);
    return value ? value : "";
}

}  // namespace

std::string ExecutableDir() {
    std::error_code ec;
    const fs::path self = fs::read_symlink("/proc/self/exe", ec);
    return ec ? fs::current_path(ec).string() : self.parent_path().string();
}

ProgramFolders ResolveProgramFolders(const std::string& exeDir, const std::string& xdgDataHome,
                                     const std::string& home) {
    const fs::path exe(exeDir);
    const fs::path shared = (exe / ".." / "share" / "vantrel").lexically_normal();
    std::error_code ec;
    // An install's bin/ is never written to, not even by root.
    const bool installed = !fs::exists(exe / kDatabaseFile, ec) && fs::exists(shared / kDatabaseFile, ec);
    if (!installed && Writable(exe)) return {exeDir, exeDir, {}};

    ProgramFolders folders;
    folders.dataDir = installed ? shared.string() : exeDir;
    fs::path user;
    if (!xdgDataHome.empty() && fs::path(xdgDataHome).is_absolute())
        user = fs::path(xdgDataHome) / "Vantrel";
    else if (!home.empty())
        user = fs::path(home) / ".local" / "share" / "Vantrel";
    else {
        folders.programDir = exeDir;
        folders.error = "The folder " + exeDir +
                        " can't be written to, and neither XDG_DATA_HOME nor HOME is set to find another.";
        return folders;
    }
    folders.programDir = user.string();
    fs::create_directories(user, ec);
    if (ec || !fs::is_directory(user)) {
        folders.error = "The folder " + user.string() + " could not be made: " + ec.message() + ".";
        return folders;
    }
    const fs::path database = user / kDatabaseFile;
    if (fs::exists(database, ec)) return folders;
    const fs::path empty = fs::path(folders.dataDir) / kDatabaseFile;
    fs::copy_file(empty, database, ec);
    if (!ec) fs::permissions(database, fs::perms::owner_read | fs::perms::owner_write, fs::perm_options::add, ec);
    if (ec) {
        std::error_code ignored;
        fs::remove(database, ignored);
        folders.error = "The working database could not be copied from " + empty.string() + " to " +
                        database.string() + ": " + ec.message() + ".";
    }
    return folders;
}

ProgramFolders ResolveProgramFolders() {
    return ResolveProgramFolders(ExecutableDir(), Env("XDG_DATA_HOME"), Env("HOME"));
}

}  // namespace vantrel::install
