#ifndef TIMELINEMODEL_H
#define TIMELINEMODEL_H

#include "benchquery.h"
#include "drivefigure.h"
#include "roommodel.h"
#include "spanlist.h"
#include "timescale.h"
#include "whyquestion.h"

#include <QtCore/QDateTime>
#include <QtCore/QTemporaryDir>
#include <QtCore/QTimer>
#include <QtCore/QUrl>
#include <QtCore/QVariantList>

#include <optional>

/**
 * The drive as lanes and levels: the car's own, or that of a unit's log beside its replay; and why a source was as loud as it was at a moment.
 *
 * Logs are read, played and asked by qzaudio-bench. Places are pixels from the left of the picture, times seconds.
 */
class TimelineModel : public RoomModel
{
    Q_OBJECT
    /// Name of the unit's log; empty while the car's drive is shown.
    Q_PROPERTY(QString log READ log NOTIFY logChanged)
    /// What is going on, such as reading; empty for nothing.
    Q_PROPERTY(QString busy READ busy NOTIFY stateChanged)
    /// Why there is nothing to be seen; empty where there is something, or nothing yet.
    Q_PROPERTY(QString problem READ problem NOTIFY stateChanged)
    Q_PROPERTY(bool hasDrive READ hasDrive NOTIFY pictureChanged)
    Q_PROPERTY(bool hasReplay READ hasReplay NOTIFY pictureChanged)
    /// What the replay of a unit's log came to.
    Q_PROPERTY(QString replayText READ replayText NOTIFY stateChanged)
    Q_PROPERTY(QStringList remarks READ remarks NOTIFY pictureChanged)

    Q_PROPERTY(QStringList lanes READ lanes NOTIFY pictureChanged)
    Q_PROPERTY(SpanList *spans READ spans CONSTANT)
    /// Where the replay differs, as spans without a lane.
    Q_PROPERTY(SpanList *marks READ marks CONSTANT)
    /// Lines of the levels: {row, source, paths}, each path a list of points.
    Q_PROPERTY(QVariantList curves READ curves NOTIFY viewChanged)
    /// {place, label}
    Q_PROPERTY(QVariantList ticks READ ticks NOTIFY viewChanged)
    Q_PROPERTY(QVariantList levelTicks READ levelTicks NOTIFY viewChanged)
    Q_PROPERTY(double width READ width WRITE setWidth NOTIFY viewChanged)
    /// Pixels that the levels have.
    Q_PROPERTY(double levelHeight READ levelHeight WRITE setLevelHeight NOTIFY viewChanged)
    /// Whether all of the drive is shown.
    Q_PROPERTY(bool isWhole READ isWhole NOTIFY viewChanged)
    /// Which part of it, as for a ScrollBar.
    Q_PROPERTY(double position READ position NOTIFY viewChanged)
    Q_PROPERTY(double size READ size NOTIFY viewChanged)

    /// Place of the moment that is looked at; -1 for none, or one out of sight.
    Q_PROPERTY(double cursor READ cursor NOTIFY cursorChanged)
    Q_PROPERTY(QString cursorText READ cursorText NOTIFY cursorChanged)
    /// What holds then: {lane, drive, replay}
    Q_PROPERTY(QVariantList holding READ holding NOTIFY cursorChanged)
    /// Names of the sources, of the unit or of its replay, whichever is asked.
    Q_PROPERTY(QStringList sources READ sources NOTIFY sourcesChanged)
    /// How loud each is then; empty texts while no moment is looked at.
    Q_PROPERTY(QStringList sourceLevels READ sourceLevels NOTIFY cursorChanged)
    /// Of which of them why is told; -1 for none.
    Q_PROPERTY(int askedSource READ askedSource NOTIFY cursorChanged)
    /// Of which source it is asked why; -1 for the loudest.
    Q_PROPERTY(int source READ source WRITE setSource NOTIFY cursorChanged)
    /// Whether it is asked of the replay.
    Q_PROPERTY(bool asksReplay READ asksReplay WRITE setAsksReplay NOTIFY cursorChanged)
    Q_PROPERTY(WhyQuestion *why READ why CONSTANT)
    /// {time, text}, the first mostDifferences
    Q_PROPERTY(QVariantList differences READ differences NOTIFY pictureChanged)
    Q_PROPERTY(int differenceCount READ differenceCount NOTIFY pictureChanged)

public:
    explicit TimelineModel(QObject *parent = nullptr);
    ~TimelineModel() override;

