#include "progressbar.h"

#include "console.h"

#include <algorithm>
#include <unistd.h>

namespace
{

constexpr int allPercent = 100;
constexpr int percentPerMark = 4;

} // namespace

ProgressBar::ProgressBar(qint64 whole)
    : m_whole(std::max(qint64(1), whole))
    , m_isSeen(isatty(STDERR_FILENO) != 0)
{
}

ProgressBar::~ProgressBar()
{
    if (m_shown >= 0)
        Console::error(QStringLiteral("\r\x1b[K"));
}

void ProgressBar::show(qint64 done)
{
    const int percent = int(std::clamp(done * allPercent / m_whole, qint64(0), qint64(allPercent)));
    if (!m_isSeen || percent == m_shown)
        return;
    m_shown = percent;
    const QString marks = QString(percent / percentPerMark, QLatin1Char('#')).leftJustified(allPercent / percentPerMark, QLatin1Char('.'));
    Console::error(QStringLiteral("\r%1 %2 %").arg(marks).arg(percent));
}
