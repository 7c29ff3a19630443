#include "BenchParser.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSet>

#include <cmath>
#include <limits>
#include <set>

namespace vrnsim {

namespace {

const char* const kDefaultBench = R"({ "boards": [ {
  "uuid": "1f3c-0001", "shield": 512, "chip": "KMR7A", "firmware": "2.5.1", "port": "ttyVRN0",
  "pacing": "realtime", "noise": 0.002, "seed": 1,
  "scene": { "targets": [
    { "kind": "reflector", "range_m": 6.0, "speed_m_s": 0.0, "angle_deg": 0.0, "rcs_m2": 5.0 },
    { "kind": "person", "range_m": 2.0, "speed_m_s": 0.8, "angle_deg": 20.0, "rcs_m2": 1.0,
      "min_range_m": 1.0, "max_range_m": 4.0 } ] },
  "faults": [] } ] })";

// Small helper that walks one JSON object, remembers its path and fails on
// the first bad field.
class Reader
{
public:
    Reader(const QJsonObject& object, QString path, std::string& error)
        : m_object(object), m_path(std::move(path)), m_error(error)
    {}

    bool ok() const { return m_ok; }

    QString field(const QString& key) const
    {
        return m_path.isEmpty() ? key : m_path + QLatin1Char('.') + key;
    }

    bool fail(const QString& key, const QString& message)
    {
        if (m_ok)
            m_error = (field(key) + QStringLiteral(": ") + message).toStdString();
        m_ok = false;
        return false;
    }

    bool checkKeys(std::initializer_list<const char*> allowed)
    {
        QSet<QString> known;
        for (const char* k : allowed)
            known.insert(QString::fromLatin1(k));
        for (auto it = m_object.begin(); it != m_object.end(); ++it)
            if (!known.contains(it.key()))
                return fail(it.key(), QStringLiteral("unknown key"));
        return m_ok;
    }

    bool has(const char* key) const { return m_object.contains(QLatin1String(key)); }
    QJsonValue value(const char* key) const { return m_object.value(QLatin1String(key)); }

    double number(const char* key, double fallback, double min, double max)
    {
        if (!m_ok || !has(key))
            return fallback;
        const QJsonValue v = value(key);
        if (!v.isDouble()) {
            fail(key, QStringLiteral("must be a number"));
            return fallback;
        }
        const double d = v.toDouble();
        if (!std::isfinite(d) || d < min || d > max) {
            fail(key, QStringLiteral("%1 is outside [%2, %3]").arg(d).arg(min).arg(max));
            return fallback;
        }
        return d;
    }

    QString text(const char* key, const QString& fallback)
    {
        if (!m_ok || !has(key))
            return fallback;
        const QJsonValue v = value(key);
        if (!v.isString()) {
            fail(key, QStringLiteral("must be a string"));
            return fallback;
        }
        return v.toString();
    }

    QJsonArray array(const char* key)
    {
        if (!m_ok || !has(key))
            return {};
        const QJsonValue v = value(key);
        if (!v.isArray()) {
            fail(key, QStringLiteral("must be an array"));
            return {};
        }
        return v.toArray();
    }

private:
    QJsonObject m_object;
    QString m_path;
    std::string& m_error;
    bool m_ok = true;
};

