#include "FlasherList.h"

#include "FirmwareImages.h"
#include "FlashJob.h"
#include "HostServices.h"

#include "host/IFlasher.h"

#include <QDebug>
#include <QRegularExpression>

#include <algorithm>

namespace {

// While writing and verifying the flasher repeats its percentage as a
// message ("WRITE: 42"); the bar shows it, so the list keeps only the last.
bool isProgressEcho(const QString& message)
{
    static const QRegularExpression echo(QStringLiteral("^[A-Z]+: \\d+$"));
    return echo.match(message).hasMatch();
}

} // namespace

FlasherList::FlasherList(HostFlasherRegister& flashers, QObject* parent)
    : QAbstractListModel(parent)
    , m_register(flashers)
{
    connect(&m_register, &HostFlasherRegister::flashersChanged, this, &FlasherList::reload);
    reload();
}

int FlasherList::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : int(m_rows.size());
}

QVariant FlasherList::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || index.row() >= m_rows.size())
        return {};
    const Row& row = m_rows.at(index.row());
    const IFlasher& flasher = *row.flasher;
    switch (role) {
    case NameRole:
    case Qt::DisplayRole:
        return row.name;
    case StatusRole:
        return int(flasher.status());
    case StatusNameRole:
        return FlashJob::statusName(flasher.status());
    case OutcomeRole:
        return outcome(flasher.status());
    case ProgressRole:
        return flasher.progress();
    case PhaseRole:
        return row.phase;
    case MessageRole:
        // A failed job is best told by what went wrong, not by "EXIT: failure".
        return outcome(flasher.status()) == QLatin1String("failure") && !row.lastError.isEmpty() ? row.lastError
                                                                                                  : flasher.message();
    case MessagesRole:
        return row.messages;
    case ImageRole:
        return FirmwareImages::newest(flasher);
    case FolderRole:
        return FirmwareImages::localFolder(flasher.firmwareDir());
    default:
        return {};
    }
}

QHash<int, QByteArray> FlasherList::roleNames() const
{
    return { { NameRole, "name" },         { StatusRole, "status" },     { StatusNameRole, "statusName" },
             { OutcomeRole, "outcome" },   { ProgressRole, "progress" }, { PhaseRole, "phase" },
             { MessageRole, "message" },   { MessagesRole, "messages" }, { ImageRole, "image" },
             { FolderRole, "folder" } };
}

int FlasherList::indexOf(const QString& name) const
{
    for (int i = 0; i < m_rows.size(); ++i) {
        if (m_rows.at(i).name == name)
            return i;
    }
    return -1;
}

QString FlasherList::outcome(FlasherStatus::Status status)
{
    switch (status) {
    case FlasherStatus::NOT_STARTED:
        return QStringLiteral("idle");
    case FlasherStatus::FINISHED_SUCCESS:
        return QStringLiteral("success");
    case FlasherStatus::STARTED:
    case FlasherStatus::BOOTLOADER:
    case FlasherStatus::FLASHING:
        return QStringLiteral("running");
    default:
        return QStringLiteral("failure");
    }
}

QString FlasherList::phaseOf(const QString& message)
{
    const int colon = message.indexOf(QLatin1Char(':'));
    if (colon <= 0 || colon > 12)
        return {};
    const QString word = message.left(colon);
    return word.left(1).toUpper() + word.mid(1).toLower();
}

void FlasherList::reload()
{
    // A flasher that stays keeps its messages; the register hands out the
    // same object for as long as its board is there.
    QVector<Row> rows;
    for (const auto& flasher : m_register.flashers()) {
        const auto kept = std::find_if(m_rows.cbegin(), m_rows.cend(),
                                       [&flasher](const Row& row) { return row.flasher == flasher; });
        if (kept != m_rows.cend()) {
            rows.append(*kept);
            continue;
        }
        watch(flasher.get());
        rows.append(Row { flasher, QString::fromStdString(flasher->name()), {}, {}, {}, flasher->status() });
    }
    for (const Row& row : qAsConst(m_rows)) {
        const bool stays = std::any_of(rows.cbegin(), rows.cend(),
                                       [&row](const Row& other) { return other.flasher == row.flasher; });
        if (!stays)
            disconnect(row.flasher.get(), nullptr, this, nullptr);
    }
    beginResetModel();
    m_rows = rows;
    endResetModel();
    emit countChanged();
    updateBusy();
}

void FlasherList::updateBusy()
{
    const bool busy = std::any_of(m_rows.cbegin(), m_rows.cend(), [](const Row& row) {
        return outcome(row.flasher->status()) == QLatin1String("running");
    });
    if (busy == m_busy)
        return;
    m_busy = busy;
    emit busyChanged();
}

void FlasherList::watch(IFlasher* flasher)
{
    connect(flasher, &IFlasher::progressChanged, this,
            [this, flasher] { changed(rowOf(flasher), { ProgressRole }); });
    connect(flasher, &IFlasher::statusChanged, this, [this, flasher] { onStatus(flasher); });
    connect(flasher, &IFlasher::messageChanged, this, [this, flasher] { onMessage(flasher); });
}

int FlasherList::rowOf(const QObject* flasher) const
{
    for (int i = 0; i < m_rows.size(); ++i) {
        if (m_rows.at(i).flasher.get() == flasher)
            return i;
    }
    return -1;
}

void FlasherList::onStatus(IFlasher* flasher)
{
    const int index = rowOf(flasher);
    if (index < 0)
        return;
    Row& row = m_rows[index];
    const FlasherStatus::Status status = flasher->status();
    if (outcome(status) == QLatin1String("running") && outcome(row.lastStatus) != QLatin1String("running")) {
        // A new job: the messages of the last one go.
        row.messages.clear();
        row.lastError.clear();
        row.phase.clear();
    }
    row.lastStatus = status;
    changed(index, { StatusRole, StatusNameRole, OutcomeRole, MessageRole, MessagesRole });
    if (FlashJob::isFinal(status)) {
        row.phase.clear();
        changed(index, { PhaseRole });
        emit jobEnded(row.name, status, data(this->index(index), MessageRole).toString());
    }
    updateBusy();
}

void FlasherList::onMessage(IFlasher* flasher)
{
    const int index = rowOf(flasher);
    if (index < 0)
        return;
    Row& row = m_rows[index];
    const QString message = flasher->message();
    if (message.isEmpty())
        return;
    const QString phase = phaseOf(message);
    if (!phase.isEmpty() && phase != QLatin1String("Exit") && phase != QLatin1String("Error"))
        row.phase = phase;
    static const QString errorPrefix = QStringLiteral("ERROR: ");
    if (message.startsWith(errorPrefix))
        row.lastError = message.mid(errorPrefix.size());
    if (isProgressEcho(message) && !row.messages.isEmpty() && isProgressEcho(row.messages.last())
        && phaseOf(row.messages.last()) == phase)
        row.messages.last() = message;
    else
        row.messages.append(message);
    changed(index, { PhaseRole, MessageRole, MessagesRole });
}

void FlasherList::changed(int row, const QVector<int>& roles)
{
    if (row < 0)
        return;
    emit dataChanged(index(row), index(row), roles);
}
