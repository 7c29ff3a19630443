#include "fmcw/cw/config/RadarCWChips.h"

#include "fmcw/cw/config/RadarCWValueTables.h"

namespace {

// KMR7A and KMR7B share the older baseband and test-signal hardware.
bool isOlderChip(RadarConstants::RadarType type)
{
    return type == RadarConstants::KMR7A || type == RadarConstants::KMR7B;
}

}

namespace RadarCWChips {

const QString kFileVersion = QStringLiteral("1.0");

QString configurationTypeName(RadarConstants::RadarType type)
{
    switch (type) {
    case RadarConstants::KMR7A:
        return QStringLiteral("KMR7A_CW");
    case RadarConstants::KMR7B:
        return QStringLiteral("KMR7B_CW");
    case RadarConstants::KMR7C:
        return QStringLiteral("KMR7C_CW");
    case RadarConstants::Unknown:
        break;
    }
    return QString();
}

bool hasAntiAliasFilter(RadarConstants::RadarType type)
{
    return !isOlderChip(type);
}

QStringList testSignalModes(RadarConstants::RadarType type)
{
    const QStringList& all = RadarCWValueTables::names(RadarCWValueTables::TextTable::TestSignalMode);
    return isOlderChip(type) ? QStringList(all.mid(0, 2)) : all;
}

QVector<quint32> highPassCutoffs(RadarConstants::RadarType type)
{
    const QVector<quint32>& all = RadarCWValueTables::values(RadarCWValueTables::NumericTable::HpCutoff);
    // The older chips have no 160 kHz filter.
    return isOlderChip(type) ? all.mid(0, 4) : all;
}

}
