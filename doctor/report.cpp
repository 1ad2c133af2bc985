#include "report.h"

#include "paragraph.h"

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>

#include <algorithm>

namespace Report
{

namespace
{

constexpr int areaWidth = 10;
constexpr int gradeWidth = 7;
constexpr int subjectWidth = 11;

/// What comes from the machine, such as the name of a program, may be anything.
QString printable(QString text)
{
    std::replace_if(
        text.begin(), text.end(), [](QChar each) { return !each.isPrint(); }, QChar(QLatin1Char('?')));
    return text;
}

int countOf(const Findings &findings, Finding::Grade grade)
{
    return static_cast<int>(std::count_if(findings.cbegin(), findings.cend(), [grade](const Finding &finding) { return finding.grade == grade; }));
}

} // namespace

QString text(const Findings &findings, int columns)
{
    QString all;
    for (const Finding &finding : findings) {
        const QString area = QString(nameOf(finding.area)).leftJustified(areaWidth);
        const QString grade = QString(nameOf(finding.grade)).leftJustified(gradeWidth);
        all += Paragraph::withHead(area + grade + finding.subject, printable(finding.text), areaWidth + gradeWidth + subjectWidth, columns);
    }
    return all
        + QStringLiteral("%1 wrong, %2 to note, %3 good\n")
              .arg(countOf(findings, Finding::Grade::Wrong))
              .arg(countOf(findings, Finding::Grade::Note))
              .arg(countOf(findings, Finding::Grade::Good));
}

QByteArray json(const Findings &findings)
{
    QJsonArray list;
    for (const Finding &finding : findings)
        list.append(toJson(finding));
    return QJsonDocument(QJsonObject{{QStringLiteral("version"), QStringLiteral(QZAUDIO_VERSION)},
                                     {QStringLiteral("exitStatus"), exitStatusOf(findings)},
                                     {QStringLiteral("findings"), list}})
        .toJson();
}

} // namespace Report
