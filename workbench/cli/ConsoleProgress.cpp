#include "ConsoleProgress.h"

#include <QString>
#include <QTextStream>
#include <QtGlobal>

void drawProgress(QTextStream& out, int percent)
{
    constexpr int kWidth = 40;
    percent = qBound(0, percent, 100);
    const int done = percent * kWidth / 100;
    out << "\r[" << QString(done, u'#') << QString(kWidth - done, u' ') << "] " << qSetFieldWidth(3) << percent
        << qSetFieldWidth(0) << '%';
    out.flush();
}
