#pragma once

#include <QObject>

#include <memory>

/// Counts the answers that editors still owe after they were asked to hand over their text, so that
/// quitting waits for all of them and not longer.
class EditorFlush : public QObject
{
    Q_OBJECT

public:
    /// Held while an answer is awaited. Letting go of it, whether the answer came or the page is
    /// gone, counts as answered.
    using Debt = std::shared_ptr<void>;

    [[nodiscard]] static EditorFlush &shared();

    [[nodiscard]] Debt owe();
    [[nodiscard]] bool isSettled() const { return m_owed == 0; }

Q_SIGNALS:
    void settled();

private:
    int m_owed = 0;
};
