#ifndef LOGJSONVIEW_H
#define LOGJSONVIEW_H

#include "jsonview.h"

/// The timeline of a log for programs: as of a scenario, but each object says where in the log it comes from.
class LogJsonView : public JsonView
{
public:
    struct Origin
    {
        quint64 line = 0; ///< 0 for none
        qint64 process = -1; ///< -1 where it is not known
        QString program;
        QString at; ///< the log's own time
    };

    explicit LogJsonView(const QString &file);

    /// Where what is shown from now on comes from.
    void setOrigin(const Origin &origin);

protected:
    QJsonObject origin() const override;

private:
    QString m_file;
    Origin m_origin;
};

#endif