bool parseTarget(const QJsonValue& value, const QString& path, Target& t, std::string& error)
{
    if (!value.isObject()) {
        error = (path + QStringLiteral(": must be an object")).toStdString();
        return false;
    }
    Reader r(value.toObject(), path, error);
    r.checkKeys({"kind", "range_m", "speed_m_s", "angle_deg", "elevation_deg", "rcs_m2", "min_range_m",
                 "max_range_m", "breathing_mm", "breathing_hz"});
    const QString kind = r.text("kind", QStringLiteral("reflector"));
    if (kind == QLatin1String("person"))
        t.kind = Target::Kind::Person;
    else if (kind == QLatin1String("reflector"))
        t.kind = Target::Kind::Reflector;
    else
        r.fail(QStringLiteral("kind"), QStringLiteral("\"%1\" is neither \"reflector\" nor \"person\"").arg(kind));
    const bool person = t.kind == Target::Kind::Person;
    t.rangeM = r.number("range_m", person ? 2.0 : 1.0, 0.01, 1000.0);
    t.speedMs = r.number("speed_m_s", 0.0, -100.0, 100.0);
    t.angleDeg = r.number("angle_deg", 0.0, -90.0, 90.0);
    t.elevationDeg = r.number("elevation_deg", 0.0, -90.0, 90.0);
    t.rcsM2 = r.number("rcs_m2", 1.0, 0.0, 1e6);
    t.minRangeM = r.number("min_range_m", person ? 1.0 : 0.2, 0.01, 1000.0);
    t.maxRangeM = r.number("max_range_m", person ? 4.0 : 20.0, 0.01, 1000.0);
    t.breathingM = r.number("breathing_mm", person ? 5.0 : 0.0, 0.0, 100.0) / 1000.0;
    t.breathingHz = r.number("breathing_hz", 0.25, 0.0, 10.0);
    if (r.ok() && t.minRangeM > t.maxRangeM)
        r.fail(QStringLiteral("min_range_m"), QStringLiteral("is above max_range_m"));
    if (r.ok() && t.speedMs != 0.0 && (t.rangeM < t.minRangeM || t.rangeM > t.maxRangeM))
        r.fail(QStringLiteral("range_m"), QStringLiteral("lies outside [min_range_m, max_range_m]"));
    return r.ok();
}

// A status is a whole number the SDK's 32-bit status can hold, written as a
// JSON number or as text ("0x11002" or decimal). Anything else is refused
// rather than cut down to some other status.
bool parseStatus(const QJsonValue& v, int32_t& status)
{
    constexpr double lowest = std::numeric_limits<int32_t>::min();
    constexpr double highest = std::numeric_limits<int32_t>::max();
    double n = 0;
    if (v.isDouble()) {
        n = v.toDouble();
    } else if (v.isString()) {
        bool ok = false;
        const QString s = v.toString();
        n = double(s.startsWith(QLatin1String("0x")) ? s.mid(2).toLongLong(&ok, 16) : s.toLongLong(&ok, 10));
        if (!ok)
            return false;
    } else {
        return false;
    }
    if (!(n >= lowest && n <= highest) || n != std::floor(n))
        return false;
    status = static_cast<int32_t>(n);
    return true;
}

bool parseFault(const QJsonValue& value, const QString& path, ScheduledFault& f, std::string& error)
{
    if (!value.isObject()) {
        error = (path + QStringLiteral(": must be an object")).toStdString();
        return false;
    }
    Reader r(value.toObject(), path, error);
    r.checkKeys({"at_frame", "at_capture", "status", "count", "kind"});
    f.atCapture = r.has("at_capture");
    if (r.ok() && !r.has("at_frame") && !f.atCapture)
        r.fail(QStringLiteral("at_frame"), QStringLiteral("is missing (or \"at_capture\")"));
    if (r.ok() && r.has("at_frame") && f.atCapture)
        r.fail(QStringLiteral("at_capture"), QStringLiteral("cannot go with \"at_frame\""));
    const char* at = f.atCapture ? "at_capture" : "at_frame";
    f.atFrame = static_cast<uint64_t>(r.number(at, 0, 0, 1e15));
    f.count = static_cast<uint32_t>(r.number("count", 1, 0, 4e9));
    const QString kind = r.text("kind", QStringLiteral("fetch"));
    if (kind == QLatin1String("unplug"))
        f.unplug = true;
    else if (kind != QLatin1String("fetch"))
        r.fail(QStringLiteral("kind"), QStringLiteral("\"%1\" is neither \"fetch\" nor \"unplug\"").arg(kind));
    if (r.ok() && !f.unplug) {
        if (!r.has("status"))
            r.fail(QStringLiteral("status"), QStringLiteral("is missing"));
        else if (!parseStatus(r.value("status"), f.status) || f.status == 0)
            r.fail(QStringLiteral("status"), QStringLiteral("must be a non-zero status such as \"0x11002\""));
    }
    return r.ok();
}

