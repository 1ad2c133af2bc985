#ifndef DRIVEHEADING_H
#define DRIVEHEADING_H

#include <QtCore/QString>
#include <QtCore/QtGlobal>

/// What is said of the time that follows, up to the next one.
struct DriveHeading
{
    qint64 time; ///< ms
    QString text;
};

#endif
