#include "FirmwareImageBytes.h"

#include "flashing/RadarFirmwareSource.h"
#include "frame/RadarGeneralUserSettings.h"
#include "core/JSONConfigurationFile.h"
#include "core/JSONConfigurationObject.h"

#include <QDir>
#include <QJsonDocument>
#include <QTemporaryDir>
#include <QtTest>


class TestRadarFirmwareSource : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_app;

    QString write(const QString& name, const QByteArray& bytes)
    {
        QDir().mkpath(m_app.filePath("firmware/radar"));
        QFile file(m_app.filePath("firmware/radar/" + name));
        file.open(QIODevice::WriteOnly);
        file.write(bytes);
        return file.fileName();
    }

private slots:
    void cleanup() { QDir(m_app.filePath("firmware")).removeRecursively(); }

    void damagedImagesAreRefused_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("error");
        const QByteArray good = firmwareImageBytes(2, 6, 0);
        QByteArray badMagic = good;
        badMagic[0] = 'X';
        QByteArray badCrc = good;
        badCrc[25] = badCrc[25] ^ 1;
        QTest::newRow("intact") << good << QString();
        QTest::newRow("bad magic") << badMagic << "is not a baseboard firmware image";
        QTest::newRow("short") << good.left(12) << "is too short for its header (12 bytes)";
        QTest::newRow("length mismatch") << good.left(good.size() - 1) << "announces 14 bytes of payload but holds 13";
        QTest::newRow("checksum mismatch") << badCrc << "checksum does not match";
    }

    void damagedImagesAreRefused()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QString, error);
        QString message;
        const RadarFirmwareImage read = RadarFirmwareImage::read(write("RadarBaseboardKT4_v2.6.0.bin", bytes), message);
        QCOMPARE(read.isValid(), error.isEmpty());
        QVERIFY2(message.contains(error), qPrintable(message));
        if (read.isValid())
            QCOMPARE(read.version().toString(), QStringLiteral("2.6.0"));
    }

    void newerImageIsOfferedByVersion_data()
    {
        QTest::addColumn<QString>("board");
        QTest::addColumn<QString>("offered");
        QTest::newRow("older board") << "v2.5.1" << "RadarBaseboardKT4_v2.10.0.bin";
        QTest::newRow("older board, plain") << "2.9.9" << "RadarBaseboardKT4_v2.10.0.bin";
        QTest::newRow("same version") << "v2.10.0" << "";
        QTest::newRow("newer board") << "v3.0.0" << "";
        QTest::newRow("unreadable version") << "251" << "";
    }

    void newerImageIsOfferedByVersion()
    {
        QFETCH(QString, board);
        QFETCH(QString, offered);
        write("RadarBaseboardKT4_v2.9.1.bin", firmwareImageBytes(2, 9, 1));
        write("RadarBaseboardKT4_v2.10.0.bin", firmwareImageBytes(2, 10, 0));
        // Named as the newest, but damaged: never offered.
        write("RadarBaseboardKT4_v9.0.0.bin", firmwareImageBytes(9, 0, 0).left(30));
        RadarFirmwareSource source(m_app.path());
        QCOMPARE(QFileInfo(source.newerImageFor(board)).fileName(), offered);
        QCOMPARE(QFileInfo(source.firmwareImage()).fileName(), QStringLiteral("RadarBaseboardKT4_v2.10.0.bin"));
        QVERIFY(source.firmwareDirectoryUrl().toString().startsWith("file:///"));
    }

    void baseboardIdentityIsASetting_data()
    {
        QTest::addColumn<QByteArray>("flashing");
        QTest::addColumn<QString>("error");
        QTest::addColumn<QString>("vendor");
        QTest::addColumn<QStringList>("products");
        const QStringList defaults { "0251", "0252", "0253" };
        QTest::newRow("older file keeps the defaults") << QByteArray() << "" << "2F5A" << defaults;
        QTest::newRow("deployment values")
            << QByteArray(R"({"baseboardVendorId":"1A2B","baseboardProductIds":["0001","0002","00FF"]})") << ""
            << "1A2B" << QStringList { "0001", "0002", "00FF" };
        QTest::newRow("lower case refused")
            << QByteArray(R"({"baseboardVendorId":"1a2b","baseboardProductIds":["0001","0002","0003"]})")
            << "radar.flashing.baseboardVendorId validation error" << "2F5A" << defaults;
        QTest::newRow("two products refused")
            << QByteArray(R"({"baseboardVendorId":"1A2B","baseboardProductIds":["0001","0002"]})")
            << "expected 3 product IDs, found 2" << "2F5A" << defaults;
    }

    void baseboardIdentityIsASetting()
    {
        QFETCH(QByteArray, flashing);
        QFETCH(QString, error);
        QFETCH(QString, vendor);
        QFETCH(QStringList, products);
        RadarGeneralUserSettings settings;
        JSONConfigurationObject root(QStringLiteral("root"));
        root.addChild(settings.configurationNode());
        // A saved file with the "flashing" object replaced by the row's.
        QJsonObject document;
        root.writeChildren(document);
        QJsonObject radar = document.value("radar").toObject();
        QCOMPARE(radar.value("flashing").toObject().value("baseboardVendorId").toString(), QStringLiteral("2F5A"));
        if (flashing.isEmpty())
            radar.remove("flashing");
        else
            radar.insert("flashing", QJsonDocument::fromJson(flashing).object());
        document.insert("radar", radar);

        const QString loadError = loadFromText(root, QJsonDocument(document).toJson());
        QVERIFY2(error.isEmpty() ? loadError.isEmpty() : loadError.contains(error), qPrintable(loadError));
        QCOMPARE(settings.baseboardVendorId(), vendor);
        QCOMPARE(settings.baseboardProductIds(), products);
    }
};

QTEST_GUILESS_MAIN(TestRadarFirmwareSource)
#include "tst_RadarFirmwareSource.moc"
