// The printer set-up dialog of the File menu.
#pragma once

class QWidget;

void ShowPrintSetup(QWidget* parent);
