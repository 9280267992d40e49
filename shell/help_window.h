// The program's help: the contents, the search, and a topic by its number.
#pragma once

void ShowHelpContents();
void ShowHelpSearch();
void ShowHelpContext(int id);
