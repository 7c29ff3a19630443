#include "core/JSONConfigurationArray.h"
#include "core/JSONConfigurationBinding.h"
#include "core/JSONConfigurationFile.h"
#include "core/JSONConfigurationObject.h"
#include "core/JSONConfigurationValue.h"
#include "core/JSONVersion.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QTemporaryDir>
#include <QtTest>

namespace {

QString acceptAll() { return QString(); }

// A root with one object "radar" holding a single leaf "v" of type T whose
// value lands in `store`.
template<typename T>
std::unique_ptr<JSONConfigurationObject> leafTree(QVariant& store)
{
    auto radar = std::make_unique<JSONConfigurationObject>("radar");
    radar->addChild(std::make_unique<JSONConfigurationValue<T>>(
        "v", [&store] { return store.value<T>(); },
        [&store](const T& value) { store = QVariant::fromValue(value); },
        [](const T&) { return acceptAll(); }));
    auto root = std::make_unique<JSONConfigurationObject>("root");
    root->addChild(std::move(radar));
    return root;
}

using LeafTree = std::unique_ptr<JSONConfigurationObject> (*)(QVariant&);

// An object with accessors of the shapes the settings classes use: a setter
// that clamps (so a value read back shows whether the setter ran), a getter
// returning a reference, and a vector.
class Gauge
{
public:
    quint32 level() const { return m_level; }
    void setLevel(quint32 level) { m_level = qMin(level, 10u); }
    const QString& label() const { return m_label; }
    void setLabel(const QString& label) { m_label = label; }
    QVector<float> gains() const { return m_gains; }
    void setGains(const QVector<float>& gains) { m_gains = gains; }

private:
    quint32 m_level = 1;
    QString m_label = "none";
    QVector<float> m_gains { 1.0f };
};

struct Pair {
    qint32 first = -1;
    QString second = "unchanged";
};

// radar.common.first (int) and radar.common.second (text).
std::unique_ptr<JSONConfigurationObject> pairTree(Pair& pair)
{
    auto common = std::make_unique<JSONConfigurationObject>("common");
    common->addChild(std::make_unique<JSONConfigurationValue<qint32>>(
        "first", [&pair] { return pair.first; }, [&pair](const qint32& v) { pair.first = v; },
        [](const qint32&) { return acceptAll(); }));
    common->addChild(std::make_unique<JSONConfigurationValue<QString>>(
        "second", [&pair] { return pair.second; }, [&pair](const QString& v) { pair.second = v; },
        [](const QString&) { return acceptAll(); }));
    auto radar = std::make_unique<JSONConfigurationObject>("radar");
    radar->addChild(std::move(common));
    auto root = std::make_unique<JSONConfigurationObject>("root");
    root->addChild(std::move(radar));
    return root;
}

}

Q_DECLARE_METATYPE(LeafTree)

class TestJSONConfigurationTree : public QObject
{
    Q_OBJECT
private slots:
    void leafConversion_data()
    {
        QTest::addColumn<LeafTree>("tree");
        QTest::addColumn<QByteArray>("json");
        QTest::addColumn<QString>("error");
        QTest::addColumn<QVariant>("stored");

        QTest::newRow("3.9 truncates") << &leafTree<qint32> << QByteArray("3.9") << "" << QVariant(qint32(3));
        QTest::newRow("-3.9 truncates") << &leafTree<qint32> << QByteArray("-3.9") << "" << QVariant(qint32(-3));
        QTest::newRow("string for int") << &leafTree<qint32> << QByteArray("\"3\"")
                                        << "Field radar.v type error: Integer expected" << QVariant();
        QTest::newRow("u8") << &leafTree<quint8> << QByteArray("200") << "" << QVariant::fromValue(quint8(200));
        QTest::newRow("u16") << &leafTree<quint16> << QByteArray("65535.5") << "" << QVariant::fromValue(quint16(65535));
        QTest::newRow("u32 max") << &leafTree<quint32> << QByteArray("4294967295") << ""
                                 << QVariant::fromValue(quint32(4294967295u));
        QTest::newRow("u64 2^63") << &leafTree<quint64> << QByteArray("9223372036854775808") << ""
                                  << QVariant::fromValue(quint64(1) << 63);
        QTest::newRow("u64 1.5*2^63") << &leafTree<quint64> << QByteArray("13835058055282163712") << ""
                                      << QVariant::fromValue((quint64(1) << 63) | (quint64(1) << 62));
        QTest::newRow("bool for u64") << &leafTree<quint64> << QByteArray("false")
                                      << "Field radar.v type error: Integer expected" << QVariant();
        QTest::newRow("float") << &leafTree<float> << QByteArray("2.5") << "" << QVariant(2.5f);
        QTest::newRow("integer for float") << &leafTree<float> << QByteArray("3") << "" << QVariant(3.0f);
        QTest::newRow("true for float") << &leafTree<float> << QByteArray("true")
                                        << "Field radar.v type error: Float expected" << QVariant();
        QTest::newRow("bool") << &leafTree<bool> << QByteArray("true") << "" << QVariant(true);
        QTest::newRow("1 for bool") << &leafTree<bool> << QByteArray("1")
                                    << "Field radar.v type error: Boolean expected" << QVariant();
        QTest::newRow("text") << &leafTree<QString> << QByteArray("\"abc\"") << "" << QVariant(QString("abc"));
        QTest::newRow("number for text") << &leafTree<QString> << QByteArray("5")
                                         << "Field radar.v type error: String expected" << QVariant();
    }

