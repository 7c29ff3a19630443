#include "MessageLog.h"

#include <QDebug>
#include <QMetaMethod>
#include <QThread>
#include <QTimer>

namespace {

// The event codes the coordinator carries, as the user reads them.
QString eventName(int code)
{
    switch (code) {
    case 0:
        return QStringLiteral("error");
    case 1:
        return QStringLiteral("notice");
    case 2:
        return QStringLiteral("frame fetch failed");
    case 3:
        return QStringLiteral("device communication failure");
    case 4:
        return QStringLiteral("no data");
    case 5:
        return QStringLiteral("temperature not supported");
    default:
        return QStringLiteral("event %1").arg(code);
    }
}

int eventType(int code)
{
    switch (code) {
    case 1:
    case 2:
    case 5:
        return Constants::Warning;
    default:
        return Constants::Error;
    }
}

} // namespace

MessageLog::MessageLog(QObject* parent)
    : QAbstractListModel(parent)
{
}

int MessageLog::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : int(m_entries.size());
}

QVariant MessageLog::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || index.row() >= m_entries.size())
        return {};
    const Entry& entry = m_entries.at(index.row());
    switch (role) {
    case TypeRole:
        return entry.type;
    case TypeNameRole:
        return typeName(entry.type);
    case Qt::DisplayRole:
    case TextRole:
        return entry.text;
    case DetailsRole:
        return entry.details;
    case TimeRole:
        return entry.time.toString(QStringLiteral("HH:mm:ss"));
    case SourceRole:
        return entry.eventCode >= 0 ? QStringLiteral("%1, %2").arg(entry.source, eventName(entry.eventCode))
                                    : entry.source;
    default:
        return {};
    }
}

QHash<int, QByteArray> MessageLog::roleNames() const
{
    return { { TypeRole, "type" },       { TypeNameRole, "typeName" }, { TextRole, "text" },
             { DetailsRole, "details" }, { TimeRole, "time" },         { SourceRole, "source" } };
}

QString MessageLog::typeName(int type)
{
    switch (type) {
    case Constants::Error:
        return QStringLiteral("Error");
    case Constants::Warning:
        return QStringLiteral("Warning");
    default:
        return QStringLiteral("Info");
    }
}

int MessageLog::errorCount() const
{
    int errors = 0;
    for (const Entry& entry : m_entries)
        errors += entry.type == Constants::Error ? 1 : 0;
    return errors;
}

bool MessageLog::watchMessages(QObject* view)
{
    const QMetaObject* meta = view ? view->metaObject() : nullptr;
    const int signal = meta ? meta->indexOfSignal(QMetaObject::normalizedSignature(
                                  "enqueueUserMessage(Constants::UserMessageType,QString,QString)"))
                            : -1;
    if (signal < 0)
        return false;
    return bool(connect(view, meta->method(signal), this,
                        metaObject()->method(metaObject()->indexOfSlot(QMetaObject::normalizedSignature(
                            "onUserMessage(Constants::UserMessageType,QString,QString)")))));
}

bool MessageLog::watchEvents(QObject* coordinator)
{
    // The host does not compile against the module, so it cannot name the
    // event code's type. The module documents it as a 4-byte enumeration:
    // connect by index, which skips the type check, and read the code as
    // the int it is. Directly, on the emitting thread (the coordinator's
    // own, the GUI thread), where the argument is still alive.
    const QMetaObject* meta = coordinator ? coordinator->metaObject() : nullptr;
    if (!meta)
        return false;
    int signal = -1;
    for (int i = 0; i < meta->methodCount() && signal < 0; ++i) {
        const QMetaMethod method = meta->method(i);
        if (method.methodType() == QMetaMethod::Signal && method.name() == "triggerEvent"
            && method.parameterCount() == 3 && QMetaType::sizeOf(method.parameterType(0)) == int(sizeof(int))
            && method.parameterType(1) == QMetaType::QString && method.parameterType(2) == QMetaType::QString)
            signal = i;
    }
    if (signal < 0) {
        qWarning() << "The module's coordinator has no triggerEvent(code, message, details) of a 4-byte code";
        return false;
    }
    const int slot = metaObject()->indexOfSlot("onEvent(int,QString,QString)");
    return bool(QMetaObject::connect(coordinator, signal, this, slot, Qt::DirectConnection));
}

void MessageLog::onUserMessage(Constants::UserMessageType type, QString message, QString details)
{
    // The active mode turns a coordinator event into a user message of the
    // same text at once: that is one thing to know, shown once, with the
    // mode's verdict on its type.
    if (m_lastEventRow >= 0 && m_lastEventRow < m_entries.size()) {
        Entry& event = m_entries[m_lastEventRow];
        if (event.text == message && event.details == details) {
            event.type = type;
            const QModelIndex changed = index(m_lastEventRow);
            m_lastEventRow = -1;
            emit dataChanged(changed, changed);
            emit countChanged();
            return;
        }
    }
    append({ int(type), message, details, QDateTime::currentDateTime(), QStringLiteral("Radar"), -1 });
}

void MessageLog::onEvent(int code, QString message, QString details)
{
    if (QThread::currentThread() != thread()) {
        QMetaObject::invokeMethod(this, [this, code, message, details] { onEvent(code, message, details); },
                                  Qt::QueuedConnection);
        return;
    }
    append({ eventType(code), message, details, QDateTime::currentDateTime(), QStringLiteral("Radar"), code });
    m_lastEventRow = int(m_entries.size()) - 1;
    // Only a message that follows within the same dispatch is the event's.
    QTimer::singleShot(0, this, [this] { m_lastEventRow = -1; });
}

void MessageLog::add(int type, const QString& text, const QString& details, const QString& source)
{
    append({ type, text, details, QDateTime::currentDateTime(), source, -1 });
}

void MessageLog::append(Entry entry)
{
    // Kept in the log as well, for a report after the window is gone.
    const QString line = entry.details.isEmpty() ? entry.text : entry.text + QStringLiteral(" (") + entry.details + ')';
    if (entry.type == Constants::Error)
        qWarning().noquote() << "Message:" << line;
    else
        qInfo().noquote() << "Message:" << line;
    beginInsertRows(QModelIndex(), int(m_entries.size()), int(m_entries.size()));
    m_entries.append(std::move(entry));
    endInsertRows();
    emit countChanged();
    const Entry& last = m_entries.constLast();
    emit added(last.type, last.text, last.details);
}

void MessageLog::clear()
{
    if (m_entries.isEmpty())
        return;
    beginResetModel();
    m_entries.clear();
    m_lastEventRow = -1;
    endResetModel();
    emit countChanged();
}

QString MessageLog::textAt(int row) const
{
    if (row < 0 || row >= m_entries.size())
        return {};
    const Entry& entry = m_entries.at(row);
    return entry.details.isEmpty() ? entry.text : entry.text + '\n' + entry.details;
}
