#include "common/TimeDomainUserSettings.h"
#include "core/JSONConfigurationFile.h"
#include "core/JSONConfigurationObject.h"

#include <QSignalSpy>
#include <QtTest>

class TestTimeDomainUserSettings : public QObject
{
    Q_OBJECT
private slots:
    void jsonRoundTripAndReset()
    {
        TimeDomainUserSettings settings;
        JSONConfigurationObject root("root");
        root.addChild(settings.configurationNode());
        QCOMPARE(loadFromText(root, R"({"time_domain": {"axis_y_min": -0.5, "axis_y_max": 0.75}})"), QString());
        QCOMPARE(settings.axisYMin(), -0.5f);
        QCOMPARE(settings.axisYMax(), 0.75f);
        QCOMPARE(loadFromText(root, R"({"time_domain": {"axis_y_min": -0.5}})"),
                 QString("Mandatory field time_domain.axis_y_max is missing"));

        QJsonObject top;
        root.writeChildren(top);
        QCOMPARE(top["time_domain"].toObject()["axis_y_max"].toDouble(), 0.75);

        QSignalSpy minSpy(&settings, &TimeDomainUserSettings::axisYMinChanged);
        QSignalSpy maxSpy(&settings, &TimeDomainUserSettings::axisYMaxChanged);
        settings.resetToDefault();
        QCOMPARE(settings.axisYMin(), 0.0f);
        QCOMPARE(settings.axisYMax(), 1.0f);
        QCOMPARE(minSpy.count(), 1);
        QCOMPARE(maxSpy.count(), 1);
        settings.resetToDefault();
        QCOMPARE(minSpy.count(), 1);
    }
};

QTEST_GUILESS_MAIN(TestTimeDomainUserSettings)
#include "tst_TimeDomainUserSettings.moc"