    void leafConversion()
    {
        QFETCH(LeafTree, tree);
        QFETCH(QByteArray, json);
        QFETCH(QString, error);
        QFETCH(QVariant, stored);

        QVariant store;
        auto root = tree(store);
        QCOMPARE(loadFromText(*root, "{\"radar\": {\"v\": " + json + "}}"), error);
        // A failed load must not have called the setter at all.
        QCOMPARE(store, stored);
    }

    void pairTreeLoads_data()
    {
        QTest::addColumn<QByteArray>("json");
        QTest::addColumn<QString>("error"); // a trailing '*' stands for any reason
        QTest::addColumn<qint32>("first");
        QTest::newRow("nested field missing") << QByteArray(R"({"radar": {"common": {"first": 7}}})")
                                              << "Mandatory field radar.common.second is missing" << -1;
        QTest::newRow("object missing") << QByteArray(R"({"radar": {}})") << "Mandatory field radar.common is missing" << -1;
        QTest::newRow("top missing") << QByteArray("{}") << "Mandatory field radar is missing" << -1;
        QTest::newRow("object over an array") << QByteArray(R"({"radar": [1, 2]})") << "Field radar is not an JSON object"
                                              << -1;
        QTest::newRow("parser error") << QByteArray("{\"radar\": ") << "JSON parser error: *" << -1;
        QTest::newRow("complete") << QByteArray(R"({"radar": {"common": {"first": 7, "second": "x"}}})") << "" << 7;
        QTest::newRow("unknown keys are ignored")
            << QByteArray(R"({"extra": 1, "radar": {"common": {"first": 4, "second": "x", "more": []}}})") << "" << 4;
    }

    void pairTreeLoads()
    {
        QFETCH(QByteArray, json);
        QFETCH(QString, error);
        QFETCH(qint32, first);
        Pair pair;
        auto root = pairTree(pair);
        const QString reported = loadFromText(*root, json);
        if (error.endsWith('*'))
            QVERIFY2(reported.startsWith(error.chopped(1)) && reported.size() >= error.size(), qPrintable(reported));
        else
            QCOMPARE(reported, error);
        // A refused document applies nothing.
        QCOMPARE(pair.first, first);
        QCOMPARE(pair.second, QString(error.isEmpty() ? "x" : "unchanged"));
    }

    void objectNodeOverNonObjectIsRewritten()
    {
        Pair pair;
        auto root = pairTree(pair);
        QJsonObject top { { "radar", QJsonArray { 1, 2 } } };
        QTest::ignoreMessage(QtWarningMsg, "Json value with name 'radar' is different type than Object. It will be overriden!");
        root->writeChildren(top);
        QCOMPARE(top.value("radar").toObject().value("common").toObject().value("first").toInt(), -1);
    }