bool parseFlashFault(const QJsonValue& value, const QString& path, FlashFault& f, std::string& error)
{
    if (!value.isObject()) {
        error = (path + QStringLiteral(": must be an object")).toStdString();
        return false;
    }
    Reader r(value.toObject(), path, error);
    r.checkKeys({"kind", "at_percent", "count"});
    if (r.ok() && !r.has("kind"))
        r.fail(QStringLiteral("kind"), QStringLiteral("is missing"));
    const QString kind = r.text("kind", QString());
    if (kind == QLatin1String("activation_fails"))
        f.kind = FlashFault::Kind::ActivationFails;
    else if (kind == QLatin1String("no_bootloader"))
        f.kind = FlashFault::Kind::NoBootloader;
    else if (kind == QLatin1String("write_fails"))
        f.kind = FlashFault::Kind::WriteFails;
    else if (kind == QLatin1String("no_return"))
        f.kind = FlashFault::Kind::NoReturn;
    else if (r.ok())
        r.fail(QStringLiteral("kind"),
               QStringLiteral("\"%1\" is not one of \"activation_fails\", \"no_bootloader\", \"write_fails\", "
                              "\"no_return\"")
                   .arg(kind));
    if (r.ok() && r.has("at_percent") && f.kind != FlashFault::Kind::WriteFails)
        r.fail(QStringLiteral("at_percent"), QStringLiteral("belongs to \"write_fails\" only"));
    f.atPercent = static_cast<uint32_t>(r.number("at_percent", 50, 0, 100));
    f.count = static_cast<uint32_t>(r.number("count", 1, 0, 4e9));
    return r.ok();
}

bool isUsbId(const QString& text)
{
    if (text.size() != 4)
        return false;
    for (const QChar c : text)
        if (!((c >= QLatin1Char('0') && c <= QLatin1Char('9')) || (c >= QLatin1Char('A') && c <= QLatin1Char('F'))))
            return false;
    return true;
}

const char* defaultUsbProduct(int shield)
{
    switch (shield) {
    case 512: return "0251";
    case 513: return "0252";
    default: return "0253";
    }
}

bool parseFirmware(const QString& text, uint16_t out[3])
{
    const QStringList parts = text.split(QLatin1Char('.'));
    if (parts.size() != 3)
        return false;
    for (int i = 0; i < 3; ++i) {
        bool ok = false;
        const uint n = parts[i].toUInt(&ok);
        if (!ok || n > 65535)
            return false;
        out[i] = static_cast<uint16_t>(n);
    }
    return true;
}

