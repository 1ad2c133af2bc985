#ifndef QZAUDIO_QXPRIVATE_H
#define QZAUDIO_QXPRIVATE_H

/// Base of a private class behind a pointer: holds the way back to its public object.
template<typename Public>
class QxPrivate
{
public:
    QxPrivate() = default;
    virtual ~QxPrivate() = default;
    QxPrivate(const QxPrivate &) = delete;
    QxPrivate &operator=(const QxPrivate &) = delete;

    Public *q = nullptr; ///< set by the public object's constructor; not owned
};

#endif
