#include "growth.h"

#include <platform.h>
#include <settingsfile.h>

#include <QtCore/QDir>
#include <QtCore/QFile>

#include <algorithm>
#include <cmath>
#include <malloc.h>
#include <unistd.h>

namespace
{

constexpr double limit = 0.01;
constexpr const char *names[Figures::KindCount] = {"resident memory, kB",
                                                   "heap in use, kB",
                                                   "open descriptors",
                                                   "threads",
                                                   "files in the flash folder",
                                                   "objects of the platform alive",
                                                   "problems in the platform's books",
                                                   "the same operations, µs"};

int entriesOf(const char *folder)
{
    return QDir(QLatin1String(folder)).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot).size();
}

double residentKilobytes()
{
    QFile file(QStringLiteral("/proc/self/statm"));
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    return file.readAll().split(' ').value(1).toDouble() * static_cast<double>(sysconf(_SC_PAGESIZE)) / 1024;
}

} // namespace

Figures Figures::ofThisProcess()
{
    const simulator::Books &books = *simulator::Platform::instance()->books();
    malloc_trim(0);
    Figures figures;
    figures.values[Memory] = residentKilobytes();
    figures.values[Heap] = static_cast<double>(mallinfo2().uordblks) / 1024;
    figures.values[Descriptors] = entriesOf("/proc/self/fd");
    figures.values[Threads] = entriesOf("/proc/self/task");
    figures.values[Files] = entriesOf(SettingsFile::nativeFolder);
    figures.values[LivingObjects] = books.living().size();
    figures.values[Problems] = books.problems().size();
    return figures;
}

Growth::Growth(double timeLimit)
    : m_timeLimit(timeLimit)
{
    m_probes.reserve(mostProbes);
}

void Growth::add(double progress, double probeNanoseconds)
{
    if (m_inLast == m_perProbe || m_probes.isEmpty()) {
        if (m_probes.size() == mostProbes)
            thinOut();
        m_probes.append(probeNanoseconds);
        m_inLast = 0;
    }
    m_probes.last() = std::min(m_probes.last(), probeNanoseconds);
    ++m_inLast;
    if (!m_first && progress >= share && m_probes.size() >= fewestProbes) {
        m_first = Figures::ofThisProcess();
        m_firstProbes = m_probes.size();
    }
}

/// Two probes become one, the quicker: this class must not be what grows.
void Growth::thinOut()
{
    for (int i = 0; i < mostProbes / 2; ++i)
        m_probes[i] = std::min(m_probes.at(2 * i), m_probes.at(2 * i + 1));
    m_probes.resize(mostProbes / 2);
    m_perProbe *= 2;
    m_firstProbes = (m_firstProbes + 1) / 2;
}

double Growth::quickest(const QVector<double> &probes, int from, int count)
{
    return count > 0 ? *std::min_element(probes.cbegin() + from, probes.cbegin() + from + count) : 0;
}

double Growth::noise() const
{
    const auto between = [this](int from) {
        const int half = m_firstProbes / 2;
        const double one = quickest(m_probes, from, half);
        const double other = quickest(m_probes, from + half, half);
        return one > 0 && other > 0 ? std::abs(one - other) / std::min(one, other) : 0;
    };
    return m_firstProbes < 2 ? 0 : std::max(between(0), between(m_probes.size() - m_firstProbes));
}

QVector<Growth::Row> Growth::rows() const
{
    QVector<Row> all;
    const Figures first = m_first.value_or(Figures());
    for (int kind = 0; kind < Figures::KindCount; ++kind) {
        constexpr double microsecond = 1000;
        const auto place = static_cast<std::size_t>(kind);
        const bool isTime = kind == Figures::Time;
        const double before = isTime ? quickest(m_probes, 0, m_firstProbes) / microsecond : first.values[place];
        const double after = isTime ? quickest(m_probes, m_probes.size() - m_firstProbes, m_firstProbes) / microsecond : m_last.values[place];
        const double most = isTime ? m_timeLimit + noise() : limit;
        const bool isMeasured = m_first.has_value() && (kind == Figures::Files || kind == Figures::Problems || before > 0);
        Row row;
        row.name = QString::fromUtf8(names[kind]);
        row.first = before;
        row.last = after;
        // A few tables of Qt grow in leaps; what leaks with each operation is beyond that after some thousand.
        constexpr double leaps = 16; // kB
        row.isOut = !isMeasured || after > before * (1 + most) + (kind == Figures::Heap ? leaps : 0);
        all.append(row);
    }
    return all;
}

QString Growth::toText() const
{
    constexpr int nameWidth = 34;
    constexpr int width = 14;
    const auto line = [](const QString &name, const QString &first, const QString &last, const QString &difference) -> QString {
        return name.leftJustified(nameWidth) + first.rightJustified(width) + last.rightJustified(width) + difference.rightJustified(width);
    };
    QString text = line(QString(), QStringLiteral("first 1 %"), QStringLiteral("end"), QStringLiteral("difference")) + QLatin1Char('\n');
    const auto table = rows();
    for (const Row &row : table) {
        const double difference = row.first > 0 ? (row.last - row.first) / row.first * 100 : row.last > 0 ? 100 : 0;
        text
            += line(row.name, QString::number(row.first, 'f', 0), QString::number(row.last, 'f', 0), QString::number(difference, 'f', 2) + QLatin1String(" %"));
        text += row.isOut ? QLatin1String("  OUT\n") : QLatin1String("\n");
    }
    return text + QStringLiteral("Time of the same work differs by %1 % by itself; beyond that, 1 % is what it may differ.\n").arg(noise() * 100, 0, 'f', 2);
}
