#include "SettingsAutosave.h"

#include <QMetaProperty>

namespace {
// Edits come in bursts (typing, a spin box held down): one write after
// they settle.
constexpr int kSaveDelayMs = 800;
// The settings trees are shallow; the bound keeps a cycle from looping.
constexpr int kMaxDepth = 4;
}

SettingsAutosave::SettingsAutosave(std::function<bool()> save, QObject* parent)
    : QObject(parent)
    , m_save(std::move(save))
{
    m_delay.setSingleShot(true);
    m_delay.setInterval(kSaveDelayMs);
    connect(&m_delay, &QTimer::timeout, this, [this] { saveNow(); });
}

void SettingsAutosave::watch(QObject* settings)
{
    watchTree(settings, 0);
}

void SettingsAutosave::watchTree(QObject* object, int depth)
{
    if (!object || depth > kMaxDepth)
        return;
    const QMetaObject* meta = object->metaObject();
    const int slot = metaObject()->indexOfSlot("scheduleSave()");
    for (int i = QObject::staticMetaObject.propertyCount(); i < meta->propertyCount(); ++i) {
        const QMetaProperty property = meta->property(i);
        if (property.hasNotifySignal())
            connect(object, property.notifySignal(), this, metaObject()->method(slot), Qt::UniqueConnection);
        if (property.isConstant() && (QMetaType::typeFlags(property.userType()) & QMetaType::PointerToQObject))
            watchTree(property.read(object).value<QObject*>(), depth + 1);
    }
}

void SettingsAutosave::scheduleSave()
{
    m_pending = true;
    m_delay.start();
}

bool SettingsAutosave::saveNow(bool force)
{
    m_delay.stop();
    if (!m_pending && !force)
        return true;
    m_pending = false;
    const bool saved = m_save();
    if (!saved && !m_failed)
        emit saveFailed();
    m_failed = !saved;
    return saved;
}