    static constexpr int mostDifferences = 200;

    QString log() const { return m_log; }
    QString busy() const;
    QString problem() const { return m_problem; }
    bool hasDrive() const { return m_drive.has_value(); }
    bool hasReplay() const { return m_replay.has_value(); }
    QString replayText() const { return m_replayText; }
    QStringList remarks() const;
    QStringList lanes() const;
    SpanList *spans() { return &m_spans; }
    SpanList *marks() { return &m_marks; }
    QVariantList curves() const { return m_curves; }
    QVariantList ticks() const;
    QVariantList levelTicks() const;
    double width() const { return m_scale.width(); }
    void setWidth(double pixels);
    double levelHeight() const { return m_levelHeight; }
    void setLevelHeight(double pixels);
    bool isWhole() const { return m_scale.isWhole(); }
    double position() const { return m_scale.from() / m_scale.duration(); }
    double size() const { return (m_scale.to() - m_scale.from()) / m_scale.duration(); }
    double cursor() const;
    QString cursorText() const;
    QVariantList holding() const;
    QStringList sources() const;
    QStringList sourceLevels() const;
    int askedSource() const;
    /// The platform's name of a source.
    Q_INVOKABLE QString platformName(int source) const;
    int source() const { return m_source; }
    void setSource(int source);
    bool asksReplay() const { return m_asksReplay; }
    void setAsksReplay(bool asks);
    WhyQuestion *why() { return &m_why; }
    QVariantList differences() const;
    int differenceCount() const { return m_differences.size(); }

    /// Shows a unit's log, and its replay when that has been played.
    Q_INVOKABLE void open(const QUrl &file);
    /// Shows the car's drive again.
    Q_INVOKABLE void close();

    Q_INVOKABLE void fit();
    Q_INVOKABLE void zoom(double factor, double place);
    Q_INVOKABLE void scroll(double pixels);
    /// Scrolls to a position as a ScrollBar has it.
    Q_INVOKABLE void scrollTo(double position);

    Q_INVOKABLE void lookAt(double place);
    Q_INVOKABLE void lookAtTime(double time);
    /// Goes so many changes on, or back.
    Q_INVOKABLE void lookAtChange(int steps);
    Q_INVOKABLE void lookAtDifference(int index);

Q_SIGNALS:
    void logChanged();
    void stateChanged();
    void pictureChanged();
    void viewChanged();
    void sourcesChanged();
    void cursorChanged();

protected:
    void update(const QVariantMap &snapshot) override;

private:
    /// A drive that was read, on another thread.
    struct Read
    {
        std::optional<DriveFigure> figure;
        QVector<double> changes;
        QVector<DriveFigure::Difference> differences;
        double origin = 0; ///< s, what the log calls its first line
    };

    QString shownLog() const;
    void renewIfStale();
    void readDrive();
    void takeDrive(int status, const QByteArray &output, const QString &said);
    void showDrive(const Read &read);
    void goOn();
    void playReplay();
    void takeReplay(int status, const QByteArray &output, const QString &said);
    void readReplay(const QByteArray &output);
    void forget();
    void setProblem(const QString &problem);
    void lay();
    void layCurves();
    void look(double time);
    void askWhy();
    const DriveFigure *asked() const;

    QString m_log;
    QString m_problem;
    QString m_replayText;
    QTemporaryDir m_folder; // for a replay's log
    BenchQuery m_driveQuery;
    BenchQuery m_replayQuery;
    BenchQuery m_replayFigureQuery;
    WhyQuestion m_why;
    QTimer m_renewal; // runs while it is too early to read the car's log again
    int m_reading = 0; // of which drive: what was read of another one comes too late
    QDateTime m_readTime; // of the log when it was read
    qint64 m_readSize = -1;

    std::optional<DriveFigure> m_drive;
    std::optional<DriveFigure> m_replay;
    QVector<double> m_changes;
    QVector<DriveFigure::Difference> m_differences;
    double m_origin = 0;
    double m_logEnd = 0; // s, as far as the log goes
    TimeScale m_scale;
    double m_levelHeight = 100;
    QVariantList m_curves;
    SpanList m_spans;
    SpanList m_marks;
    double m_cursor = -1; // s
    int m_source = -1;
    bool m_asksReplay = false;
};

#endif