bool parseBoardObject(const QJsonValue& value, const QString& path, int index, BoardSpec& b, std::string& error)
{
    if (!value.isObject()) {
        error = ((path.isEmpty() ? QStringLiteral("board") : path) + QStringLiteral(": must be an object"))
                    .toStdString();
        return false;
    }
    Reader r(value.toObject(), path, error);
    r.checkKeys({"uuid", "shield", "chip", "firmware", "firmware_description", "port", "pacing", "noise", "seed",
                 "fifo_frames", "ambient_c", "heating_c", "thermal_time_s", "scene", "faults", "usb_vendor",
                 "usb_product", "mode", "flash_step_ms", "usb_switch_ms", "flash_faults"});
    if (r.ok() && !r.has("uuid"))
        r.fail(QStringLiteral("uuid"), QStringLiteral("is missing"));
    const QString uuid = r.text("uuid", QString());
    if (r.ok() && (uuid.isEmpty() || uuid.toUtf8().size() >= VRN_UUID_MAX))
        r.fail(QStringLiteral("uuid"), QStringLiteral("must hold 1 to %1 bytes").arg(VRN_UUID_MAX - 1));
    b.uuid = uuid.toStdString();

    const QString chip = r.text("chip", QStringLiteral("KMR7A"));
    b.chip = ChipModel::byName(chip.toStdString());
    if (r.ok() && !b.chip)
        r.fail(QStringLiteral("chip"), QStringLiteral("\"%1\" is not one of KMR7A, KMR7B, KMR7C, ZP7").arg(chip));
    if (!r.ok())
        return false;

    b.shield = static_cast<int>(r.number("shield", b.chip->defaultShield, 0, 0x7fffffff));
    if (r.ok() && !ChipModel::shieldFits(*b.chip, b.shield))
        r.fail(QStringLiteral("shield"),
               QStringLiteral("%1 cannot carry a %2 (FMCW chips sit on 512, 513 or 514, ZP7 on 768)")
                   .arg(b.shield)
                   .arg(chip));

    const QString firmware = r.text("firmware", QStringLiteral("2.5.1"));
    if (r.ok() && !parseFirmware(firmware, b.firmware))
        r.fail(QStringLiteral("firmware"), QStringLiteral("\"%1\" is not MAJOR.MINOR.BUILD").arg(firmware));
    b.firmwareDescription =
        r.text("firmware_description", QStringLiteral("Radar baseboard firmware for %1").arg(chip)).toStdString();
    // A hot-plugged board (index -1) without a port gets a free one when plugged.
    b.port = r.text("port", index < 0 ? QString() : QStringLiteral("ttyVRN%1").arg(index)).toStdString();
    if (r.ok() && r.has("port") && b.port.empty())
        r.fail(QStringLiteral("port"), QStringLiteral("must not be empty"));

    const QString vendor = r.text("usb_vendor", QStringLiteral("2F5A"));
    const QString product = r.text("usb_product", QLatin1String(defaultUsbProduct(b.shield)));
    const QString notAnId = QStringLiteral("\"%1\" is not four upper-case hexadecimal digits");
    if (r.ok() && !isUsbId(vendor))
        r.fail(QStringLiteral("usb_vendor"), notAnId.arg(vendor));
    if (r.ok() && !isUsbId(product))
        r.fail(QStringLiteral("usb_product"), notAnId.arg(product));
    if (r.ok() && vendor == QLatin1String("03EB") && product == QLatin1String("6124"))
        r.fail(QStringLiteral("usb_product"), QStringLiteral("03EB/6124 is the bootloader's identity"));
    b.usbVendor = vendor.toStdString();
    b.usbProduct = product.toStdString();
    const QString mode = r.text("mode", QStringLiteral("application"));
    if (mode == QLatin1String("bootloader"))
        b.startsInBootloader = true;
    else if (mode != QLatin1String("application") && r.ok())
        r.fail(QStringLiteral("mode"),
               QStringLiteral("\"%1\" is neither \"application\" nor \"bootloader\"").arg(mode));
    b.flashPace.stepMs = static_cast<uint32_t>(r.number("flash_step_ms", 20, 0, 10000));
    b.flashPace.switchMs = static_cast<uint32_t>(r.number("usb_switch_ms", 500, 0, 60000));

    const QString pacing = r.text("pacing", QStringLiteral("realtime"));
    if (pacing == QLatin1String("realtime"))
        b.realtime = true;
    else if (pacing == QLatin1String("unpaced"))
        b.realtime = false;
    else if (r.ok())
        r.fail(QStringLiteral("pacing"), QStringLiteral("\"%1\" is neither \"realtime\" nor \"unpaced\"").arg(pacing));

    b.noise = r.number("noise", 0.002, 0.0, 1.0);
    b.seed = static_cast<uint64_t>(r.number("seed", 1, 0, 9007199254740992.0));
    b.fifoFrames = static_cast<uint32_t>(r.number("fifo_frames", 4, 1, 64));
    b.ambientC = r.number("ambient_c", 25.0, -40.0, 85.0);
    b.heatingC = r.number("heating_c", 20.0, 0.0, 100.0);
    b.thermalTimeS = r.number("thermal_time_s", 60.0, 0.001, 1e5);
    if (!r.ok())
        return false;

    if (r.has("scene")) {
        const QJsonValue scene = r.value("scene");
        if (!scene.isObject())
            return r.fail(QStringLiteral("scene"), QStringLiteral("must be an object"));
        Reader sr(scene.toObject(), r.field(QStringLiteral("scene")), error);
        if (!sr.checkKeys({"targets"}))
            return false;
        const QJsonArray targets = sr.array("targets");
        if (!sr.ok())
            return false;
        b.scene.targets.clear();
        for (int i = 0; i < targets.size(); ++i) {
            Target t;
            if (!parseTarget(targets[i], sr.field(QStringLiteral("targets[%1]").arg(i)), t, error))
                return false;
            b.scene.targets.push_back(t);
        }
    } else {
        Bench fallback;
        std::string ignored;
        BenchParser::parseBench(kDefaultBench, "Bench", fallback, ignored);
        b.scene = fallback.boards.front().scene;
    }

    const QJsonArray faults = r.array("faults");
    for (int i = 0; r.ok() && i < faults.size(); ++i) {
        ScheduledFault f;
        if (!parseFault(faults[i], r.field(QStringLiteral("faults[%1]").arg(i)), f, error))
            return false;
        b.faults.push_back(f);
    }
    const QJsonArray flashFaults = r.array("flash_faults");
    for (int i = 0; r.ok() && i < flashFaults.size(); ++i) {
        FlashFault f;
        if (!parseFlashFault(flashFaults[i], r.field(QStringLiteral("flash_faults[%1]").arg(i)), f, error))
            return false;
        b.flashFaults.push_back(f);
    }
    return r.ok();
}

