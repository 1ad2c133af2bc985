#ifndef SCRIPTHELP_H
#define SCRIPTHELP_H

#include "helptopics.h"

/// What scenarios can call: "AudioPolicy" with all of its operations, "AudioPolicy.setVolume" with its arguments and result.
class ScriptHelp : public HelpTopics
{
public:
    QStringList names() const override;
    QString text(const QString &name) const override;
};

#endif
