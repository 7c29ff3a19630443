#include "fmcw/cw/config/RadarCWValueTables.h"

#include <QDebug>

namespace RadarCWValueTables {

const QVector<quint32>& values(NumericTable table)
{
    static const QVector<quint32> gainAmplifier { 0, 5, 10, 15, 20, 25, 30 };
    static const QVector<quint32> gainHighPass { 18, 30 };
    static const QVector<quint32> hpCutoff { 20, 45, 70, 80, 160 };
    static const QVector<quint32> aafCutoff { 600, 1000 };
    static const QVector<quint32> samplingTime { 50, 100, 200, 400 };
    switch (table) {
    case NumericTable::GainAmplifier:
        return gainAmplifier;
    case NumericTable::GainHighPass:
        return gainHighPass;
    case NumericTable::HpCutoff:
        return hpCutoff;
    case NumericTable::AafCutoff:
        return aafCutoff;
    case NumericTable::SamplingTime:
        break;
    }
    return samplingTime;
}

const QStringList& names(TextTable table)
{
    static const QStringList modes { QStringLiteral("Off"), QStringLiteral("Baseband Test"),
                                     QStringLiteral("Toggle TX Enable"), QStringLiteral("Toggle DAC Value"),
                                     QStringLiteral("RX Self Test") };
    static const QStringList tracking { QStringLiteral("No tracking"), QStringLiteral("1 conversion"),
                                        QStringLiteral("3 conversions"), QStringLiteral("7 conversions") };
    static const QStringList oversampling { QStringLiteral("Off"), QStringLiteral("2x"), QStringLiteral("4x"),
                                            QStringLiteral("8x") };
    switch (table) {
    case TextTable::TestSignalMode:
        return modes;
    case TextTable::AdcTracking:
        return tracking;
    case TextTable::Oversampling:
        break;
    }
    return oversampling;
}

QString mismatchWarning(NumericTable table)
{
    const char* what = "sampling time";
    switch (table) {
    case NumericTable::GainAmplifier:
        what = "gain amplifier";
        break;
    case NumericTable::GainHighPass:
        what = "gain high pass";
        break;
    case NumericTable::HpCutoff:
        what = "high pass cutoff";
        break;
    case NumericTable::AafCutoff:
        what = "aaf cutoff";
        break;
    case NumericTable::SamplingTime:
        break;
    }
    return QStringLiteral("Current %1 value from configuration does not fit into any value defined by SDK")
        .arg(QLatin1String(what));
}

QString mismatchWarning(TextTable table)
{
    const char* what = "oversampling";
    switch (table) {
    case TextTable::TestSignalMode:
        what = "mode";
        break;
    case TextTable::AdcTracking:
        what = "adc tracking";
        break;
    case TextTable::Oversampling:
        break;
    }
    return QStringLiteral("Current %1 value from configuration does not fit into any value defined by SDK")
        .arg(QLatin1String(what));
}

quint32 toIndex(NumericTable table, quint32 value)
{
    const int index = values(table).indexOf(value);
    if (index >= 0)
        return quint32(index);
    qWarning().noquote() << mismatchWarning(table);
    return 0;
}

quint32 toIndex(TextTable table, const QString& name)
{
    const int index = names(table).indexOf(name);
    if (index >= 0)
        return quint32(index);
    qWarning().noquote() << mismatchWarning(table);
    return 0;
}

quint32 fromIndex(NumericTable table, quint32 index)
{
    const QVector<quint32>& list = values(table);
    if (index < quint32(list.size()))
        return list.at(int(index));
    qWarning() << "The SDK reported index" << index << "outside its table of" << list.size() << "values; using"
               << list.first();
    return list.first();
}

QString fromIndex(TextTable table, quint32 index)
{
    const QStringList& list = names(table);
    if (index < quint32(list.size()))
        return list.at(int(index));
    qWarning() << "The SDK reported index" << index << "outside its table of" << list.size() << "choices; using"
               << list.first();
    return list.first();
}

}
