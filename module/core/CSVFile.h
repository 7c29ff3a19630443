#pragma once

#include "core/CSVLoggerBuffer.h"

#include <QTextStream>

class QIODevice;

// Writes rows of text fields to an open device: fields separated by ",",
// lines ended by "\r\n". Fields are written as they are, without quoting,
// so a field holding a comma spans two columns; producers only hand over
// numbers and fixed labels.
class CSVFile
{
public:
    // The device must be open for writing and outlive this writer.
    explicit CSVFile(QIODevice* device);
    ~CSVFile();

    // Writes every row, then flushes, so a failing disk shows up here and
    // not some rows later.
    bool writeRows(const CSVLoggerBuffer& rows);
    // Buffered: a failure may only be reported by a later flush.
    bool writeRow(const QStringList& row);

private:
    QTextStream m_stream;
};
