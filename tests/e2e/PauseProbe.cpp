#include "tests/e2e/PauseProbe.h"

#include "tests/e2e/XTools.h"

#include <QRegularExpression>

using namespace Qt::StringLiterals;

PauseProbe::PauseProbe(qint64 processId)
{
    m_process.start(QStringLiteral(PLIM_PROBE),
                    {u"pause"_s, QString::number(processId), u"Plim"_s});
    while (!m_said.contains("answered") && m_process.waitForReadyRead(XTools::patience))
        m_said += m_process.readAllStandardOutput();
}

PauseProbe::~PauseProbe()
{
    m_process.kill();
    m_process.waitForFinished();
}

double PauseProbe::longestPause()
{
    m_process.closeWriteChannel(); // its sign to end
    if (!m_process.waitForFinished(XTools::patience) || m_process.exitCode() != 0)
        return -1;
    static const QRegularExpression own(u" own (\\S+)"_s);
    m_said += m_process.readAllStandardOutput();
    return own.match(QString::fromUtf8(m_said)).captured(1).toDouble();
}
