#pragma once

#include <QSet>
#include <QString>

// Reads a recording back with the project's reader and compares it with
// the frames the view counted while it ran.
struct RecordingAudit {
    QString error;           // the file is not a whole, readable recording
    qint64 fileFrames = 0;
    qint64 lost = 0;         // counted by the view, missing from the file
    qint64 beforeStart = 0;  // counted, but numbered before the file's first frame

    static RecordingAudit of(const QString& binPath, const QSet<int>& counted);
};