    void array_data()
    {
        QTest::addColumn<QByteArray>("json");
        QTest::addColumn<QString>("error");
        QTest::addColumn<QVector<qint32>>("ints");

        QTest::newRow("numbers truncate") << QByteArray("[1, 2.7, -3.2]") << "" << QVector<qint32> { 1, 2, -3 };
        QTest::newRow("empty") << QByteArray("[]") << "" << QVector<qint32> {};
        QTest::newRow("not an array") << QByteArray("5") << "Field radar.list is not an JSON array" << QVector<qint32> { 9 };
        QTest::newRow("bad element") << QByteArray("[1, \"x\"]") << "Field radar.list type error: Integer expected"
                                     << QVector<qint32> { 9 };
        QTest::newRow("validator refuses") << QByteArray("[1, 2, 3, 4]")
                                           << "Field radar.list validation error: too many" << QVector<qint32> { 9 };
    }

    void array()
    {
        QFETCH(QByteArray, json);
        QFETCH(QString, error);
        QFETCH(QVector<qint32>, ints);

        QVector<qint32> stored { 9 };
        auto radar = std::make_unique<JSONConfigurationObject>("radar");
        radar->addChild(std::make_unique<JSONConfigurationArray<QVector<qint32>>>(
            "list", [&] { return stored; }, [&](const QVector<qint32>& v) { stored = v; },
            [](const QVector<qint32>& v) { return v.size() > 3 ? QString("too many") : QString(); }));
        JSONConfigurationObject root("root");
        root.addChild(std::move(radar));

        QCOMPARE(loadFromText(root, "{\"radar\": {\"list\": " + json + "}}"), error);
        QCOMPARE(stored, ints);
        QJsonObject written;
        root.writeChildren(written);
        QJsonArray expected;
        for (qint32 v : ints)
            expected.append(v);
        QCOMPARE(written.value("radar").toObject().value("list").toArray(), expected);
    }

    void boundLeavesGoThroughAccessors_data()
    {
        QTest::addColumn<QByteArray>("json");
        QTest::addColumn<QString>("error");
        QTest::addColumn<quint32>("level");
        QTest::addColumn<QString>("label");
        QTest::addColumn<QVector<float>>("gains");

        QTest::newRow("all applied") << QByteArray(R"({"level": 4, "label": "a", "gains": [2, 3]})") << ""
                                     << 4u << "a" << QVector<float> { 2.0f, 3.0f };
        QTest::newRow("setter clamps") << QByteArray(R"({"level": 50, "label": "b", "gains": []})") << ""
                                       << 10u << "b" << QVector<float> {};
        QTest::newRow("validator refuses") << QByteArray(R"({"level": 500, "label": "c", "gains": []})")
                                           << "Field level validation error: too high" << 1u << "none"
                                           << QVector<float> { 1.0f };
        QTest::newRow("array type checked") << QByteArray(R"({"level": 4, "label": "d", "gains": 2})")
                                            << "Field gains is not an JSON array" << 1u << "none"
                                            << QVector<float> { 1.0f };
        QTest::newRow("float element checked") << QByteArray(R"({"level": 4, "label": "e", "gains": [0.5, true]})")
                                               << "Field gains type error: Float expected" << 1u << "none"
                                               << QVector<float> { 1.0f };
    }

    void boundLeavesGoThroughAccessors()
    {
        QFETCH(QByteArray, json);
        QFETCH(QString, error);
        QFETCH(quint32, level);
        QFETCH(QString, label);
        QFETCH(QVector<float>, gains);

        Gauge gauge;
        JSONConfigurationObject root("root");
        JSONConfigurationBinding::bindValue(root, "level", &gauge, &Gauge::level, &Gauge::setLevel,
                                            [](const quint32& v) { return v > 100 ? QString("too high") : QString(); });
        JSONConfigurationBinding::bindValue(root, "label", &gauge, &Gauge::label, &Gauge::setLabel);
        JSONConfigurationBinding::bindArray(root, "gains", &gauge, &Gauge::gains, &Gauge::setGains);

        QCOMPARE(loadFromText(root, json), error);
        QCOMPARE(gauge.level(), level);
        QCOMPARE(gauge.label(), label);
        QCOMPARE(gauge.gains(), gains);

        QJsonObject written;
        root.writeChildren(written);
        QCOMPARE(written.value("level").toInt(), int(level));
        QCOMPARE(written.value("label").toString(), label);
        QJsonArray expectedGains;
        for (float g : gains)
            expectedGains.append(double(g));
        QCOMPARE(written.value("gains").toArray(), expectedGains);
    }

