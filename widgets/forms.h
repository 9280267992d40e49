// Process-wide state of the program, the single instances of the shared
// windows, and the helpers that every window uses.
#pragma once

#include <QElapsedTimer>
#include <QFont>
#include <QString>
#include <cstdint>
#include <string>

class QWidget;
class frm_status;

namespace vantrel {

// Process-wide flags.
inline bool bReverseSides = false;         // the board is shown from Black's side
inline bool SmartForms = false;            // the main frame's position is remembered
inline bool AppClosing = false;            // the program is on its way out
inline bool CommentsMovesStacked = false;  // comments and moves share one place
inline QString NewLibraryPath;             // the library the import wizard made
inline int16_t ImportCancelled = 0;        // 1: the wizard ended without a library

// "Vantrel": the title of message boxes that have none of their own.
QString ProgramTitle();

// The program's own folder: Tessimo.mdb, new libraries and _prt.tmp live
// there. Run from a folder it may write to, that folder; installed, a folder
// of the user's own (import/program_dir.h). Tests point it elsewhere.
QString ProgramDir();
void SetProgramDir(const QString& dir);

// Where the program's read-only files are, vantrel.HLP among them: the
// program's folder, or the install's share/vantrel. Follows SetProgramDir.
QString DataDir();

// Why the program's folder can't be used (it can't be made, or the working
// database can't be copied into it), or empty.
QString ProgramDirProblem();

// Screen lengths are worked out in twips, as on a 120-dpi screen.
inline constexpr int kTwipsPerPixel = 12;
inline int TwipsToPixels(int twips) { return twips / kTwipsPerPixel; }
inline int PixelsToTwips(int pixels) { return pixels * kTwipsPerPixel; }

// Library text (Windows-1252) to and from the screen.
QString FromLib(const std::string& cp1252);
std::string ToLib(const QString& text);

// The platform's fixed-pitch font at a size, for text laid out in columns.
QFont FixedPitchFont(qreal pointSize);

// Moves a window to the middle of the screen.
void CenterForm(QWidget* form);

// The error dialog for an unexpected failure: "The following Error
// occurred:", two line breaks, the description, a line break, "Number: ".
void ShowError(const QString& description, int number);

// Keeps a window above all others (or ends that), and shows it.
bool SetAlwaysOnTop(QWidget* form, bool bOnTop = true);

// Lets pending events run (the named yield points of long work).
void DoEvents();

// True when a screen frame (16 ms) has passed since it was last true, and
// the first time: long work shows its progress no more often than a screen
// can. Starts `shown` again when it says true.
bool FrameDue(QElapsedTimer& shown);

}  // namespace vantrel

// The shared windows of this folder, created on first use and living to the
// end of the run; the board, comments and moves windows keep theirs beside
// their classes.
namespace vantrel::forms {
frm_status& Status();      // loaded on first use after each unload
void UnloadStatus();       // unloads frm_status if it is loaded
bool StatusLoaded();

// The program's top-level window registers itself while it lives: the
// windows that belong to no other open in front of it.
QWidget* FrameWindow();  // null before the frame exists
void SetFrameWindow(QWidget* frame);

// A child of the main frame lives in a sub-window: the sub-window is what
// moves, hides and shows. For a window outside the frame, the window itself.
QWidget* OuterWindow(QWidget* form);

// The key of the n-th library window opened: "TV" and five digits.
inline QString WindowKey(int n) { return QStringLiteral("TV%1").arg(n, 5, 10, QLatin1Char('0')); }
}  // namespace vantrel::forms
