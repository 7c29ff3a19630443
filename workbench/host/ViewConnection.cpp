#include "ViewConnection.h"

#include <QMetaMethod>
#include <QObject>

namespace {

// A signal named like `wanted` whose leading parameter types are the slot's.
int compatibleSignal(const QMetaObject* meta, const QByteArray& wanted, const QMetaMethod& slot)
{
    const QByteArray name = wanted.left(wanted.indexOf('('));
    for (int i = 0; i < meta->methodCount(); ++i) {
        const QMetaMethod method = meta->method(i);
        if (method.methodType() != QMetaMethod::Signal || method.name() != name
            || method.parameterCount() < slot.parameterCount())
            continue;
        bool matches = true;
        for (int p = 0; p < slot.parameterCount() && matches; ++p)
            matches = method.parameterType(p) == slot.parameterType(p);
        if (matches)
            return i;
    }
    return -1;
}

} // namespace

bool connectByName(QObject* sender, const char* signal, QObject* receiver, const char* slot)
{
    const int slotIndex = receiver->metaObject()->indexOfSlot(QMetaObject::normalizedSignature(slot));
    if (slotIndex < 0)
        return false;
    const QMetaMethod slotMethod = receiver->metaObject()->method(slotIndex);
    const QByteArray wanted = QMetaObject::normalizedSignature(signal);
    int signalIndex = sender->metaObject()->indexOfSignal(wanted);
    if (signalIndex < 0)
        signalIndex = compatibleSignal(sender->metaObject(), wanted, slotMethod);
    if (signalIndex < 0)
        return false;
    return bool(QObject::connect(sender, sender->metaObject()->method(signalIndex), receiver, slotMethod));
}
