#pragma once

#include <QObject>

#include <chrono>
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

    /// An answer of about so many characters.
    [[nodiscard]] Debt owe(qsizetype size = 0);
    [[nodiscard]] bool isSettled() const { return m_owed == 0; }
    /// How long it is worth to wait for what is owed, from when it was asked for. A page that holds
    /// a book needs seconds to hand it over, and many more beside other busy programs.
    [[nodiscard]] std::chrono::milliseconds patience() const;

Q_SIGNALS:
    void settled();

private:
    int m_owed = 0;
    qsizetype m_largest = 0; ///< of what is owed
};