    void sameNamedSiblingsMergeAndBothReadBack()
    {
        qint32 a = 1;
        QString b = "one";
        const auto build = [&](JSONConfigurationObject& root) {
            auto first = std::make_unique<JSONConfigurationObject>("radar");
            first->addChild(std::make_unique<JSONConfigurationValue<qint32>>(
                "a", [&] { return a; }, [&](const qint32& v) { a = v; }, [](const qint32&) { return QString(); }));
            auto second = std::make_unique<JSONConfigurationObject>("radar");
            second->addChild(std::make_unique<JSONConfigurationValue<QString>>(
                "b", [&] { return b; }, [&](const QString& v) { b = v; }, [](const QString&) { return QString(); }));
            // Settings classes hand out their own subtree; the owner collects them.
            JSONConfigurationObject collected("collected");
            collected.addChild(std::move(first));
            collected.addChild(std::move(second));
            root.addChildrenOf(collected);
        };
        JSONConfigurationObject root("root");
        build(root);

        QJsonObject top;
        root.writeChildren(top);
        QCOMPARE(top.keys(), QStringList { "radar" });
        QCOMPARE(top.value("radar").toObject().value("a").toInt(), 1);
        QCOMPARE(top.value("radar").toObject().value("b").toString(), QString("one"));

        top = QJsonObject { { "radar", QJsonObject { { "a", 2 }, { "b", "two" } } } };
        QCOMPARE(loadFromText(root, QJsonDocument(top).toJson()), QString());
        QCOMPARE(a, 2);
        QCOMPARE(b, QString("two"));
    }

    void jsonVersionNodeReadsItsMembers()
    {
        JSONVersion stamp;
        JSONConfigurationObject root("root");
        root.addChild(stamp.configurationNode());
        QCOMPARE(loadFromText(root, R"({"json_version": {"type": "KMR7C_Extended", "version": "1.0"}})"), QString());
        QCOMPARE(stamp.type(), QString("KMR7C_Extended"));
        QCOMPARE(stamp.version(), QString("1.0"));
        QCOMPARE(loadFromText(root, R"({"json_version": {"type": "KMR7C"}})"),
                 QString("Mandatory field json_version.version is missing"));
        // Both wrong: the type is named first. Each alone is checked through
        // the configuration files' tests.
        QCOMPARE(JSONVersion("KMR7A", "1.0").check("KMR7B", "2.0"), QString("Invalid json type"));
    }

    void fileRoundTripOmitsRootName()
    {
        QTemporaryDir dir;
        QVERIFY(dir.isValid());
        const QString path = dir.filePath("settings.json");

        Pair saved;
        saved.first = 42;
        saved.second = "saved";
        auto savedRoot = pairTree(saved);
        QVERIFY(saveToFile(*savedRoot, path));

        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QJsonObject top = QJsonDocument::fromJson(file.readAll()).object();
        QCOMPARE(top.keys(), QStringList { "radar" });

        Pair loaded;
        auto loadedRoot = pairTree(loaded);
        QCOMPARE(loadFromFile(*loadedRoot, path), QString());
        QCOMPARE(loaded.first, 42);
        QCOMPARE(loaded.second, QString("saved"));
        QCOMPARE(loadFromFile(*loadedRoot, dir.filePath("absent.json")), QString("Cannot open file"));
    }

    void failedSaveKeepsOldFile()
    {
        QTemporaryDir dir;
        QVERIFY(dir.isValid());
        // The name fits the file system's limit, but the temporary the save
        // writes first (the name plus a random suffix) does not: the save fails
        // before the target is touched, whatever the user's permissions.
        const QString path = dir.filePath(QString(250, QLatin1Char('s')));
        {
            QFile old(path);
            QVERIFY(old.open(QIODevice::WriteOnly));
            old.write("old contents");
        }

        Pair pair;
        auto root = pairTree(pair);
        QVERIFY(!saveToFile(*root, path));

        QFile old(path);
        QVERIFY(old.open(QIODevice::ReadOnly));
        QCOMPARE(old.readAll(), QByteArray("old contents"));
    }
};

QTEST_GUILESS_MAIN(TestJSONConfigurationTree)
#include "tst_JSONConfigurationTree.moc"
