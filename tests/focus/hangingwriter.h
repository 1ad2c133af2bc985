#ifndef HANGINGWRITER_H
#define HANGINGWRITER_H

#include <QtCore/QByteArray>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

/// Another process that saves, and hangs in it: whoever saves waits a second for its lock.
class HangingWriter
{
public:
    HangingWriter()
        : m_file(::open(path().constData(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0600))
        , m_isHeld(::flock(m_file, LOCK_EX | LOCK_NB) == 0)
    {
    }
    ~HangingWriter()
    {
        ::unlink(path().constData());
        ::close(m_file);
    }

    bool isHeld() const { return m_isHeld; }

private:
    Q_DISABLE_COPY(HangingWriter)

    static QByteArray path() { return "/media/flash/nvm/audioData.db.lock"; }

    int m_file;
    bool m_isHeld;
};

#endif
