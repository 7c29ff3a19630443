#include "ViewConnection.h"

#include <QMetaMethod>
#include <QObject>

bool connectByName(QObject* sender, const char* signal, QObject* receiver, const char* slot)
{
    const int signalIndex = sender->metaObject()->indexOfSignal(QMetaObject::normalizedSignature(signal));
    const int slotIndex = receiver->metaObject()->indexOfSlot(QMetaObject::normalizedSignature(slot));
    if (signalIndex < 0 || slotIndex < 0)
        return false;
    return bool(QObject::connect(sender, sender->metaObject()->method(signalIndex), receiver,
                                 receiver->metaObject()->method(slotIndex)));
}