bool parseDocument(const std::string& json, const std::string& origin, QJsonDocument& doc, std::string& error)
{
    QJsonParseError parseError;
    doc = QJsonDocument::fromJson(QByteArray::fromStdString(json), &parseError);
    if (parseError.error != QJsonParseError::NoError) {
        error = origin + ": not valid JSON at offset " + std::to_string(parseError.offset) + ": " +
                parseError.errorString().toStdString();
        return false;
    }
    if (!doc.isObject()) {
        error = origin + ": the top level must be an object";
        return false;
    }
    return true;
}

}  // namespace

const char* BenchParser::defaultBenchJson()
{
    return kDefaultBench;
}

bool BenchParser::parseBench(const std::string& json, const std::string& origin, Bench& bench, std::string& error)
{
    QJsonDocument doc;
    if (!parseDocument(json, origin, doc, error))
        return false;
    std::string fieldError;
    Reader r(doc.object(), QString(), fieldError);
    bool ok = r.checkKeys({"boards"});
    const QJsonArray boards = r.array("boards");
    if (ok && r.ok() && !doc.object().contains(QLatin1String("boards")))
        r.fail(QStringLiteral("boards"), QStringLiteral("is missing"));
    ok = r.ok();
    std::set<std::string> uuids, ports;
    Bench parsed;
    for (int i = 0; ok && i < boards.size(); ++i) {
        BoardSpec b;
        ok = parseBoardObject(boards[i], QStringLiteral("boards[%1]").arg(i), i, b, fieldError);
        if (ok && !uuids.insert(b.uuid).second) {
            fieldError = "boards[" + std::to_string(i) + "].uuid: \"" + b.uuid + "\" is used by another board";
            ok = false;
        }
        if (ok && !ports.insert(b.port).second) {
            fieldError = "boards[" + std::to_string(i) + "].port: \"" + b.port + "\" is used by another board";
            ok = false;
        }
        parsed.boards.push_back(b);
    }
    if (!ok) {
        error = origin + ": " + fieldError;
        return false;
    }
    bench = std::move(parsed);
    return true;
}

bool BenchParser::parseBoard(const std::string& json, BoardSpec& board, std::string& error)
{
    QJsonDocument doc;
    if (!parseDocument(json, "Board", doc, error))
        return false;
    std::string fieldError;
    if (!parseBoardObject(doc.object(), QString(), -1, board, fieldError)) {
        error = "Board: " + fieldError;
        return false;
    }
    return true;
}

bool BenchParser::readFile(const std::string& path, std::string& contents, std::string& error)
{
    QFile file(QString::fromStdString(path));
    if (!file.open(QIODevice::ReadOnly)) {
        error = "Bench file " + path + ": cannot be read: " + file.errorString().toStdString();
        return false;
    }
    contents = file.readAll().toStdString();
    return true;
}

}  // namespace vrnsim
