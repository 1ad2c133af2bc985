#ifndef REPORT_H
#define REPORT_H

#include <QtCore/QString>

/// One line on the standard error, which the journal keeps; whether the library's log is on or off.
void report(const QString &text);

#endif
