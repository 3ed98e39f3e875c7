#include "mainwindow/UndoOffer.h"

#include "shell/L10n.h"

UndoOffer::UndoOffer(std::chrono::milliseconds offerTime, QObject *parent) : QObject(parent)
{
    m_end.setSingleShot(true);
    m_end.setInterval(offerTime);
    connect(&m_end, &QTimer::timeout, this, &UndoOffer::dismiss);
    connect(&L10n::shared(), &L10n::changed, this, &UndoOffer::textChanged);
}

QString UndoOffer::actionText() const
{
    return L10n::undo();
}

void UndoOffer::undo()
{
    if (!m_isOffered)
        return;
    setIsOffered(false);
    takeBack();
    forget();
}

void UndoOffer::dismiss()
{
    if (!m_isOffered)
        return;
    setIsOffered(false);
    forget();
}

void UndoOffer::begin()
{
    m_end.start();
    Q_EMIT textChanged();
    setIsOffered(true);
}

void UndoOffer::setIsOffered(bool isOffered)
{
    if (!isOffered)
        m_end.stop();
    if (m_isOffered == isOffered)
        return;
    m_isOffered = isOffered;
    Q_EMIT isOfferedChanged();
}
