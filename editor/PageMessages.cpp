#include "editor/PageMessages.h"

#include "editor/EditorLog.h"

#include <utility>

void PageMessages::receive(const QString &handler, const QString &body)
{
    receiveBeginning({});
    receiveEnd(handler, body);
}

void PageMessages::receiveBeginning(const QString &piece)
{
    m_isTooLong = false;
    m_begun.emplace();
    append(piece);
}

void PageMessages::receiveMiddle(const QString &piece)
{
    append(piece);
}

void PageMessages::receiveEnd(const QString &handler, const QString &piece)
{
    append(piece);
    const std::optional<QString> message = std::exchange(m_begun, {});
    if (std::exchange(m_isTooLong, false))
        Q_EMIT refused(handler);
    else if (message)
        Q_EMIT received(handler, *message);
}

void PageMessages::append(const QString &piece)
{
    if (!m_begun)
        return;
    if (piece.size() <= m_longest - m_begun->size()) {
        *m_begun += piece;
        return;
    }
    qCWarning(editorLog, "Plim: a message of the page is dropped, it has more than %lld letters",
              static_cast<long long>(m_longest));
    m_begun.reset();
    m_isTooLong = true;
}
