// Prints the meta-object of every public class: kind, index and signature of each member. Clients compiled against the old
// headers connect by these indices, so a changed line breaks them just as a removed function does.

#include <qzaudio/audiocontrol.h>
#include <qzaudio/audiodatabase.h>
#include <qzaudio/audiofocuscontrol.h>
#include <qzaudio/audioservice.h>
#include <qzaudio/taviaudioserviceinterface.h>
#include <qzaudio/zelaudiomanager.h>

#include <QtCore/QMetaEnum>
#include <QtCore/QMetaMethod>
#include <QtCore/QMetaProperty>
#include <QtCore/QTextStream>

namespace
{

const char *kindOf(const QMetaMethod &method)
{
    switch (method.methodType()) {
    case QMetaMethod::Signal:
        return "signal";
    case QMetaMethod::Slot:
        return "slot";
    case QMetaMethod::Constructor:
        return "constructor";
    case QMetaMethod::Method:
        break;
    }
    return "method";
}

void print(QTextStream &out, const QMetaObject &object)
{
    out << object.className() << " : " << object.superClass()->className() << '\n';
    for (int i = object.methodOffset(); i < object.methodCount(); ++i) {
        const QMetaMethod method = object.method(i);
        out << "  " << i - object.methodOffset() << ' ' << kindOf(method) << ' ' << method.typeName() << ' ' << method.methodSignature() << '\n';
    }
    for (int i = object.propertyOffset(); i < object.propertyCount(); ++i)
        out << "  " << i - object.propertyOffset() << " property " << object.property(i).name() << '\n';
    for (int i = object.enumeratorOffset(); i < object.enumeratorCount(); ++i)
        out << "  " << i - object.enumeratorOffset() << " enumeration " << object.enumerator(i).name() << '\n';
}

} // namespace

int main()
{
    QTextStream out(stdout);
    for (const QMetaObject *object : {&audio::AudioControl::staticMetaObject,
                                      &audio::AudioDataBase::staticMetaObject,
                                      &AudioFocusControl::staticMetaObject,
                                      &AudioService::staticMetaObject,
                                      &TaviAudioServiceInterface::staticMetaObject,
                                      &ZelAudioManager::staticMetaObject})
        print(out, *object);
    return 0;
}
