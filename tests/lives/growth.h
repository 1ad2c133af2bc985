#ifndef GROWTH_H
#define GROWTH_H

#include <QtCore/QString>
#include <QtCore/QVector>

#include <array>
#include <optional>

/// What a process has at one moment, and what it takes for the same work.
struct Figures
{
    enum Kind { Memory, Heap, Descriptors, Threads, Files, LivingObjects, Problems, Time, KindCount };

    std::array<double, KindCount> values = {};

    /// All but the time.
    static Figures ofThisProcess();
};

/**
 * Compares what a process has after the first hundredth of a run with what it has at the end.
 *
 * The time is that of a probe, the same operations each time, in processor time. Of many probes the quickest counts: what
 * disturbs a probe only makes it slower. How far that can be trusted on a busy machine is measured, too: by how much two halves of one
 * hundredth differ. A longer time than that and the limit is growth.
 */
class Growth
{
public:
    /// Both as shares of 1.
    explicit Growth(double timeLimit);

    /// A probe was done. @param progress 0 to 1, of the run
    void add(double progress, double probeNanoseconds);
    /// After the last one.
    void finish() { m_last = Figures::ofThisProcess(); }

    struct Row
    {
        QString name;
        double first = 0;
        double last = 0;
        bool isOut = false; ///< more than a hundredth above the first
    };
    QVector<Row> rows() const;
    /// By which two halves of a hundredth differ.
    double noise() const;
    QString toText() const;

private:
    static constexpr double share = 0.01;
    static constexpr int fewestProbes = 8;
    static constexpr int mostProbes = 4096;

    void thinOut();
    static double quickest(const QVector<double> &probes, int from, int count);

    const double m_timeLimit;
    QVector<double> m_probes; // each the quickest of so many
    int m_perProbe = 1;
    int m_inLast = 0;
    int m_firstProbes = 0; // that belong to the first hundredth
    std::optional<Figures> m_first;
    Figures m_last;
};

#endif
