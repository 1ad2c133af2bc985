#ifndef STATETABLE_H
#define STATETABLE_H

#include <QtCore/QString>

/// The platform's state as a table for people.
class StateTable
{
public:
    static QString toText();
};

#endif
