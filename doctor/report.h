#ifndef REPORT_H
#define REPORT_H

#include "finding.h"

#include <QtCore/QByteArray>

/// What was found, as it is printed.
namespace Report
{
/// For people: a line for each finding, folded at @p columns unless they are 0, and a last one with how many there are of each grade.
QString text(const Findings &findings, int columns);
/// For programs: one object, whose names stay the same in later versions.
QByteArray json(const Findings &findings);
} // namespace Report

#endif
