#include "core/CSVFile.h"

#include <QIODevice>

CSVFile::CSVFile(QIODevice* device)
    : m_stream(device)
{
    m_stream.setCodec("UTF-8");
}

// The stream flushes what writeRow() left buffered.
CSVFile::~CSVFile() = default;

bool CSVFile::writeRows(const CSVLoggerBuffer& rows)
{
    for (const QStringList& row : rows)
        writeRow(row);
    m_stream.flush();
    return m_stream.status() != QTextStream::WriteFailed;
}

bool CSVFile::writeRow(const QStringList& row)
{
    m_stream << row.join(QLatin1Char(',')) << "\r\n";
    return m_stream.status() != QTextStream::WriteFailed;
}
