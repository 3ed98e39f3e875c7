#pragma once

#include <QObject>

/// The orderly end. Whatever asks the application to quit, the editors are asked for their text
/// first; then the store saves it as the application goes.
class AppDelegate : public QObject
{
    Q_OBJECT

public:
    explicit AppDelegate(QObject *parent = nullptr);

    /// Collects what the editors have not reported yet and writes the settings. Runs the event loop
    /// for 0.15 s, and on until every editor has answered, 2 s at most. Never refuses. Whoever asks
    /// to quit meanwhile is heard afterwards.
    void applicationShouldTerminate();

    [[nodiscard]] bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void collectTexts();

    bool m_isTerminating = false;
    bool m_isQuitPending = false; ///< asked for while the editors were awaited
};
