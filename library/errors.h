// The one error type of the program, and the error numbers it carries. A
// failure the user is told about goes to the error dialog as a description
// and a number ("The following Error occurred: ... Number: ..."); the numbers
// are those the old program showed for the same causes.
#pragma once

#include <stdexcept>
#include <string>

namespace vantrel {

namespace errors {

inline constexpr int kInvalidProcedureCall = 5;  // "Invalid procedure call or argument"
inline constexpr int kOutOfMemory = 7;
inline constexpr int kSubscriptOutOfRange = 9;
inline constexpr int kInternalError = 51;
inline constexpr int kDeviceIoError = 57;  // a file that can't be read
inline constexpr int kDiskFull = 61;
inline constexpr int kInputPastEnd = 62;
inline constexpr int kPathFileAccessError = 75;
inline constexpr int kInvalidUseOfNull = 94;
inline constexpr int kPrinterError = 482;
inline constexpr int kNoDatabase = 3024;  // the working database is missing or no database
inline constexpr int kNoTable = 3078;     // a table of it is missing
// Another program works on the working database (SQLite's SQLITE_BUSY).
inline constexpr int kBusy = 5;

}  // namespace errors

class Error : public std::runtime_error {
public:
    Error(const std::string& description, int number) : std::runtime_error(description), number_(number) {}
    int number() const { return number_; }

private:
    int number_;
};

}  // namespace vantrel
