// The printer set-up dialog of the File menu, and the memory of the printer
// chosen there.
#pragma once

#include <QString>
#include <QStringList>

class QWidget;

void ShowPrintSetup(QWidget* parent);

// A printer of the system chosen in Print Setup is kept in the settings
// store, so that a player sets it once. At the start the program takes it
// again, if the system still has it.
void RememberPrinter(const QString& name);
QString RememberedPrinter(const QStringList& available);
void TakeRememberedPrinter();
