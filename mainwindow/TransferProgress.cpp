#include "mainwindow/TransferProgress.h"

#include "shell/L10n.h"

#include <chrono>

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

namespace
{
constexpr auto patience = 300ms; ///< what is done by then needs no window
}

TransferProgress::TransferProgress(QObject *parent) : QObject(parent)
{
    m_patience.setSingleShot(true);
    m_patience.setInterval(patience);
    connect(&m_patience, &QTimer::timeout, this, [this] { setIsShown(true); });
    connect(&L10n::shared(), &L10n::changed, this, &TransferProgress::shareChanged);
}

double TransferProgress::share() const
{
    return m_total > 0 ? double(m_done) / m_total : 0;
}

QString TransferProgress::text() const
{
    const QString count = QString::number(m_done) + u" / "_s + QString::number(m_total);
    return (m_kind == Kind::Export ? L10n::exporting() : L10n::importing()) + u' ' + count;
}

void TransferProgress::begin(Kind kind, int total)
{
    m_kind = kind;
    m_total = total;
    m_done = 0;
    m_patience.start();
    Q_EMIT shareChanged();
}

void TransferProgress::setDone(int done)
{
    if (m_done == done)
        return;
    m_done = done;
    Q_EMIT shareChanged();
}

void TransferProgress::end()
{
    m_patience.stop();
    setIsShown(false);
}

void TransferProgress::cancel()
{
    end();
    Q_EMIT canceled();
}

void TransferProgress::setIsShown(bool isShown)
{
    if (m_isShown == isShown)
        return;
    m_isShown = isShown;
    Q_EMIT isShownChanged();
}
