// Where the program keeps its own files. Run from a folder it may write to
// (the build folder, an unpacked copy), that folder holds Tessimo.mdb and
// vantrel.HLP and receives new libraries and _prt.tmp, as always. Installed
// (bin/ beside share/vantrel/, or any folder it can't write to), it works in
// a folder of the user's own, $XDG_DATA_HOME/Vantrel or
// ~/.local/share/Vantrel, and gets the empty working database there from the
// install on first use; the help file stays in the install.
#pragma once

#include <string>

namespace vantrel::install {

// The working database's file name, in the program's folder.
inline constexpr const char* kDatabaseFile = "Tessimo.mdb";

struct ProgramFolders {
    std::string programDir;  // Tessimo.mdb, new libraries, _prt.tmp
    std::string dataDir;     // read-only files: vantrel.HLP, the empty Tessimo.mdb
    std::string error;       // empty, or why programDir is not usable
};

// The folder of the running executable.
std::string ExecutableDir();

// The rule above for an executable in exeDir. xdgDataHome and home are the
// values of $XDG_DATA_HOME and $HOME (empty when unset). Makes the user's
// folder and copies the working database into it where needed; a failure
// leaves `error` set to a sentence naming the folder or file and the cause.
ProgramFolders ResolveProgramFolders(const std::string& exeDir, const std::string& xdgDataHome,
                                     const std::string& home);

// The same for this process, from its executable and environment.
ProgramFolders ResolveProgramFolders();

}  // namespace vantrel::install
