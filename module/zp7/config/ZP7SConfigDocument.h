#pragma once

#include "core/JSONVersion.h"

#include <QByteArray>
#include <QString>

#include <memory>

class JSONConfigurationObject;
class ZP7SDeviceConfig;

// The two JSON documents of one ZP7SDeviceConfig, built over the live
// objects (the document must not outlive the configuration):
//
// - the configuration document: "device_config" {"frame_params" {...},
//   "pulse_params" {...}} and "json_version" {"type": "KMR24ZP7"};
// - the extended document: "device_info" and "json_version"
//   {"type": "KMR24ZP7_Extended"}; the board's bounds are never stored.
//
// A saved file and a recording's ".json" hold the configuration document
// at the top level and the extended one under
// "device_configuration_extended", as the FMCW files do.
class ZP7SConfigDocument
{
public:
    static const QString kType;         // "KMR24ZP7"
    static const QString kExtendedType; // "KMR24ZP7_Extended"
    static const QString kVersion;      // "1.0"
    static const QString kExtendedKey;  // "device_configuration_extended"

    explicit ZP7SConfigDocument(ZP7SDeviceConfig& config);
    ~ZP7SConfigDocument();

    std::unique_ptr<JSONConfigurationObject> configurationTree();
    std::unique_ptr<JSONConfigurationObject> extendedConfigurationTree();
    // Both under one root: what a file or a recording holds.
    std::unique_ptr<JSONConfigurationObject> combinedTree();

    // The combined document as indented JSON text.
    QByteArray toJson();
    // Into the configuration; empty on success, else why the document was
    // refused, and then nothing changed. The kind is checked before any
    // value, so a document of another chip or an FMCW document is named as
    // such instead of failing at some key it lacks. The values are held to
    // the configuration's limits. With `withExtended` the extended document
    // must be present (a recording) and its device information is read too;
    // without, an extended document that is present must still be ZP7's.
    QString load(const QByteArray& bytes, bool withExtended);

    // Why a "json_version" type is not `expected`, naming what was found
    // ("KMR7A" is an FMCW configuration, another chip, nothing); empty when
    // it is.
    static QString kindError(const QString& found, const QString& expected);

private:
    QString checkKind(const QByteArray& bytes, bool withExtended) const;

    ZP7SDeviceConfig& m_config;
    JSONVersion m_version;
    JSONVersion m_extendedVersion;
};
