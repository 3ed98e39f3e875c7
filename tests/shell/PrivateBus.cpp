#include "tests/shell/PrivateBus.h"

#include <QFile>

using namespace Qt::StringLiterals;

namespace
{
// The system's own configuration would start services.
const QByteArray configuration = R"(<!DOCTYPE busconfig PUBLIC
 "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>session</type>
  <listen>unix:path=%1</listen>
  <auth>EXTERNAL</auth>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
)";
} // namespace

PrivateBus::PrivateBus()
{
    QFile file(m_folder.filePath(u"bus.conf"_s));
    const QByteArray socket = QFile::encodeName(m_folder.filePath(u"socket"_s));
    if (!file.open(QIODevice::WriteOnly) ||
        file.write(QByteArray(configuration).replace("%1", socket)) <= 0)
        return;
    file.close();
    m_daemon.start(u"dbus-daemon"_s,
                   {u"--nofork"_s, u"--print-address"_s, u"--config-file="_s + file.fileName()});
    QByteArray line;
    while (!line.endsWith('\n') && m_daemon.waitForReadyRead())
        line += m_daemon.readAllStandardOutput();
    m_address = QString::fromUtf8(line.trimmed());
}

PrivateBus::~PrivateBus()
{
    stop();
}

void PrivateBus::stop()
{
    m_daemon.kill();
    m_daemon.waitForFinished();
}
