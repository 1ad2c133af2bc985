#ifndef JSONVIEW_H
#define JSONVIEW_H

#include "timelineview.h"

#include <QtCore/QByteArray>
#include <QtCore/QJsonObject>
#include <QtCore/QString>

/// The timeline for programs: one JSON object a line.
class JsonView : public TimelineView
{
public:
    /// @param played the scenario's file, which each object names
    explicit JsonView(const QString &played);

    void show(const TimelineEvent &event, const Heard &heard, bool isNew) override;

    /// One line, which also harms nobody who shows it on a terminal.
    static QByteArray line(const QJsonObject &object);

protected:
    /// What each line begins with: of what it tells.
    virtual QJsonObject origin() const;

private:
    QJsonObject wholeObject(const QJsonObject &object) const;
    static QJsonObject object(const TimelineEvent &event);

    QString m_scenario;
};

#endif
