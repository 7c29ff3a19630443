#include "HostSettings.h"

#include "core/JSONConfigurationBinding.h"
#include "host/CoreUserSettings.h"

namespace {

// The host's node is optional, unlike the module's: files written before the
// host kept settings of its own must not be refused for lacking it.
class OptionalObjectNode : public JSONConfigurationObject
{
public:
    using JSONConfigurationObject::JSONConfigurationObject;

    void readFromJson(const QJsonObject& parent) override
    {
        if (parent.contains(name()))
            JSONConfigurationObject::readFromJson(parent);
    }
    void validate(QString& error, const QJsonObject& parent, QStringList path) override
    {
        if (parent.contains(name()))
            JSONConfigurationObject::validate(error, parent, std::move(path));
    }
};

template<typename T>
void bindLeaf(JSONConfigurationObject& node, const QString& key, std::function<T()> getter,
              std::function<void(const T&)> setter, typename JSONConfigurationValue<T>::Validator validator = {})
{
    node.addChild(std::make_unique<JSONConfigurationValue<T>>(key, std::move(getter), std::move(setter),
                                                              std::move(validator)));
}

std::function<QString(const quint32&)> atMost(quint32 limit)
{
    return [limit](const quint32& value) {
        return value > limit ? QStringLiteral("must be at most %1").arg(limit) : QString();
    };
}

std::unique_ptr<JSONConfigurationObject> recordingNode(RecordingUserSettings& recording)
{
    using namespace JSONConfigurationBinding;
    auto node = std::make_unique<JSONConfigurationObject>(QStringLiteral("recording"));
    bindValue(*node, QStringLiteral("recordingPath"), &recording, &RecordingUserSettings::recordingPath,
              &RecordingUserSettings::setRecordingPath);
    bindValue(*node, QStringLiteral("fileName"), &recording, &RecordingUserSettings::fileName,
              &RecordingUserSettings::setFileName, [](const QString& name) {
                  return name.trimmed().isEmpty() ? QStringLiteral("must not be empty") : QString();
              });
    bindValue(*node, QStringLiteral("numOfFrames"), &recording, &RecordingUserSettings::numOfFrames,
              &RecordingUserSettings::setNumOfFrames);
    bindValue(*node, QStringLiteral("timeLimitOnRecording"), &recording,
              &RecordingUserSettings::timeLimitOnRecording, &RecordingUserSettings::setTimeLimitOnRecording);
    bindValue(*node, QStringLiteral("txtFile"), &recording, &RecordingUserSettings::txtFile,
              &RecordingUserSettings::setTxtFile);
    // The duration is set as a whole; each leaf replaces its own part.
    RecordingUserSettings* r = &recording;
    bindLeaf<quint32>(*node, QStringLiteral("hours"), [r] { return r->hours(); },
                      [r](const quint32& v) { r->setDuration(v, r->minutes(), r->seconds(), r->milliseconds()); },
                      atMost(24 * 365));
    bindLeaf<quint32>(*node, QStringLiteral("minutes"), [r] { return r->minutes(); },
                      [r](const quint32& v) { r->setDuration(r->hours(), v, r->seconds(), r->milliseconds()); },
                      atMost(59));
    bindLeaf<quint32>(*node, QStringLiteral("seconds"), [r] { return r->seconds(); },
                      [r](const quint32& v) { r->setDuration(r->hours(), r->minutes(), v, r->milliseconds()); },
                      atMost(59));
    bindLeaf<quint32>(*node, QStringLiteral("milliseconds"), [r] { return r->milliseconds(); },
                      [r](const quint32& v) { r->setDuration(r->hours(), r->minutes(), r->seconds(), v); },
                      atMost(999));
    return node;
}

} // namespace

HostSettings::HostSettings(CoreUserSettings& core)
    : m_core(core)
{
}

std::unique_ptr<JSONConfigurationObject> HostSettings::configurationNode()
{
    using namespace JSONConfigurationBinding;
    auto node = std::make_unique<OptionalObjectNode>(QStringLiteral("workbench"));
    bindValue(*node, QStringLiteral("minimumRefreshInterval"), &m_core, &CoreUserSettings::minimumRefreshInterval,
              &CoreUserSettings::setMinimumRefreshInterval, [](const qint32& ms) {
                  return ms < kMinRefreshMs || ms > kMaxRefreshMs
                      ? QStringLiteral("must be between %1 and %2 ms").arg(kMinRefreshMs).arg(kMaxRefreshMs)
                      : QString();
              });
    node->addChild(recordingNode(*m_core.recordingUserSettings()));

    auto logs = std::make_unique<JSONConfigurationObject>(QStringLiteral("logs"));
    // The limit goes first: switching automatic clearing on clears at once,
    // by the limit in force.
    Logging* logging = &m_logging;
    bindValue(*logs, QStringLiteral("clearLimit"), logging, &Logging::clearLimit, &Logging::setClearLimit,
              [logging](const QString& limit) {
                  for (const Logging::ClearOption& option : logging->clearOptions()) {
                      if (option.text == limit)
                          return QString();
                  }
                  return QStringLiteral("\"%1\" is not one of the offered ages").arg(limit);
              });
    bindValue(*logs, QStringLiteral("autoClearLogs"), logging, &Logging::autoClearLogs, &Logging::setAutoClearLogs);
    node->addChild(std::move(logs));
    return node;
}
