#include "workloads.h"

#include <QtCore/QLoggingCategory>

namespace
{

void dropLine(QtMsgType, const QMessageLogContext &, const QString &)
{
}

} // namespace

Workloads allWorkloads()
{
    Workloads all;
    for (const auto &area : {volumeWorkloads, equalizerWorkloads, routingWorkloads, policyWorkloads, focusWorkloads, loggingWorkloads})
        all.insert(all.end(), area().begin(), area().end());
    return all;
}

void setUp(const Workload &workload)
{
    static const QtMessageHandler previous = qInstallMessageHandler(dropLine);
    Q_UNUSED(previous)
    QLoggingCategory::setFilterRules(workload.isLogged ? QStringLiteral("default.debug=true") : QStringLiteral("default.debug=false"));
    if (workload.prepare)
        workload.prepare();
}
