#include "core/Logging.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QtDebug>

namespace {

const QString defaultClearLimit = QStringLiteral("1 week");

// A day is long enough to read back yesterday's session, a month covers a
// measurement campaign. A month counts as 30 days: the option is a rough
// age, not a calendar boundary.
QVector<Logging::ClearOption> makeClearOptions()
{
    constexpr qint64 day = 24 * 60 * 60;
    return {
        { QStringLiteral("1 day"), day },
        { defaultClearLimit, 7 * day },
        { QStringLiteral("1 month"), 30 * day },
    };
}

}

Logging::Logging(QObject* parent)
    : QObject(parent)
    , m_clearLimit(defaultClearLimit)
    , m_clearOptions(makeClearOptions())
{
}

void Logging::setAutoClearLogs(bool autoClearLogs)
{
    if (autoClearLogs)
        clearLogs(false);
    if (m_autoClearLogs == autoClearLogs)
        return;
    m_autoClearLogs = autoClearLogs;
    emit autoClearLogsChanged();
}

void Logging::setClearLimit(const QString& clearLimit)
{
    if (m_clearLimit == clearLimit)
        return;
    m_clearLimit = clearLimit;
    emit clearLimitChanged();
}

QVariantList Logging::clearOptionsModel() const
{
    QVariantList model;
    for (const ClearOption& option : m_clearOptions)
        model.append(QVariantMap { { QStringLiteral("text"), option.text },
                                   { QStringLiteral("seconds"), option.ageSeconds } });
    return model;
}

void Logging::clearLogs(bool clearAll)
{
    const QDir directory(logDirectory(), QStringLiteral("*.*"), QDir::NoSort, QDir::Files);
    const QFileInfoList files = directory.entryInfoList();
    const auto removeFile = [&directory](const QFileInfo& file) {
        QFile::remove(directory.path() + QLatin1Char('/') + file.fileName());
    };

    if (clearAll) {
        for (const QFileInfo& file : files)
            removeFile(file);
        return;
    }

    qint64 ageSeconds = 0;
    for (const ClearOption& option : m_clearOptions) {
        if (option.text == m_clearLimit) {
            ageSeconds = option.ageSeconds;
            break;
        }
    }
    if (ageSeconds == 0) {
        qCritical().noquote() << "Invalid time range for clearing the logs:" << m_clearLimit;
        return;
    }

    const QDateTime threshold = QDateTime::currentDateTime().addSecs(-ageSeconds);
    for (const QFileInfo& file : files) {
        const QDateTime born = birthTime(file);
        if (born.isValid() && born < threshold)
            removeFile(file);
    }
}

void Logging::loadDefaults()
{
    setClearLimit(defaultClearLimit);
    clearLogs(false);
    setAutoClearLogs(true);
}

QString Logging::logDirectory() const
{
    return QStringLiteral("%1/logs/").arg(QCoreApplication::applicationDirPath());
}

QDateTime Logging::birthTime(const QFileInfo& file) const
{
    return file.birthTime();
}
