#ifndef MCUSERVICE_H
#define MCUSERVICE_H

#include <QtCore/QObject>

namespace zelmcu
{

/// The unit's MCU service, as far as this system uses it.
class ZEL_McuService : public QObject
{
    Q_OBJECT

public:
    static ZEL_McuService *instance();

Q_SIGNALS:
    /// Reverse gear engaged (true) or left (false).
    void mcuBackCarSetMute(bool on);

protected:
    explicit ZEL_McuService(QObject *parent = nullptr);
    ~ZEL_McuService() override;
};

} // namespace zelmcu

#endif
